#include "platform/settings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <chrono>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

using namespace std::chrono_literals;

constexpr auto LongestWaitForOtherWriter = 500ms;
constexpr auto OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

void apply(QHash<QString, QVariant>& values, const QString& key, const QVariant& value) {
    if (value.isValid())
        values.insert(key, value);
    else
        values.remove(key);
}

} // namespace

FileSettingsStore::FileSettingsStore(QString path) : m_path(std::move(path)) {
    m_values = read().value_or(Values());
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
    apply(m_values, key, value);
    m_unwritten.insert(key, value);

    QDir().mkpath(QFileInfo(m_path).path());
    QLockFile lock(m_path + u".lock"_s);
    if (!lock.tryLock(LongestWaitForOtherWriter))
        return;
    auto values = read();
    if (!values) {
        const QString aside = m_path + u".unreadable"_s;
        QFile::remove(aside);
        if (!QFile::rename(m_path, aside))
            return; // better an old setting than a lost file
        values.emplace();
    }
    for (auto change = m_unwritten.cbegin(); change != m_unwritten.cend(); ++change)
        apply(*values, change.key(), change.value());
    if (write(*values)) {
        m_values = std::move(*values);
        m_unwritten.clear();
    }
}

std::optional<FileSettingsStore::Values> FileSettingsStore::read() const {
    QFile file(m_path);
    if (!file.exists())
        return Values();
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const auto document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return std::nullopt;
    Values values;
    const QJsonObject object = document.object();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (entry->isString())
            values.insert(entry.key(), entry->toString());
        else if (entry->isDouble())
            values.insert(entry.key(), entry->toDouble());
    }
    return values;
}

bool FileSettingsStore::write(const Values& values) const {
    QJsonObject object;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        object.insert(value.key(), QJsonValue::fromVariant(value.value()));
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(OwnerOnly))
        return false;
    file.write(QJsonDocument(object).toJson());
    return file.commit();
}

} // namespace quiv
