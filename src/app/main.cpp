#include "app/command_line.h"
#include "app/composition.h"
#include "app/diagnosis.h"
#include "platform/async/threads.h"
#include "platform/desktop/dbus_application.h"
#include "ui/window/main_window.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QQuickWindow>
#include <QSocketNotifier>
#include <QWindow>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int BadCommandLine = 2;
constexpr auto LongestEnd = 400ms; // beside what the settings may take

// Ends the program through its event loop on the signals by which systems and terminals end it.
class TerminationSignals {
public:
    TerminationSignals() : m_notifier(openDescriptor(), QSocketNotifier::Read) {
        // Not quit(), which a window that asks first would refuse.
        QObject::connect(&m_notifier, &QSocketNotifier::activated, qApp,
                         [] { QCoreApplication::exit(); });
    }
    ~TerminationSignals() { ::close(int(m_notifier.socket())); }

    // Before the first thread, which would take the signals otherwise.
    static void block() {
        const sigset_t signals = handled();
        ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    }

private:
    static sigset_t handled() {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGTERM);
        sigaddset(&signals, SIGINT);
        sigaddset(&signals, SIGHUP);
        return signals;
    }
    static int openDescriptor() {
        const sigset_t signals = handled();
        return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    }

    QSocketNotifier m_notifier;
};

// For desktops that do not look into the desktop entry.
QIcon windowIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addFile(u":/window/%1.png"_s.arg(size));
    return icon;
}

// The window a desktop's dialog belongs to; only X11 gives windows a name that others know.
QString dialogParent() {
    const QWindow* window = QGuiApplication::focusWindow();
    if (!window || QGuiApplication::platformName() != u"xcb"_s)
        return {};
    return u"x11:"_s + QString::number(window->winId(), 16);
}

quiv::CommandLine commandLine(int argc, char** argv) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QFile::decodeName(argv[index]));
    return quiv::parseCommandLine(arguments);
}

// What needs no window, nor a display: returns the status to end with, nullopt if there is a window
// to show.
std::optional<int> answerOnTerminal(const quiv::CommandLine& line, int& argc, char** argv) {
    switch (line.wish) {
    case quiv::CommandLine::Wish::Run:
        return std::nullopt;
    case quiv::CommandLine::Wish::Help:
        std::fputs(qUtf8Printable(quiv::commandLineHelp()), stdout);
        return EXIT_SUCCESS;
    case quiv::CommandLine::Wish::Version:
        std::puts("quiv-controller " QUIV_VERSION);
        return EXIT_SUCCESS;
    case quiv::CommandLine::Wish::Diagnosis: {
        const QCoreApplication app(argc, argv);
        std::fputs(qUtf8Printable(quiv::diagnosis()), stdout);
        return EXIT_SUCCESS;
    }
    case quiv::CommandLine::Wish::Refusal:
        break;
    }
    std::fprintf(stderr, "quiv-controller: %s (--help lists the options)\n",
                 qUtf8Printable(line.problem));
    return BadCommandLine;
}

// The files of the command line, and the token by which whoever started the program lets its window
// come to the front. Read before the toolkit takes the token out of the environment.
quiv::Launch launchOf(const quiv::CommandLine& line) {
    quiv::Launch launch;
    for (const QString& file : line.files)
        launch.files.append(QUrl::fromUserInput(file, QDir::currentPath(), QUrl::AssumeLocalFile));
    launch.activationToken =
        qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    return launch;
}

int showWindow(quiv::DBusApplication& application, const quiv::Launch& launch) {
    quiv::Composition composition(dialogParent);
    quiv::MainWindow window(composition.model(), composition.windowPorts(),
                            composition.desktopPorts());
    if (!window.show()) {
        std::fputs("quiv-controller: the window could not be loaded\n", stderr);
        return EXIT_FAILURE;
    }
    window.open(launch.files);
    QObject::connect(&application, &quiv::DBusApplication::launched, window.window(),
                     [&window](const quiv::Launch& another) {
                         window.open(another.files);
                         window.raise(another.activationToken);
                     });
    const int status = QGuiApplication::exec();
    application.release();
    return status;
}

int runApplication(const quiv::Launch& launch, bool isSeparate) {
    using enum quiv::DBusApplication::Claim;
    quiv::DBusApplication application(quiv::ApplicationId);
    switch (isSeparate ? First : application.claim(launch)) {
    case First:
        break;
    case HandedOver:
        return EXIT_SUCCESS;
    case Unanswered:
        std::fputs("quiv-controller: it is running already, but does not answer. "
                   "End it, or use --separate.\n",
                   stderr);
        return EXIT_FAILURE;
    }
    return showWindow(application, launch);
}

} // namespace

// QuivControllerApp: one window on one model.
int main(int argc, char* argv[]) {
    const quiv::CommandLine line = commandLine(argc, argv);
    if (const std::optional<int> status = answerOnTerminal(line, argc, argv))
        return *status;
    const quiv::Launch launch = launchOf(line);
    TerminationSignals::block();
    QGuiApplication::setApplicationName(u"quiv-controller"_s);
    QGuiApplication::setApplicationDisplayName(u"Quiv Controller"_s);
    QGuiApplication::setDesktopFileName(quiv::ApplicationId);
    const QGuiApplication app(argc, argv);
    QGuiApplication::setWindowIcon(windowIcon());
    const TerminationSignals termination;
    const int status = runApplication(launch, line.isSeparate);
    // What was being received is removed. Neither a disk that hangs nor what is still decoded holds
    // up the end; a thread that is left must not find its surroundings destroyed.
    if (!quiv::awaitDiskThreads(LongestEnd) || !quiv::awaitBackground(0ms))
        std::_Exit(status);
    return status;
}
