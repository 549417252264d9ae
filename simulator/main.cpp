#include "simulator/console.h"
#include "simulator/library/sample_media.h"
#include "simulator/options.h"
#include "simulator/simulator.h"
#include "simulator/termination.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

using namespace quiv::simulator;

namespace {

constexpr int BadOptions = 2;

bool makeFolder(const QString& folder) {
    if (folder.isEmpty() || QDir().mkpath(folder))
        return true;
    printError(u"Cannot make the folder "_s + folder);
    return false;
}

void makeSamples(const Options& options) {
    QStringList problems{makeSampleMedia(options.mediaFolder)};
    if (!options.usbFolder.isEmpty())
        problems.append(makeSampleUsbMedia(options.usbFolder));
    problems.removeAll(QString());
    problems.removeDuplicates();
    for (const QString& problem : problems)
        printError(problem);
}

} // namespace

#ifdef __SANITIZE_THREAD__
// Qt forks to start ffprobe and ffmpeg, which the sanitizer by itself does not let a program with
// several threads do.
extern "C" const char* __tsan_default_options() {
    return "die_after_fork=0";
}
#endif

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"Quiv TV Simulator"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUIV_VERSION));
    QString problem;
    const auto options = parseOptions(QCoreApplication::arguments(), &problem);
    if (!options) {
        printError(problem);
        return BadOptions;
    }
    if (options->exitWithParent)
        exitWithParent();
    if (!makeFolder(options->mediaFolder) || !makeFolder(options->usbFolder))
        return EXIT_FAILURE;
    if (options->makesSamples)
        makeSamples(*options);

    const Termination termination([] { QCoreApplication::quit(); });
    Simulator simulator(*options);
    return simulator.start() ? QCoreApplication::exec() : EXIT_FAILURE;
}
