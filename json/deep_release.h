// Releasing what a very long path has made.
//
// json-c releases a tree by recursion, one level of containers after the other, and the stack of a
// request thread holds only some hundred levels. A path may have any number of tokens, so the
// containers that it makes far down are marked: a marked container that dies hands its children to
// a queue instead, and the outermost one of them empties that queue in a loop.
#ifndef HEARTH_JSON_DEEP_RELEASE_H
#define HEARTH_JSON_DEEP_RELEASE_H

#include <cstddef>

struct json_object;

namespace hearth {

// Marks a container just made at the token `position` of a path, if that is far down. Passes its
// argument through, null too.
json_object* newContainer(json_object* made, std::size_t position);

}  // namespace hearth

#endif
