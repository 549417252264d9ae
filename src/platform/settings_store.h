#pragma once

#include "platform/async/task.h"
#include "platform/clock.h"
#include "platform/settings_file.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace quiv {

class SystemLog;

// The few values kept between runs: text and real numbers by key. Main thread only.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    virtual std::optional<QString>
    text(const QString& key) const = 0; // nullopt if absent or a number
    virtual std::optional<double> real(const QString& key) const = 0; // nullopt if absent or a text
    virtual void setText(const QString& key, const QString& value) = 0;
    virtual void setReal(const QString& key, double value) = 0;
    virtual void remove(const QString& key) = 0;
};

// Settings in memory, kept in a SettingsFile.
//
// A value is in force at once. Changes are gathered for half a second, then one write on a disk
// thread takes them all to the disk; the destructor writes what is left and waits for that, at most
// a second. What cannot be written still holds for this run and goes with the next
// change; the log is told of it once.
class FileSettingsStore final : public SettingsStore {
public:
    FileSettingsStore(const QString& path, Clock& clock, SystemLog& log);
    ~FileSettingsStore() override;

    // Where the settings of this user are.
    static QString standardPath();

    std::optional<QString> text(const QString& key) const override;
    std::optional<double> real(const QString& key) const override;
    void setText(const QString& key, const QString& value) override;
    void setReal(const QString& key, double value) override;
    void remove(const QString& key) override;

private:
    // An invalid value removes the key.
    void change(const QString& key, const QVariant& value);
    // Everything that is not known to be on disk.
    SettingsFile::Update nextUpdate();
    Task<> writeGathered();
    void reportFailure();

    Clock& m_clock;
    SystemLog& m_log;
    std::shared_ptr<SettingsFile> m_file; // a write may outlive this store
    SettingsValues m_values;
    SettingsValues m_unwritten; // changes that no write has taken yet
    SettingsValues m_writing;   // changes that the write under way takes, or the last one did not
    std::uint64_t m_lastUpdate = 0;
    bool m_hasReportedFailure = false;
    Task<> m_writer;
};

} // namespace quiv
