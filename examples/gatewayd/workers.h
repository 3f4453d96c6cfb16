// Threads that do jobs in the order in which they come. The server has two such lanes, so that
// passwords, which take long, never hold up the rest.
#ifndef HEARTH_EXAMPLES_GATEWAYD_WORKERS_H
#define HEARTH_EXAMPLES_GATEWAYD_WORKERS_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

class Workers {
 public:
  explicit Workers(unsigned int threads);
  ~Workers() { stop(); }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // Hands a job over. False, without doing it ever, once the workers are stopped.
  [[nodiscard]] bool push(std::function<void()> job);

  // Takes no more jobs and returns when all that were taken are done.
  void stop();

 private:
  void work();

  std::mutex mutex_;
  std::condition_variable news_;
  std::deque<std::function<void()>> jobs_;  // guarded by mutex_
  bool isStopping_ = false;                 // guarded by mutex_
  std::vector<std::thread> threads_;        // the last member: they use the others
};

#endif
