#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quiv {

// The only ways by which work and its results move between threads. Calls wait in queues of our
// own, each guarded by a mutex; Qt's event loop and thread pool are only told that there is one
// more to take out.

// Runs `call` from the main thread's event loop, after the calls posted before it. May be called on
// any thread.
void postToMainThread(std::function<void()> call);

// Does so unless `receiver` has expired by then. The token is to be owned by the receiver alone, on
// the main thread.
void postToMainThread(std::weak_ptr<const void> receiver, std::function<void()> call);

// Runs `work` on one of two threads and destroys it there. For what takes time and touches no file.
void runInBackground(std::function<void()> work);

// Waits until all of that is done; returns false if some is not in time.
bool awaitBackground(std::chrono::milliseconds limit);

// Runs `work` on a thread that does nothing else meanwhile, and destroys it there. For everything
// that touches files: a disk that hangs then holds up nothing else, not even the end of the process.
void runOnDiskThread(std::function<void()> work);

// Waits until all work given to runOnDiskThread() is done; returns false if some is not in time.
bool awaitDiskThreads(std::chrono::milliseconds limit);

} // namespace quiv
