// The status that exported operations answer.
#ifndef HEARTH_BASE_STATUS_H
#define HEARTH_BASE_STATUS_H

namespace hearth {

constexpr int kSuccess = 0;
constexpr int kFailure = 2;

}  // namespace hearth

#endif
