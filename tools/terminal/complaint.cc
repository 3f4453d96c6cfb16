// A failure for people is its text; for programs it is one JSON object on one line:
//
//   {"code":5,"message":"...","area":"wifi","path":"radios.[0].channel","violations":[{...}]}
//
// Area, path and violations stand there only where they are known.
#include "hearth/kit/render.h"
#include "hearth/kit/write.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// A member's value. Text that is no UTF-8 could not stand in JSON, so such bytes are escaped.
void put(Edit object, const char* name, const std::string& text) {
  if (!text.empty()) {
    static_cast<void>(set(object, name, escaped(text, Escapes::kTerminal)));
  }
}

Value violationOf(const BrokenRule& rule) {
  Value object = newObject();
  static_cast<void>(set(object, "pointer", rule.place));
  put(object, "rule", rule.rule);
  put(object, "keyword", rule.keyword);
  put(object, "member", rule.member);
  put(object, "message", rule.sentence);
  return object;
}

std::string inJson(const Failure& failure) {
  const Value object = newObject();
  static_cast<void>(set(object, "code", static_cast<int>(failure.exit())));
  put(object, "message", failure.what());
  put(object, "area", failure.area);
  put(object, "path", failure.path);
  if (!failure.broken.empty()) {
    static_cast<void>(set(object, "violations", newArray()));
    const Value violations = Value::sharing(find(object, "violations"));
    for (const BrokenRule& rule : failure.broken) {
      static_cast<void>(append(violations, violationOf(rule)));
    }
  }
  return toText(object);
}

}  // namespace

void complainOf(const Failure& failure, bool asJson) {
  if (!asJson || *failure.what() == '\0') {
    complain(failure.what());
  } else {
    complainWith(inJson(failure));
  }
}

}  // namespace hearth::tool
