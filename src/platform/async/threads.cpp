#include "platform/async/threads.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <deque>
#include <mutex>

namespace quiv {

namespace {

class CallQueue {
public:
    void add(std::function<void()> call) {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
    }
    void runNext() { take()(); }

private:
    std::function<void()> take() {
        const std::lock_guard lock(m_mutex);
        std::function<void()> call = std::move(m_calls.front());
        m_calls.pop_front();
        return call;
    }

    std::mutex m_mutex;
    std::deque<std::function<void()>> m_calls;
};

// The queues are never destroyed, because a thread may still add to them while the process ends.
CallQueue& mainThreadQueue() {
    static auto* const queue = new CallQueue;
    return *queue;
}

CallQueue& backgroundQueue() {
    static auto* const queue = new CallQueue;
    return *queue;
}

// Lives on the main thread. Its slot is called by name, so that Qt itself makes the event.
class MainThreadWaker : public QObject {
    Q_OBJECT

public:
    MainThreadWaker() { moveToThread(QCoreApplication::instance()->thread()); }
    void wake() { QMetaObject::invokeMethod(this, "runNext", Qt::QueuedConnection); }

private Q_SLOTS:
    void runNext() { mainThreadQueue().runNext(); }
};

} // namespace

void postToMainThread(std::function<void()> call) {
    static auto* const waker = new MainThreadWaker;
    mainThreadQueue().add(std::move(call));
    waker->wake();
}

void postToMainThread(std::weak_ptr<const void> receiver, std::function<void()> call) {
    if (receiver.expired())
        return;
    postToMainThread([receiver = std::move(receiver), call = std::move(call)] {
        if (!receiver.expired())
            call();
    });
}

void runInBackground(std::function<void()> work) {
    backgroundQueue().add(std::move(work));
    QThreadPool::globalInstance()->start([] { backgroundQueue().runNext(); });
}

} // namespace quiv

#include "threads.moc"
