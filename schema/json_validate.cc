// The two functions that the rest of the library knows.
#include "schema/json_validate.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <exception>
#include <string>
#include <utility>

#include "schema/validate.h"
#include "schema/walker.h"

namespace hearth {
namespace schema {

namespace {

// Told in place of the violation for which there was no memory. The audience may find none either.
void tellOfMemory(const Audience& audience) {
  try {
    Violation violation;
    violation.message = "memory ran out";  // short enough to need none
    audience.found(audience.context, violation);
  } catch (const std::exception&) {
  }
}

}  // namespace

bool validate(json_object* instance, json_object* schema, Violation* violation,
              Draft unnamed) noexcept {
  const auto take = [](void* taken, Violation& told) {
    *static_cast<Violation*>(taken) = std::move(told);
    return false;
  };
  const Audience audience = {take, violation, violation ? size_t{1} : 0};
  return tellViolations(instance, schema, audience, unnamed) == Conformance::kConforms;
}

Conformance tellViolations(json_object* instance, json_object* schema, Audience audience,
                           Draft unnamed) noexcept {
  try {
    return Walker(schema, unnamed, audience).run(instance);
  } catch (const std::exception&) {  // memory ran out
    if (audience.limit > 0) {
      tellOfMemory(audience);
    }
    return Conformance::kExhausted;
  }
}

namespace {

// Closed also when memory runs out while the file is read.
struct Descriptor {
  ~Descriptor() {
    if (number >= 0) {
      close(number);
    }
  }
  const int number;
};

// A JSON document from a file; its value may be JSON's null, so success is told apart from it.
class Document {
 public:
  explicit Document(const char* path) { isRead_ = readText(path) && parse(); }
  ~Document() { json_object_put(value_); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  [[nodiscard]] bool isRead() const { return isRead_; }
  [[nodiscard]] json_object* value() const { return value_; }

 private:
  bool readText(const char* path) {
    // Only a regular file is opened: opening a device may do something by itself, and a pipe has
    // somebody waiting at its other end. What was opened may not be what was asked about before.
    struct stat status;
    if (!path || stat(path, &status) != 0 || !S_ISREG(status.st_mode)) {
      return false;
    }
    const Descriptor file{open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
    return file.number >= 0 && fstat(file.number, &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_size < INT_MAX && readAll(file.number);
  }

  bool readAll(int file) {
    char buffer[4096];
    for (;;) {
      const ssize_t size = read(file, buffer, sizeof buffer);
      if (size > 0) {
        text_.append(buffer, static_cast<size_t>(size));
      } else if (size == 0 || errno != EINTR) {
        return size == 0 && text_.size() < INT_MAX;
      }
    }
  }

  bool parse() {
    json_tokener* const tokener = json_tokener_new();
    if (!tokener) {
      return false;
    }
    errno = 0;
    // The NUL at the end tells the parser that a number is complete.
    value_ = json_tokener_parse_ex(tokener, text_.c_str(), static_cast<int>(text_.size()) + 1);
    // The parser leaves out what it finds no memory for.
    const bool success = json_tokener_get_error(tokener) == json_tokener_success && errno != ENOMEM;
    json_tokener_free(tokener);
    return success;
  }

  std::string text_;
  json_object* value_ = nullptr;
  bool isRead_ = false;
};

}  // namespace
}  // namespace schema
}  // namespace hearth

int json_validate_instance(json_object* instance, json_object* schema) {
  return hearth::schema::validate(instance, schema);
}

int json_validate_instance_from_file(const char* instanceFile, const char* schemaFile) {
  try {
    const hearth::schema::Document instance(instanceFile);
    const hearth::schema::Document schema(schemaFile);
    return instance.isRead() && schema.isRead() &&
           hearth::schema::validate(instance.value(), schema.value());
  } catch (const std::exception&) {
    return 0;
  }
}
