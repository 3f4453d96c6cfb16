#include "workers.h"

#include <utility>

Workers::Workers(unsigned int threads) {
  for (unsigned int i = 0; i < threads; ++i) {
    threads_.emplace_back([this] { work(); });
  }
}

bool Workers::push(std::function<void()> job) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (isStopping_) {
      return false;
    }
    jobs_.push_back(std::move(job));
  }
  news_.notify_one();
  return true;
}

void Workers::stop() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isStopping_ = true;
  }
  news_.notify_all();
  for (std::thread& thread : threads_) {
    thread.join();
  }
  threads_.clear();
}

void Workers::work() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    news_.wait(lock, [this] { return isStopping_ || !jobs_.empty(); });
    if (jobs_.empty()) {
      return;
    }
    const std::function<void()> job = std::move(jobs_.front());
    jobs_.pop_front();
    lock.unlock();
    job();
    lock.lock();
  }
}
