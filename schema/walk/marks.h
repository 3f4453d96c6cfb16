// Which members or elements of one value some keyword has already looked at. The keywords
// unevaluatedProperties and unevaluatedItems leave those alone. Marks are kept only below a schema
// that has one of these two.
#ifndef HEARTH_SCHEMA_WALK_MARKS_H
#define HEARTH_SCHEMA_WALK_MARKS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace hearth::schema {

// A set of positions. The first 64 need no memory of their own.
class Marks {
 public:
  explicit Marks(std::size_t size) : more_(size > kHere ? (size - 1) / kHere : 0) {}

  void mark(std::size_t i) { word(i) |= uint64_t{1} << i % kHere; }
  void markAll() { all_ = true; }
  [[nodiscard]] bool has(std::size_t i) const {
    return all_ || ((i < kHere ? first_ : more_[i / kHere - 1]) >> i % kHere & 1) != 0;
  }
  // Adds the marks of another one of the same size.
  void add(const Marks& other) {
    all_ = all_ || other.all_;
    first_ |= other.first_;
    for (std::size_t i = 0; i < more_.size(); ++i) {
      more_[i] |= other.more_[i];
    }
  }
  // No marks, for the same value.
  [[nodiscard]] Marks withoutMarks() const { return Marks((more_.size() + 1) * kHere); }
  // How much making or adding marks of this size costs.
  [[nodiscard]] std::size_t wordCount() const { return more_.size() + 1; }

 private:
  static constexpr std::size_t kHere = 64;
  uint64_t& word(std::size_t i) { return i < kHere ? first_ : more_[i / kHere - 1]; }

  bool all_ = false;
  uint64_t first_ = 0;
  std::vector<uint64_t> more_;
};

}  // namespace hearth::schema

#endif
