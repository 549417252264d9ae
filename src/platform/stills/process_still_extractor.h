#pragma once

#include "platform/stills/still_extractor.h"

#include <QObject>
#include <QProcess>

#include <chrono>
#include <list>
#include <memory>

namespace quiv {

// Stills by a program of their own, one process each: what a broken file does to a decoder stays in
// there. Two run at once, the other requests wait in the order they came.
//
// A program that is missing, crashes, fails, takes too long or writes something else gives no
// still. A process that is not wanted any more is killed, which nobody waits for.
class ProcessStillExtractor final : public StillExtractor {
public:
    // The limit counts from a process's start.
    explicit ProcessStillExtractor(QString program = standardProgram(),
                                   std::chrono::milliseconds timeLimit = std::chrono::seconds(20));
    ~ProcessStillExtractor() override;

    // The program beside the application.
    static QString standardProgram();

    Task<std::optional<QByteArray>> makeUploadThumbnail(QString path) override;

private:
    struct Request;
    struct Run;

    void withdraw(const Request& request);
    void startWaitingLater();
    void startWaiting();
    void start(std::shared_ptr<Request> request);
    void collectOutput(Run& run);
    void finish(Run& run, std::optional<QByteArray> still);

    QString m_program;
    std::chrono::milliseconds m_timeLimit;
    std::list<std::shared_ptr<Request>> m_waiting;
    std::list<Run> m_running;
    QObject m_loop; // what is left to do goes with it
};

} // namespace quiv
