// Finds the words for a failure.
//
// Two tables hold the sentences, one by keyword and one by trouble. A sentence is a text with gaps,
// '%' and a letter; the letter says which of the facts known of the failure stands there, and
// Sentence::fill has their list. A sentence quotes parts of documents that anybody may have sent,
// so every text in it is cut when it is long and made harmless: UTF-8, without control characters.
#include "schema/describe.h"

#include <json-c/json.h>

#include <charconv>
#include <utility>

#include "base/utf8.h"
#include "schema/keywords/assertions.h"
#include "schema/keywords/equality.h"
#include "schema/keywords/number.h"
#include "schema/text.h"

namespace hearth::schema {
namespace {

// In bytes, of a text that a sentence quotes.
constexpr std::size_t kLongestShown = 60;

// In the order of json_type. The article belongs to the name.
constexpr char kTypes[][11] = {"null",      "a boolean", "a number", "an integer",
                               "an object", "an array",  "a string"};

// Sentences go on behind the place of the instance: "/a must be a string, but is null".
struct FailureRow {
  Id keyword;
  const char* sentence;
};

constexpr FailureRow kFailures[] = {
    {Id::kType, "must be %w, but is %a"},
    {Id::kEnum, "must be one of %l, but is %i"},
    {Id::kConst, "must be %v, but is %i"},
    {Id::kMultipleOf, "must be a multiple of %v, but is %i"},
    {Id::kMaximum, "must be at most %v, but is %i"},
    {Id::kMinimum, "must be at least %v, but is %i"},
    {Id::kExclusiveMaximum, "must be less than %v, but is %i"},
    {Id::kExclusiveMinimum, "must be more than %v, but is %i"},
    {Id::kMaxLength, "must be at most %v characters long, but has %n"},
    {Id::kMinLength, "must be at least %v characters long, but has %n"},
    {Id::kPattern, "must match the pattern %v, but is %i"},
    {Id::kFormat, "must be a valid %t, but is %i"},
    {Id::kContentEncoding, "must be encoded as %t"},
    {Id::kContentMediaType, "must hold a document of type %t"},
    {Id::kMaxItems, "must have at most %v element%s, but has %n"},
    {Id::kMinItems, "must have at least %v element%s, but has %n"},
    {Id::kMaxProperties, "must have at most %v member%s, but has %n"},
    {Id::kMinProperties, "must have at least %v member%s, but has %n"},
    {Id::kUniqueItems, "must not hold equal elements, but %e are equal"},
    {Id::kNot, "must not match the schema of \"not\""},
    {Id::kOneOf, "must match exactly one of the alternatives, but matches more"},
    {Id::kContains, "must have at least 1 matching \"contains\", but has %c"},
    {Id::kMinContains, "must have at least %v matching \"contains\", but has %c"},
    {Id::kMaxContains, "must have at most %v matching \"contains\", but has %c"},
    {Id::kNone, "does not satisfy %k"},
};

// These stand behind "cannot be checked: ".
struct TroubleRow {
  Trouble trouble;
  char sentence[51];
};

constexpr TroubleRow kTroubles[] = {
    {Trouble::kTooDeep, "schema or value are nested too deeply"},
    {Trouble::kEndless, "a reference in the schema leads back to itself"},
    {Trouble::kTooMuchWork, "it takes too much work"},
    {Trouble::kNoMemory, "memory ran out"},
    {Trouble::kBadSchema, "the schema here is %b, not an object or a boolean"},
    {Trouble::kBadValue, "%k cannot have the value %v"},
    {Trouble::kLongIdentifier, "an identifier in the schema is too long"},
    {Trouble::kUnresolved, "the reference %v leads nowhere"},
    {Trouble::kBadPattern, "a pattern of %k is no usable regular expression"},
    {Trouble::kPatternLimit, "a pattern of %k takes too much work"},
    {Trouble::kUnknownVocabulary, "the schema requires a vocabulary that is not known"},
};

// The last row is for keywords that have no sentence of their own.
const char* failureOf(Id keyword) {
  const FailureRow* row = kFailures;
  while (row->keyword != keyword && row->keyword != Id::kNone) {
    ++row;
  }
  return row->sentence;
}

// How many elements, members or characters the value has.
std::size_t sizeOf(json_object* value) {
  switch (json_object_get_type(value)) {
    case json_type_array:
      return json_object_array_length(value);
    case json_type_object:
      return static_cast<std::size_t>(json_object_object_length(value));
    default:
      return countCharacters(textOf(value));
  }
}

// Puts a '?' for each byte that is no character, and a blank for each character that could move a
// terminal's cursor or change its colours.
void addHarmless(std::string_view text, std::string& out) {
  while (!text.empty()) {
    const Character first = firstCharacter(text);
    const bool isControl = first.code < ' ' || (first.code >= 0x7F && first.code < 0xA0);
    out += !first.isValid ? "?" : isControl ? " " : text.substr(0, first.size);
    text.remove_prefix(first.size);
  }
}

// The sentence about a failure, and what is known of it. A fact that is not given here must not
// stand in a sentence that is added.
class Sentence {
 public:
  Sentence(json_object* instance, Id keyword, json_object* value, Effort* effort)
      : instance_(instance), keyword_(keyword), value_(value), effort_(effort) {}
  Sentence(std::size_t count, Id keyword, json_object* value)
      : keyword_(keyword), value_(value), count_(count) {}

  Sentence& add(const char* sentence) {
    for (const char* at = sentence; *at; ++at) {
      if (*at == '%') {
        fill(*++at);
      } else {
        out_ += *at;
      }
    }
    return *this;
  }

  // A name is quoted whole: whoever reads the sentence must be able to find the member.
  Sentence& addName(const char* name) {
    addText(name, std::string_view::npos);
    return *this;
  }

  std::string& text() { return out_; }

 private:
  void fill(char gap) {
    switch (gap) {
      case 'i':  // the instance
        return addValue(instance_);
      case 'a':  // its type
        return addType(instance_);
      case 'n':  // how many characters, elements or members it has
        return addNumber(sizeOf(instance_));
      case 'c':  // how many of its elements match "contains"
        return addNumber(count_);
      case 'e':  // which of its elements are equal
        return addEqualElements();
      case 'k':  // the keyword
        addName(nameOf(keyword_));
        return;
      case 'v':  // its value
        return addValue(value_);
      case 'b':  // the type of its value
        return addType(value_);
      case 't':  // the text that its value is
        out_ += textOf(value_);
        return;
      case 'l':  // the list that its value is
        return addList();
      case 'w':  // the types that its value wants
        return addTypesWanted();
      default:  // s: the ending of a noun that its value counts
        return addEnding();
    }
  }

  // Scalars as JSON has them, containers by their size. json-c's own rendering would write into the
  // value, which others may be reading.
  void addValue(json_object* value) {
    switch (json_object_get_type(value)) {
      case json_type_boolean:
        out_ += json_object_get_boolean(value) ? "true" : "false";
        break;
      case json_type_int:
      case json_type_double:
        addNumber(numberOf(value));
        break;
      case json_type_string:
        addText(textOf(value), kLongestShown);
        break;
      case json_type_array:
        addContainer(value, " element");
        break;
      case json_type_object:
        addContainer(value, " member");
        break;
      default:
        addType(value);
        break;
    }
  }

  // "an object".
  void addType(json_object* value) { out_ += kTypes[json_object_get_type(value)]; }

  void addNumber(uint64_t number) { out_ += decimal(number); }

  // As few digits as mean the number, whatever the locale.
  void addNumber(const Number& number) {
    if (number.isDouble) {
      char text[32];
      out_.append(text, std::to_chars(text, text + sizeof(text), number.real).ptr);
    } else {
      out_ += number.negative ? "-" : "";
      addNumber(number.magnitude);
    }
  }

  // In quotes; a text of more bytes than that is cut between two characters.
  void addText(std::string_view text, std::size_t mostBytes) {
    const std::string_view start = startOf(text, mostBytes);
    out_ += '"';
    addHarmless(start, out_);
    out_ += start.size() < text.size() ? "...\"" : "\"";
  }

  // "an array of 2 elements": its contents may be as long as the document.
  void addContainer(json_object* container, const char* noun) {
    const std::size_t size = sizeOf(container);
    addType(container);
    append({" of ", decimal(size), noun, size == 1 ? "" : "s"}, out_);
  }

  // The values of a list; of a long one the first eight.
  void addList() {
    constexpr std::size_t kMost = 8;
    const std::size_t count = json_object_array_length(value_);
    for (std::size_t i = 0; i < count && i < kMost; ++i) {
      out_ += i ? ", " : "";
      addValue(json_object_array_get_idx(value_, i));
    }
    out_ += count > kMost ? ", ..." : "";
  }

  // "a string", or "one of the types "string", "null"".
  void addTypesWanted() {
    if (json_object_get_type(value_) == json_type_array) {
      out_ += "one of the types ";
      return addList();
    }
    const std::string_view name = json_object_get_string(value_);
    const bool isVowel = name == "object" || name == "array" || name == "integer";
    append({name == "null" ? "" : isVowel ? "an " : "a ", name}, out_);
  }

  // They are looked for once more, since the failure did not say which ones they are. The budget
  // for words may be too small for that.
  void addEqualElements() {
    const EqualPair pair = findEqualElements(instance_, *effort_);
    if (pair.found) {
      append({"elements ", decimal(pair.first), " and ", decimal(pair.second)}, out_);
    } else {
      out_ += "some";
    }
  }

  // "1 element", "2 elements".
  void addEnding() {
    uint64_t count = 0;
    out_ += isCount(value_, count) && count == 1 ? "" : "s";
  }

  json_object* instance_ = nullptr;
  Id keyword_;
  json_object* value_;
  std::size_t count_ = 0;
  Effort* effort_ = nullptr;
  std::string out_;
};

// Draft-04 says by a keyword of its own that a bound is exclusive.
Id boundOf(Id keyword, json_object* schema, Draft draft) {
  if (keyword == Id::kMaximum && isExclusive(schema, "exclusiveMaximum", draft)) {
    return Id::kExclusiveMaximum;
  }
  if (keyword == Id::kMinimum && isExclusive(schema, "exclusiveMinimum", draft)) {
    return Id::kExclusiveMinimum;
  }
  return keyword;
}

}  // namespace

std::string describeFailure(json_object* instance, Id keyword, json_object* value,
                            json_object* schema, Draft draft, Effort& effort) {
  Sentence sentence(instance, keyword, value, &effort);
  return std::move(sentence.add(failureOf(boundOf(keyword, schema, draft))).text());
}

// A list in "dependencies" does not say which member it is for: the walk is at the list itself.
std::string describeMissing(const char* name, Id keyword, const char* needer) {
  Sentence sentence(0, keyword, nullptr);
  sentence.add("must have the member ").addName(name);
  if (needer != nullptr) {
    sentence.add(", because it has ").addName(needer);
  } else if (keyword == Id::kDependencies) {
    sentence.add(", because another member needs it");
  }
  return std::move(sentence.text());
}

std::string describeCount(std::size_t count, Id keyword, json_object* value) {
  Sentence sentence(count, keyword, value);
  return std::move(sentence.add(failureOf(keyword)).text());
}

std::string describeClosest(std::size_t number, const std::string& where,
                            const std::string& message) {
  std::string out = joined({"; the closest is number ", decimal(number), ": "});
  addHarmless(where.empty() ? "it" : where, out);
  append({" ", message}, out);
  return out;
}

std::string describeTrouble(Trouble trouble, Id keyword, json_object* value) {
  Sentence sentence(0, keyword, value);
  for (const TroubleRow& row : kTroubles) {
    if (row.trouble == trouble) {
      sentence.add("cannot be checked: ").add(row.sentence);
    }
  }
  return std::move(sentence.text());
}

}  // namespace hearth::schema
