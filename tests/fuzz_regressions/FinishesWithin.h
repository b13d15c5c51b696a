// A render that never ends cannot be cancelled, only reported: runs the work on its own thread
// and ends the test program with a failure once the limit has passed.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace morvane::fuzz {

template <typename Work>
void FinishesWithin(std::chrono::seconds limit, const char* what, Work work) {
  std::mutex mutex;
  std::condition_variable finished;
  bool done = false;
  std::thread worker([&] {
    work();
    const std::lock_guard lock(mutex);
    done = true;
    finished.notify_one();
  });
  std::unique_lock lock(mutex);
  if (!finished.wait_for(lock, limit, [&] { return done; })) {
    std::fprintf(stderr, "FAILED: %s did not finish within %lld s\n", what,
                 static_cast<long long>(limit.count()));
    std::fflush(stderr);
    std::_Exit(EXIT_FAILURE);
  }
  lock.unlock();
  worker.join();
}

}  // namespace morvane::fuzz
