#include "platform/async/threads.h"

#include <QCoreApplication>

#include <condition_variable>
#include <deque>
#include <limits>
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

// The queue is never destroyed, because a thread may still add to them while the process ends.
CallQueue& mainThreadQueue() {
    static auto* const queue = new CallQueue;
    return *queue;
}

// Threads that come and go with what there is to do. Never destroyed either, and never joined: one
// that a disk holds up may outlive the application.
class Workers {
public:
    explicit Workers(std::size_t most) : m_most(most) {}

    void add(std::function<void()> work) {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(work));
        ++m_unfinished;
        if (m_waiting.size() <= m_idle) {
            m_more.notify_one();
        } else if (m_count < m_most) {
            ++m_count;
            std::thread([this] { run(); }).detach();
        }
    }
    bool await(std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        return m_allDone.wait_for(lock, limit, [this] { return m_unfinished == 0; });
    }

private:
    void run() {
        std::unique_lock lock(m_mutex);
        while (awaitMore(lock)) {
            std::function<void()> work = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            work();
            work = nullptr;
            lock.lock();
            if (--m_unfinished == 0)
                m_allDone.notify_all();
        }
        --m_count;
    }
    // A thread stays for a while, as a transfer has more for it soon.
    bool awaitMore(std::unique_lock<std::mutex>& lock) {
        ++m_idle;
        m_more.wait_for(lock, LongestIdle, [this] { return !m_waiting.empty(); });
        --m_idle;
        return !m_waiting.empty();
    }

    static constexpr auto LongestIdle = std::chrono::seconds(1);

    const std::size_t m_most;
    std::mutex m_mutex; // guards the rest
    std::condition_variable m_more;
    std::condition_variable m_allDone;
    std::deque<std::function<void()>> m_waiting;
    std::size_t m_unfinished = 0; // waiting or under way
    std::size_t m_count = 0;      // of threads
    std::size_t m_idle = 0;       // of them
};

Workers& backgroundWorkers() {
    static auto* const workers = new Workers(2);
    return *workers;
}

// As many as there is work: one that hangs holds up no other.
Workers& diskWorkers() {
    static auto* const workers = new Workers(std::numeric_limits<std::size_t>::max());
    return *workers;
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
    backgroundWorkers().add(std::move(work));
}

bool awaitBackground(std::chrono::milliseconds limit) {
    return backgroundWorkers().await(limit);
}

void runOnDiskThread(std::function<void()> work) {
    diskWorkers().add(std::move(work));
}

bool awaitDiskThreads(std::chrono::milliseconds limit) {
    return diskWorkers().await(limit);
}

} // namespace quiv

#include "threads.moc"
