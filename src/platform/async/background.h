#pragma once

#include "platform/async/promise.h"

#include <exception>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace quiv {

// Starts `work` by `run`, one of the functions of threads.h; the promise gets what it returned or
// threw.
template <class Work> auto promisedBy(void (*run)(std::function<void()>), Work work) {
    using Value = std::invoke_result_t<Work>;
    Promise<Value> promise;
    run([promise, work = std::move(work)]() mutable {
        std::optional<Value> value;
        std::exception_ptr exception;
        try {
            value.emplace(work());
        } catch (...) {
            exception = std::current_exception();
        }
        postToMainThread([promise = std::move(promise), value = std::move(value),
                          exception = std::move(exception)]() mutable {
            if (exception)
                promise.rejectNow(exception);
            else
                promise.resolveNow(std::move(*value));
        });
    });
    return promise;
}

// co_await inBackground(work): runs `work` on a background thread and resumes on the main thread
// with what it returned or threw. Dropping the awaiting task drops the result; the work itself runs
// on, so it must own everything it touches.
template <class Work> auto inBackground(Work work) {
    return promisedBy(runInBackground, std::move(work)).wait();
}

// The same on a thread of its own, for work that touches files.
template <class Work> auto onDisk(Work work) {
    return promisedBy(runOnDiskThread, std::move(work)).wait();
}

} // namespace quiv
