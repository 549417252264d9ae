#include "platform/player/process_external_player.h"

#include "platform/async/background.h"
#include "platform/error.h"
#include "platform/player/external_player_search.h"

#include <QProcess>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

bool start(QStringList command) {
    QProcess process;
    process.setProgram(command.takeFirst());
    process.setArguments(command);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

} // namespace

Task<std::optional<PlayerProgram>> ProcessExternalPlayer::find() {
    std::optional<PlayerProgram> program = co_await onDisk(searchVlc);
    co_return program;
}

Task<> ProcessExternalPlayer::open(PlayerProgram program, QUrl address) {
    const QString text = QString::fromLatin1(address.toEncoded());
    const auto work = [command = withAddress(program.command, text)] {
        return start(command);
    };
    const bool isStarted = co_await onDisk(work);
    if (!isStarted)
        throw Error(u"The program could not be started."_s);
}

} // namespace quiv
