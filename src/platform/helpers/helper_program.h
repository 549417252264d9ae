#pragma once

#include "platform/async/task.h"

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>
#include <list>
#include <memory>
#include <optional>

namespace quiv {

// What one process of a helper program is asked for.
struct HelperWork {
    QStringList arguments{}; // there is no work for an empty one, or one that holds a NUL
    QByteArray input{};      // its standard input
    qsizetype mostOutput;    // bytes; one that writes more has failed
};

// A program that does what may go wrong in a process of its own, one for each piece of work. Two
// run at once, the other pieces wait in the order they came.
//
// Every piece completes exactly once, from the event loop, also when this is destroyed meanwhile:
// with what was written to the standard output, or with nullopt if the program is missing, crashes,
// fails, takes too long or writes too much. Destroying the task ends the work. A process that is
// not wanted any more is killed, which nobody waits for.
class HelperProgram {
public:
    // The limit counts from a process's start.
    HelperProgram(QString program, std::chrono::milliseconds timeLimit);
    ~HelperProgram();

    Task<std::optional<QByteArray>> run(HelperWork work);

private:
    struct Request;
    struct Run;

    void withdraw(const Request& request);
    void startWaitingLater();
    void startWaiting();
    void start(std::shared_ptr<Request> request);
    void collectOutput(Run& run);
    void finish(Run& run, std::optional<QByteArray> output);

    QString m_program;
    std::chrono::milliseconds m_timeLimit;
    std::list<std::shared_ptr<Request>> m_waiting;
    std::list<Run> m_running;
    QObject m_loop; // what is left to do goes with it
};

} // namespace quiv
