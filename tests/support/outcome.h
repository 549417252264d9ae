#pragma once

#include "platform/async/task.h"

#include <optional>

namespace quiv {

// What became of a request: whether it completed, and with what.
template <class T> class Outcome {
public:
    explicit Outcome(Task<std::optional<T>> request) : m_task(record(std::move(request))) {}
    Outcome(const Outcome&) = delete;
    Outcome& operator=(const Outcome&) = delete;

    bool isDone() const { return m_isDone; }
    const std::optional<T>& value() const { return m_value; }
    void cancel() { m_task.cancel(); }

private:
    Task<> record(Task<std::optional<T>> request) {
        m_value = co_await std::move(request);
        m_isDone = true;
    }

    bool m_isDone = false;
    std::optional<T> m_value;
    Task<> m_task;
};

} // namespace quiv
