#include "platform/player/external_player_search.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto AddressPlace = u"%u"_s;
const auto FlatpakId = u"org.videolan.VLC"_s;
constexpr qint64 LargestEntry = 256 << 10;

// The value of a key in the entry's main group, with its escapes resolved.
QString valueOf(const QByteArray& entry, QByteArrayView key) {
    bool isInGroup = false;
    for (const QByteArray& line : entry.split('\n')) {
        if (line.startsWith('['))
            isInGroup = line.trimmed() == "[Desktop Entry]";
        const qsizetype equals = line.indexOf('=');
        if (!isInGroup || equals < 0 || line.first(equals).trimmed() != key)
            continue;
        const QString value = QString::fromUtf8(line.sliced(equals + 1)).trimmed();
        return QString(value).replace("\\s"_L1, " "_L1).replace("\\\\"_L1, "\\"_L1);
    }
    return {};
}

// Splits at blanks outside of double quotes, in which a backslash takes the next character as it
// is.
QStringList words(const QString& line) {
    QStringList found;
    QString word;
    bool isQuoted = false;
    bool isWord = false;
    for (qsizetype index = 0; index < line.size(); ++index) {
        QChar character = line.at(index);
        if (character == u'"') {
            isQuoted = !isQuoted;
            isWord = true;
            continue;
        }
        if (character == u' ' && !isQuoted) {
            if (isWord)
                found.append(std::exchange(word, {}));
            isWord = false;
            continue;
        }
        if (character == u'\\' && isQuoted && index + 1 < line.size())
            character = line.at(++index);
        word.append(character);
        isWord = true;
    }
    return isWord ? found + QStringList(word) : found;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(LargestEntry) : QByteArray();
}

// Returns an empty command if the program is not there.
QStringList installed(QStringList command) {
    const QString program =
        command.isEmpty() ? QString() : QStandardPaths::findExecutable(command.constFirst());
    if (program.isEmpty())
        return {};
    command.replace(0, program);
    return command;
}

QStringList fromDesktop() {
    const QStringList names{u"vlc.desktop"_s, u"org.videolan.vlc.desktop"_s,
                            FlatpakId + u".desktop"_s};
    for (const QString& name : names) {
        const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, name);
        if (path.isEmpty())
            continue;
        if (const QStringList command = installed(commandOf(contentOf(path))); !command.isEmpty())
            return command;
    }
    return {};
}

QStringList fromFlatpak() {
    const QStringList places{u"/var/lib/flatpak/app"_s,
                             QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                 u"/flatpak/app"_s};
    for (const QString& place : places) {
        if (QFileInfo(QDir(place), FlatpakId).isDir())
            return installed({u"flatpak"_s, u"run"_s, FlatpakId, AddressPlace});
    }
    return {};
}

} // namespace

QStringList commandOf(const QByteArray& desktopEntry) {
    QStringList command;
    for (const QString& word : words(valueOf(desktopEntry, "Exec"))) {
        if (word.compare(AddressPlace, Qt::CaseInsensitive) == 0 ||
            word.compare("%f"_L1, Qt::CaseInsensitive) == 0)
            command.append(AddressPlace);
        else if (!(word.size() == 2 && word.startsWith(u'%') && word != "%%"_L1))
            command.append(QString(word).replace("%%"_L1, "%"_L1));
    }
    return command;
}

QStringList withAddress(const QStringList& command, const QString& address) {
    QStringList complete = command;
    const qsizetype place = complete.indexOf(AddressPlace);
    if (place < 0)
        complete.append(address);
    else
        complete.replace(place, address);
    return complete;
}

std::optional<PlayerProgram> searchVlc() {
    for (const auto& search : {fromDesktop, fromFlatpak}) {
        if (const QStringList command = search(); !command.isEmpty())
            return PlayerProgram{command};
    }
    const QStringList command = installed({u"vlc"_s, AddressPlace});
    return command.isEmpty() ? std::nullopt : std::optional(PlayerProgram{command});
}

} // namespace quiv
