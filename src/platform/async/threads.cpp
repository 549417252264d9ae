#include "platform/async/threads.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

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

// How much disk work is not done. Never destroyed either.
struct DiskWork {
    std::mutex mutex;
    std::condition_variable allDone;
    int count = 0; // guarded by `mutex`
};

DiskWork& diskWork() {
    static auto* const work = new DiskWork;
    return *work;
}

// Lives on the main thread. Its slot is called by name, so that Qt itself makes the event.
class MainThreadWaker : public QObject {
    Q_OBJECT

public:
    static MainThreadWaker& instance() {
        static auto* const waker = new MainThreadWaker;
        return *waker;
    }
    void wake() {
        const std::lock_guard lock(m_mutex);
        if (!m_hasEnded)
            QMetaObject::invokeMethod(this, "runNext", Qt::QueuedConnection);
    }

private:
    MainThreadWaker() {
        moveToThread(QCoreApplication::instance()->thread());
        qAddPostRoutine([] { instance().end(); });
    }
    // A thread that a disk holds up may outlive the application.
    void end() {
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
    }

    std::mutex m_mutex;
    bool m_hasEnded = false; // guarded by m_mutex

private Q_SLOTS:
    void runNext() { mainThreadQueue().runNext(); }
};

} // namespace

void postToMainThread(std::function<void()> call) {
    mainThreadQueue().add(std::move(call));
    MainThreadWaker::instance().wake();
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

void runOnDiskThread(std::function<void()> work) {
    {
        const std::lock_guard lock(diskWork().mutex);
        ++diskWork().count;
    }
    std::thread([work = std::move(work)]() mutable {
        work();
        work = nullptr;
        const std::lock_guard lock(diskWork().mutex);
        if (--diskWork().count == 0)
            diskWork().allDone.notify_all();
    }).detach();
}

bool awaitDiskThreads(std::chrono::milliseconds limit) {
    std::unique_lock lock(diskWork().mutex);
    return diskWork().allDone.wait_for(lock, limit, [] { return diskWork().count == 0; });
}

} // namespace quiv

#include "threads.moc"
