#pragma once

#include "platform/async/task.h"

#include <memory>
#include <optional>

namespace quiv {

// What became of a request: whether it completed, and with what.
template <class T> class Outcome {
public:
    explicit Outcome(Task<std::optional<T>> request)
        : m_result(std::make_shared<Result>()), m_task(record(std::move(request), m_result)) {}

    bool isDone() const { return m_result->completions > 0; }
    int completions() const { return m_result->completions; }
    const std::optional<T>& value() const { return m_result->value; }
    void cancel() { m_task.cancel(); }

private:
    struct Result {
        int completions = 0;
        std::optional<T> value;
    };

    static Task<> record(Task<std::optional<T>> request, std::shared_ptr<Result> result) {
        std::optional<T> value = co_await std::move(request);
        result->value = std::move(value);
        ++result->completions;
    }

    std::shared_ptr<Result> m_result;
    Task<> m_task;
};

} // namespace quiv
