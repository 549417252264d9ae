#include "platform/installation.h"

#include <QCoreApplication>
#include <QDir>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString fromProgram(const QString& folder, const QString& file) {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u'/' + folder + u'/' + file);
}

} // namespace

QString helperProgramPath(const QString& name) {
    return fromProgram(QStringLiteral(QUIV_HELPERS_FROM_BIN), name);
}

QString playerLibraryPath() {
    return fromProgram(QStringLiteral(QUIV_PLAYER_FROM_BIN), u"libquiv-player.so"_s);
}

} // namespace quiv
