// Sets of drafts, a bit for each: in which ones a keyword exists or a row of a table counts.
#ifndef HEARTH_SCHEMA_KEYWORDS_DRAFT_SETS_H
#define HEARTH_SCHEMA_KEYWORDS_DRAFT_SETS_H

#include <cstdint>

#include "schema/validate.h"

namespace hearth::schema {

constexpr unsigned draftBit(Draft draft) {
  return 1U << static_cast<unsigned>(draft);
}

constexpr uint8_t k4 = 1, k6 = 2, k7 = 4, k19 = 8, k20 = 16;
constexpr uint8_t kAll = k4 | k6 | k7 | k19 | k20;
constexpr uint8_t kFrom6 = kAll & ~k4, kFrom7 = kFrom6 & ~k6, kFrom19 = k19 | k20;
constexpr uint8_t kTo7 = k4 | k6 | k7, kTo19 = kAll & ~k20;
static_assert(draftBit(Draft::k4) == k4 && draftBit(Draft::k2020) == k20, "the order of Draft");

}  // namespace hearth::schema

#endif
