#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

#include <optional>

namespace quiv {

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

// Settings in one JSON file that only its owner can read.
//
// A value is on disk when the call that set it returns. The file is replaced as a whole, so neither
// a full disk nor a crash leaves half of one; writers of several processes take turns and keep each
// other's keys. What cannot be written still holds for this run. A file that is not readable as
// settings is kept beside the new one with ".unreadable" at the end of its name.
class FileSettingsStore final : public SettingsStore {
public:
    explicit FileSettingsStore(QString path);

    // Where the settings of this user are.
    static QString standardPath();

    std::optional<QString> text(const QString& key) const override;
    std::optional<double> real(const QString& key) const override;
    void setText(const QString& key, const QString& value) override;
    void setReal(const QString& key, double value) override;
    void remove(const QString& key) override;

private:
    using Values = QHash<QString, QVariant>;

    // An invalid value removes the key.
    void change(const QString& key, const QVariant& value);
    std::optional<Values> read() const; // nullopt if the file holds no settings
    bool write(const Values& values) const;

    QString m_path;
    Values m_values;
    Values m_unwritten; // changes that did not reach the disk yet; go with the next one that does
};

} // namespace quiv
