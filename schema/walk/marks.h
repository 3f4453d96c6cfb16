// Which members or elements of one value some keyword has already looked at: what
// unevaluatedProperties and unevaluatedItems leave alone. Kept only below a schema that has one of
// these two.
#ifndef HEARTH_SCHEMA_WALK_MARKS_H
#define HEARTH_SCHEMA_WALK_MARKS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace hearth {
namespace schema {

class Marks {
 public:
  explicit Marks(size_t size) : more_(size > kHere ? (size - 1) / kHere : 0) {}

  void mark(size_t i) { word(i) |= uint64_t{1} << i % kHere; }
  void markAll() { all_ = true; }
  [[nodiscard]] bool has(size_t i) const {
    return all_ || ((i < kHere ? first_ : more_[i / kHere - 1]) >> i % kHere & 1) != 0;
  }
  // Adds the marks of another one of the same size.
  void add(const Marks& other) {
    all_ = all_ || other.all_;
    first_ |= other.first_;
    for (size_t i = 0; i < more_.size(); ++i) {
      more_[i] |= other.more_[i];
    }
  }
  [[nodiscard]] Marks fresh() const { return Marks((more_.size() + 1) * kHere); }
  [[nodiscard]] size_t words() const { return more_.size() + 1; }

 private:
  static constexpr size_t kHere = 64;
  uint64_t& word(size_t i) { return i < kHere ? first_ : more_[i / kHere - 1]; }

  bool all_ = false;
  uint64_t first_ = 0;
  std::vector<uint64_t> more_;
};

}  // namespace schema
}  // namespace hearth

#endif
