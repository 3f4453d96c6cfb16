// How deep a value is nested, asked without trusting that it is shallow.
#ifndef HEARTH_JSON_NESTING_H
#define HEARTH_JSON_NESTING_H

struct json_object;

namespace hearth {

// A value that json-c's parser reads has at most this many containers around its innermost one.
constexpr int kParserNesting = 31;

// True when some value inside stands in more than `levels` containers. Recurses no further than
// that.
[[nodiscard]] bool isNestedDeeperThan(json_object* value, int levels);

}  // namespace hearth

#endif
