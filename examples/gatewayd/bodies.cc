#include "bodies.h"

namespace {

using hearth::Fault;
using hearth::View;

bool hasNul(View value) {
  const auto text = hearth::get<std::string_view>(value);
  if (text && text->find('\0') != text->npos) {
    return true;
  }
  for (const hearth::Member& member : hearth::members(value)) {
    if (hasNul(member.value)) {
      return true;
    }
  }
  for (const View element : hearth::elements(value)) {
    if (hasNul(element)) {
      return true;
    }
  }
  return false;
}

}  // namespace

hearth::Result<hearth::Value> parseBody(const std::string& body) {
  hearth::Result<hearth::Value> value = hearth::parse(body);
  if (value && hasNul(*value)) {
    hearth::Failure failure;
    failure.fault = Fault::kBadText;
    failure.sentence = "a text has a NUL in it";
    return failure;
  }
  return value;
}

int statusOf(Fault fault) {
  switch (fault) {
    case Fault::kNoValue:
    case Fault::kNoArea:
      return 404;
    case Fault::kBadArgument:
    case Fault::kBadText:
      return 400;
    case Fault::kNotStored:
      return 409;
    case Fault::kRefused:
      return 422;
    case Fault::kBusy:
      return 423;
    case Fault::kNoSession:
      return 401;
    default:
      return 503;  // the store cannot be read, checked or written
  }
}
