#include "platform/settings_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>

#include <chrono>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

using namespace std::chrono_literals;

constexpr auto LongestWaitForOtherProcess = 500ms;
constexpr auto OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

struct Content {
    enum class Kind { Missing, Unreadable, NoSettings, Settings };
    Kind kind;
    SettingsValues values;
};

Content contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {file.exists() ? Content::Kind::Unreadable : Content::Kind::Missing, {}};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {Content::Kind::Unreadable, {}};
    const auto document = QJsonDocument::fromJson(bytes);
    if (!document.isObject())
        return {Content::Kind::NoSettings, {}};
    SettingsValues values;
    const QJsonObject object = document.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry->isString())
            values.insert(entry.key(), entry->toString());
        else if (entry->isDouble())
            values.insert(entry.key(), entry->toDouble());
    }
    return {Content::Kind::Settings, values};
}

bool putAside(const QString& path) {
    const QString aside = path + u".unreadable"_s;
    QFile::remove(aside);
    return QFile::rename(path, aside);
}

// What this process knows, but what the file says where this process has changed nothing.
SettingsValues merged(const SettingsFile::Update& update, const SettingsValues& inFile) {
    SettingsValues values = update.values;
    for (auto value = inFile.cbegin(); value != inFile.cend(); ++value) {
        if (!update.changes.contains(value.key()))
            values.insert(value.key(), value.value());
    }
    return values;
}

bool replaceFile(const QString& path, const SettingsValues& values) {
    QJsonObject object;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        object.insert(value.key(), QJsonValue::fromVariant(value.value()));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(OwnerOnly))
        return false;
    file.write(QJsonDocument(object).toJson());
    return file.commit();
}

} // namespace

SettingsValues SettingsFile::read() {
    const std::lock_guard lock(m_oneAtATime);
    const Content content = contentOf(m_path);
    m_isKnown = content.kind != Content::Kind::Unreadable;
    return content.values;
}

bool SettingsFile::write(const Update& update) {
    const std::lock_guard lock(m_oneAtATime);
    if (update.number < m_newestWritten)
        return true;
    QDir().mkpath(QFileInfo(m_path).path());
    QLockFile otherProcesses(m_path + u".lock"_s);
    if (!otherProcesses.tryLock(LongestWaitForOtherProcess))
        return false;
    const Content content = contentOf(m_path);
    if (content.kind == Content::Kind::Unreadable && !m_isKnown)
        return false; // better an old setting than a file whose content nobody knows
    if (content.kind == Content::Kind::NoSettings && !putAside(m_path))
        return false;
    m_isKnown = true;
    if (!replaceFile(m_path, merged(update, content.values)))
        return false;
    m_newestWritten = update.number;
    return true;
}

} // namespace quiv
