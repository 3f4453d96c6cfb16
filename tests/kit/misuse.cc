// Mistakes that the kit's headers refuse, one at a time; see misuse_test.
#include "hearth/kit.h"

void misuse(const TreeMapObject& document);

void misuse(const TreeMapObject& document) {
#if defined(READS_CHAR)  // hearth::get reads integers, double, bool
  static_cast<void>(hearth::get<char>(document, "a"));
#elif defined(WRITES_POINTER)        // hearth::set writes integers, double, bool
  static_cast<void>(hearth::set(document, "a", &document.error));
#elif defined(READS_FROM_TEMPORARY)  // deleted
  static_cast<void>(hearth::get<std::string_view>(*hearth::parse("[]"), "[0]"));
#elif defined(CHANGES_UNDER_A_LOCK)  // Edit
  static_cast<void>(hearth::set(*hearth::AreaLock::take(API_WIFI, ""), "a", 1));
#elif defined(IGNORES_A_RESULT)      // nodiscard
  hearth::set(document, "a", 1);
#else
  static_cast<void>(document);
#endif
}
