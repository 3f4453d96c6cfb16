// An address as text, for a log line. C libraries differ in what they make of %p; hearth's lines
// say "(nil)" for null and hexadecimal digits behind "0x" for the rest, whatever they are built
// with.
#ifndef HEARTH_BASE_ADDRESS_H
#define HEARTH_BASE_ADDRESS_H

namespace hearth {

// Takes no memory from the heap, so that a dying process can use it.
class Address {
 public:
  explicit Address(const void* address);
  Address(const Address&) = delete;
  Address& operator=(const Address&) = delete;

  // Lives as long as the object.
  [[nodiscard]] const char* text() const { return text_; }

 private:
  char digits_[2 + 2 * sizeof(void*) + 1];
  const char* text_;
};

}  // namespace hearth

#endif
