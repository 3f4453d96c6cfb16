#include "login_limit.h"

#include <hearth/kit.h>

#include <algorithm>

#include "secrets.h"
#include "server_limits.h"

using std::chrono::seconds;

seconds LoginLimit::admit(const Attempt& attempt, Clock::time_point now) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const seconds wait = waitNow(attempt, now);
  if (wait > seconds::zero()) {
    return wait;
  }
  Count& count = countOf(attempt, now);
  ++count.attempts;
  count.last = now;
  if (!isMarked(attempt)) {
    Count& name = countIn(names_, attempt.user, limits::kCountedNames, now);
    ++name.attempts;
    name.last = now;
    // The records are for other parts of the gateway to see. They count no address that is not
    // counted here, so that nobody makes their file grow.
    if (addresses_.count(attempt.address) != 0) {
      BELoginRecord::setAttempt(attempt.address.c_str());
    }
  }
  return seconds::zero();
}

std::string LoginLimit::succeeded(const Attempt& attempt) {
  takeBack(attempt);
  const std::lock_guard<std::mutex> lock(mutex_);
  if (isMarked(attempt)) {
    marks_.erase(attempt.mark);
    return attempt.mark;
  }
  addresses_.erase(attempt.address);
  BELoginRecord::eraseAttempt(attempt.address.c_str());
  std::string mark = randomSecret();
  std::deque<std::string>& marks = marksOf_[attempt.user];
  marks.push_back(mark);
  if (marks.size() > limits::kBrowsersOfUser) {
    marks_.erase(marks.front());
    marks.pop_front();
  }
  return mark;
}

void LoginLimit::takeBack(const Attempt& attempt) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const Clock::time_point now = Clock::now();
  Count& count = countOf(attempt, now);
  count.attempts = std::max(count.attempts - 1, 0);
  if (!isMarked(attempt)) {
    Count& name = countIn(names_, attempt.user, limits::kCountedNames, now);
    name.attempts = std::max(name.attempts - 1, 0);
  }
}

seconds LoginLimit::wait(const Attempt& attempt, Clock::time_point now) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return waitNow(attempt, now);
}

bool LoginLimit::isMarked(const Attempt& attempt) const {
  const auto marks = marksOf_.find(attempt.user);
  return marks != marksOf_.end() && !attempt.mark.empty() &&
         std::find(marks->second.begin(), marks->second.end(), attempt.mark) != marks->second.end();
}

LoginLimit::Count& LoginLimit::countOf(const Attempt& attempt, Clock::time_point now) {
  return isMarked(attempt) ? marks_[attempt.mark]
                           : countIn(addresses_, attempt.address, limits::kCountedAddresses, now);
}

// While a name is attacked, from wherever, no address has free attempts at it.
seconds LoginLimit::waitNow(const Attempt& attempt, Clock::time_point now) {
  const Count& count = countOf(attempt, now);
  int over = count.attempts - limits::kFreeLogins;
  if (!isMarked(attempt)) {
    const Count& name = countIn(names_, attempt.user, limits::kCountedNames, now);
    const bool isAttacked = name.attempts > limits::kFreeLoginsOfName;
    const bool isRecorded = BELoginRecord::getAttempt(attempt.address.c_str()).waitMinutes > 0;
    over = isAttacked ? count.attempts : std::max(over, isRecorded ? 1 : 0);
  }
  if (over <= 0) {
    return seconds::zero();
  }
  const seconds pause =
      std::min(limits::kLoginPause * std::min(over, 1000), limits::kLongestLoginPause);
  return std::max(std::chrono::ceil<seconds>(count.last + pause - now), seconds::zero());
}

// The count of a key. Counts without an attempt for long are dropped to make room; where that is
// not enough, those that come later share one.
LoginLimit::Count& LoginLimit::countIn(Counts& counts, const std::string& key, std::size_t most,
                                       Clock::time_point now) {
  const auto found = counts.find(key);
  if (found != counts.end() && now - found->second.last > limits::kLoginMemory) {
    found->second = Count();
  }
  if (found == counts.end() && counts.size() >= most) {
    for (auto entry = counts.begin(); entry != counts.end();) {
      entry =
          now - entry->second.last > limits::kLoginMemory ? counts.erase(entry) : std::next(entry);
    }
  }
  const bool isShared = found == counts.end() && counts.size() >= most;
  Count& count = counts[isShared ? "" : key];
  if (count.attempts == 0) {
    count.last = now;
  }
  return count;
}
