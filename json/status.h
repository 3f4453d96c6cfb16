// The status that exported operations answer.
#ifndef HEARTH_JSON_STATUS_H
#define HEARTH_JSON_STATUS_H

namespace hearth {

constexpr int kSuccess = 0;
constexpr int kFailure = 2;

}  // namespace hearth

#endif
