#include "platform/helpers/helper_program.h"

#include "platform/async/promise.h"

#include <QCoreApplication>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace quiv {

namespace {

constexpr std::size_t MostAtOnce = 2;

// Processes that were killed and have not ended yet. Never destroyed, because a QProcess waits for
// its process then, and one that is stuck in the kernel may take its time.
QSet<QProcess*>& dyingProcesses() {
    static auto* const processes = new QSet<QProcess*>;
    return *processes;
}

void dispose(QProcess* process) {
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater(); // it may be what is calling
        return;
    }
    dyingProcesses().insert(process);
    QObject::connect(process, &QProcess::stateChanged, process,
                     [process](QProcess::ProcessState state) {
                         if (state == QProcess::NotRunning && dyingProcesses().remove(process))
                             process->deleteLater();
                     });
    process->kill();
}

// Others would be something else to the program.
bool canBeArgument(const QString& text) {
    return !text.isEmpty() && !text.contains(QChar::Null);
}

} // namespace

// Shared by the task that awaits it and the program.
struct HelperProgram::Request {
    HelperWork work;
    Promise<std::optional<QByteArray>> answer{};
};

// One process at work.
struct HelperProgram::Run {
    std::shared_ptr<Request> request;
    QProcess* process = new QProcess;
    std::unique_ptr<QObject> listener = std::make_unique<QObject>(); // ends what is connected to it
    QByteArray output{};

    explicit Run(std::shared_ptr<Request> itsRequest) : request(std::move(itsRequest)) {}
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() { dispose(process); }
};

HelperProgram::HelperProgram(QString program, std::chrono::milliseconds timeLimit)
    : m_program(std::move(program)), m_timeLimit(timeLimit) {}

HelperProgram::~HelperProgram() {
    for (const auto& request : m_waiting)
        request->answer.resolve(std::nullopt);
    for (const Run& run : m_running)
        run.request->answer.resolve(std::nullopt);
}

Task<std::optional<QByteArray>> HelperProgram::run(HelperWork work) {
    const auto request = std::make_shared<Request>(Request{std::move(work)});
    if (std::ranges::all_of(request->work.arguments, canBeArgument)) {
        m_waiting.push_back(request);
        startWaitingLater();
    } else {
        request->answer.resolve(std::nullopt);
    }
    const std::function<void()> onDropped = [this, request = request.get()] {
        withdraw(*request);
    };
    co_return co_await request->answer.wait(onDropped);
}

void HelperProgram::withdraw(const Request& request) {
    const auto isIt = [&](const std::shared_ptr<Request>& other) {
        return other.get() == &request;
    };
    std::erase_if(m_waiting, isIt);
    if (std::erase_if(m_running, [&](const Run& run) { return isIt(run.request); }) > 0)
        startWaitingLater();
}

// Not at once: whoever drops one request may be about to drop them all.
void HelperProgram::startWaitingLater() {
    QMetaObject::invokeMethod(
        &m_loop, [this] { startWaiting(); }, Qt::QueuedConnection);
}

void HelperProgram::startWaiting() {
    while (m_running.size() < MostAtOnce && !m_waiting.empty()) {
        auto request = std::move(m_waiting.front());
        m_waiting.pop_front();
        start(std::move(request));
    }
}

void HelperProgram::start(std::shared_ptr<Request> request) {
    Run& run = m_running.emplace_back(std::move(request));
    QProcess* const process = run.process;
    QObject* const listener = run.listener.get();
    // Queued, because a process that cannot be made says so from inside start().
    QObject::connect(
        process, &QProcess::errorOccurred, listener,
        [this, &run](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                finish(run, std::nullopt);
        },
        Qt::QueuedConnection);
    QObject::connect(process, &QProcess::readyReadStandardOutput, listener,
                     [this, &run] { collectOutput(run); });
    QObject::connect(process, &QProcess::finished, listener,
                     [this, &run](int exitCode, QProcess::ExitStatus status) {
                         run.output += run.process->readAllStandardOutput();
                         const bool isGood = status == QProcess::NormalExit && exitCode == 0 &&
                                             run.output.size() <= run.request->work.mostOutput;
                         finish(run, isGood ? std::optional(run.output) : std::nullopt);
                     });
    QTimer::singleShot(m_timeLimit, listener, [this, &run] { finish(run, std::nullopt); });

    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(m_program, run.request->work.arguments);
    process->write(run.request->work.input);
    process->closeWriteChannel();
}

void HelperProgram::collectOutput(Run& run) {
    run.output += run.process->readAllStandardOutput();
    if (run.output.size() > run.request->work.mostOutput)
        finish(run, std::nullopt);
}

void HelperProgram::finish(Run& run, std::optional<QByteArray> output) {
    const std::shared_ptr<Request> request = run.request;
    m_running.remove_if([&](const Run& other) { return &other == &run; });
    request->answer.resolve(std::move(output));
    startWaitingLater();
}

} // namespace quiv
