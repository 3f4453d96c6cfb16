#include "area_turn.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "server_limits.h"

AreaTurn::AreaTurn(API_TYPE_T area)
    : queue_(queueOf(area)), end_(Clock::now() + limits::kPatience) {
  std::unique_lock<std::mutex> lock(queue_.mutex);
  queue_.waiting.push_back(this);
  queue_.moved.wait_until(lock, end_, [this] { return queue_.waiting.front() == this; });
}

AreaTurn::~AreaTurn() {
  {
    const std::lock_guard<std::mutex> lock(queue_.mutex);
    std::deque<const AreaTurn*>& waiting = queue_.waiting;
    waiting.erase(std::remove(waiting.begin(), waiting.end(), this), waiting.end());
  }
  queue_.moved.notify_all();
}

std::chrono::milliseconds AreaTurn::patience() const {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now());
  return std::max(left, std::chrono::milliseconds::zero());
}

AreaTurn::Queue& AreaTurn::queueOf(API_TYPE_T area) {
  static std::array<Queue, std::size(API_DATA_DIR)> queues;
  return queues.at(static_cast<std::size_t>(area));
}
