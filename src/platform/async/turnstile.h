#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <coroutine>
#include <deque>
#include <memory>
#include <utility>

namespace quiv {

// Lets a few tasks in at once; the others wait and follow in the order they came.
//
//     auto entering = turnstile.enter();
//     const Turnstile::Pass pass = co_await std::move(entering); // inside for as long as it lives
//
// A task that is dropped while it waits or is inside makes room. Main thread only.
class Turnstile {
    struct Entry {
        std::coroutine_handle<> task; // none once it was resumed or has gone
        bool isLetIn = false;
    };
    struct Places {
        int free;
        std::deque<std::shared_ptr<Entry>> waiting{};

        bool take() { return free > 0 && free-- > 0; }
        void giveBack() {
            ++free;
            if (waiting.empty() || !take())
                return;
            const auto next = std::move(waiting.front());
            waiting.pop_front();
            next->isLetIn = true;
            const auto resume = [next] {
                if (const auto task = std::exchange(next->task, nullptr))
                    task.resume();
            };
            QMetaObject::invokeMethod(qApp, resume, Qt::QueuedConnection);
        }
    };

public:
    explicit Turnstile(int places) : m_places(std::make_shared<Places>(Places{places})) {}

    class [[nodiscard]] Pass {
    public:
        explicit Pass(std::shared_ptr<Places> places) : m_places(std::move(places)) {}
        Pass(Pass&&) noexcept = default;
        Pass& operator=(Pass&&) = delete;
        ~Pass() {
            if (m_places)
                m_places->giveBack();
        }

    private:
        std::shared_ptr<Places> m_places;
    };

    class [[nodiscard]] Entering {
    public:
        explicit Entering(std::shared_ptr<Places> places) : m_places(std::move(places)) {}
        Entering(Entering&&) noexcept = default;
        Entering& operator=(Entering&&) = delete;
        ~Entering() {
            if (!m_places || !m_entry)
                return;
            m_entry->task = nullptr;
            if (m_entry->isLetIn)
                m_places->giveBack();
            else
                std::erase(m_places->waiting, m_entry);
        }

        bool await_ready() { return m_places->take(); }
        void await_suspend(std::coroutine_handle<> task) {
            m_entry = std::make_shared<Entry>(Entry{task});
            m_places->waiting.push_back(m_entry);
        }
        Pass await_resume() {
            m_entry.reset();
            return Pass(std::move(m_places));
        }

    private:
        std::shared_ptr<Places> m_places;
        std::shared_ptr<Entry> m_entry; // while it waits
    };

    Entering enter() { return Entering(m_places); }

private:
    std::shared_ptr<Places> m_places;
};

} // namespace quiv
