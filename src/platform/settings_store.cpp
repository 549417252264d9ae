#include "platform/settings_store.h"

#include "platform/async/background.h"
#include "platform/system_log.h"

#include <QStandardPaths>

#include <chrono>
#include <future>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

using namespace std::chrono_literals;

constexpr auto GatheringTime = 500ms;
constexpr auto LongestWaitAtEnd = 500ms;

} // namespace

FileSettingsStore::FileSettingsStore(const QString& path, Clock& clock, SystemLog& log)
    : m_clock(clock),
      m_log(log),
      m_file(std::make_shared<SettingsFile>(path)),
      m_values(m_file->read()) {}

FileSettingsStore::~FileSettingsStore() {
    m_writer.cancel();
    const SettingsFile::Update update = nextUpdate();
    if (update.changes.isEmpty())
        return;
    const auto write = std::make_shared<std::packaged_task<bool()>>(
        [file = m_file, update] { return file->write(update); });
    std::future<bool> written = write->get_future();
    runOnDiskThread([write] { (*write)(); });
    if (written.wait_for(LongestWaitAtEnd) != std::future_status::ready || !written.get())
        reportFailure();
}

QString FileSettingsStore::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/quiv-controller/settings.json"_s;
}

std::optional<QString> FileSettingsStore::text(const QString& key) const {
    const QVariant value = m_values.value(key);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

std::optional<double> FileSettingsStore::real(const QString& key) const {
    const QVariant value = m_values.value(key);
    return value.typeId() == QMetaType::Double ? std::optional(value.toDouble()) : std::nullopt;
}

void FileSettingsStore::setText(const QString& key, const QString& value) {
    change(key, value);
}

void FileSettingsStore::setReal(const QString& key, double value) {
    change(key, value);
}

void FileSettingsStore::remove(const QString& key) {
    change(key, {});
}

void FileSettingsStore::change(const QString& key, const QVariant& value) {
    if (m_values.value(key) == value && m_values.contains(key) == value.isValid())
        return;
    if (value.isValid())
        m_values.insert(key, value);
    else
        m_values.remove(key);
    m_unwritten.insert(key, value);
    if (m_writer.isDone())
        m_writer = writeGathered();
}

SettingsFile::Update FileSettingsStore::nextUpdate() {
    m_writing.insert(std::exchange(m_unwritten, {}));
    return {++m_lastUpdate, m_values, m_writing};
}

Task<> FileSettingsStore::writeGathered() {
    while (!m_unwritten.isEmpty()) {
        co_await sleepFor(m_clock, GatheringTime);
        const auto writing = [file = m_file, update = nextUpdate()] {
            return file->write(update);
        };
        const bool isWritten = co_await onDisk(writing);
        if (isWritten)
            m_writing.clear();
        else
            reportFailure();
    }
}

void FileSettingsStore::reportFailure() {
    if (!std::exchange(m_hasReportedFailure, true))
        m_log.write(u"QuivController could not write its settings to %1"_s.arg(m_file->path()));
}

} // namespace quiv
