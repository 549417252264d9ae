#pragma once

#include "platform/async/promise.h"

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace quiv {

// co_await inBackground(work): runs `work` on the thread pool and resumes on the main thread with
// what it returned or threw. Dropping the awaiting task drops the result; the work itself runs on,
// so it must own everything it touches.
template <class Work> auto inBackground(Work work) {
    using Value = std::invoke_result_t<Work>;
    Promise<Value> promise;
    runInBackground([promise, work = std::move(work)]() mutable {
        std::optional<Value> value;
        std::exception_ptr exception;
        try {
            value.emplace(work());
        } catch (...) {
            exception = std::current_exception();
        }
        postToMainThread(
            [promise = std::move(promise), value = std::move(value),
                          exception = std::move(exception)]() mutable {
                if (exception)
                    promise.rejectNow(exception);
                else
                    promise.resolveNow(std::move(*value));
            });
    });
    return promise.wait();
}

} // namespace quiv
