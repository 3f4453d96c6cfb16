// What a schema says about one place of the documents that it is for, whether a value is there or
// not.
#ifndef HEARTH_TOOLS_DOCUMENT_SCHEMA_FACTS_H
#define HEARTH_TOOLS_DOCUMENT_SCHEMA_FACTS_H

#include <string>
#include <vector>

#include "hearth/kit/handle.h"
#include "tools/document/path.h"

namespace hearth::tool {

// A schema that speaks about a place. An alternative need not hold: it is one of several, or has a
// condition.
struct Saying {
  View schema;
  bool isAlternative = false;

  // The value of one of its own keywords; nothing where it does not have it.
  [[nodiscard]] View keyword(const char* name) const;
};

// The schemas that speak about a place, nearest first: of a schema with a reference, its own words
// come before those that it refers to. Valid while the schema is.
class SchemaPlace {
 public:
  // The place of the whole document. `schema` is borrowed.
  explicit SchemaPlace(View schema);

  // The place one step further.
  [[nodiscard]] SchemaPlace below(const Step& step) const;

  // False when nothing is said: then anything may stand there, unless the place is closed.
  bool isKnown() const { return !sayings_.empty(); }
  // True for a member that the schema does not allow.
  bool isClosed() const { return isClosed_; }
  // Whether the member must be there.
  bool isRequired() const { return isRequired_; }

  // The value of a keyword in the nearest schema that has it and must hold; nothing where none has.
  [[nodiscard]] View first(const char* keyword) const;
  [[nodiscard]] const std::vector<Saying>& sayings() const { return sayings_; }
  // The names of the members that may stand here.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  SchemaPlace(View root, bool isRequired) : root_(root), isRequired_(isRequired) {}

  void add(View schema, bool isAlternative);
  void addReferred(View schema, bool isAlternative);
  void addMember(const Saying& saying, const std::string& name);
  void addElement(const Saying& saying, std::size_t index);

  View root_;  // where references begin
  std::vector<Saying> sayings_;
  bool isRequired_ = false;
  bool isClosed_ = false;
};

}  // namespace hearth::tool

#endif
