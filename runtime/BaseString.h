#pragma once

#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <conduit/Compiler.h>

namespace conduit {

/// A borrowed text, compared with strings without a copy.
struct LentText {
  const char* text;  ///< not null
};

/// An owned, NUL-terminated text: the type of every name, value and message.
///
/// The buffer holds exactly the text and its NUL. A change of length allocates a
/// new buffer before it frees the old one: a failed allocation leaves the string
/// unchanged, and a text inside the own buffer may be assigned or appended. Copies
/// are deep. There is no move, because a string always has a buffer. A null text
/// counts as the empty text. Throws the allocator's exception when an allocation
/// fails, or when a text is beyond the range of `length`.
template <class Char>
class BaseString {
  static_assert(std::same_as<Char, char>, "made for 8-bit text only");

 public:
  /// Callers read both fields, and write only into a buffer from OfLength.
  Char* buffer;         ///< owned; `length` + 1 bytes, never null
  std::int32_t length;  ///< bytes before the terminating NUL

  BaseString();
  /// Implicit, so that a literal serves as a name or value.
  BaseString(const Char* text);
  /// Copies exactly `count` bytes; a count below 1 makes the empty string.
  BaseString(const Char* text, std::int32_t count);
  BaseString(const BaseString& other);
  /// "True" or "False". Constrained, so that no pointer converts to bool.
  explicit BaseString(std::same_as<bool> auto value)
      : BaseString(value ? static_cast<const Char*>("True") : static_cast<const Char*>("False")) {}
  /// The number in signed decimal.
  explicit BaseString(std::int32_t number);
  /// A text of one character; NUL makes the empty string.
  explicit BaseString(Char character);
  virtual ~BaseString() {
    delete[] buffer;
    buffer = nullptr;
    length = 0;
  }

  /// Returns a string of `count` NULs for the caller to fill.
  static BaseString OfLength(std::size_t count);
  /// Returns the formatted text; see Format.
  static BaseString FromFormat(const char* format, ...) CONDUIT_PRINTF(1, 2);

  BaseString& operator=(const BaseString& other);
  void Assign(const Char* text, std::int32_t count);

  /// Truncates the text to `count` bytes, or extends it with NULs.
  /// REQUIRES: count is not negative.
  void SetLength(std::int32_t count);

  void Append(const Char* text);
  void Append(const BaseString& other);
  void Append(std::int32_t number);
  void Append(std::same_as<bool> auto value) { Append(BaseString(value)); }

  /// Replaces the text by the result of a printf format, or by the empty text when
  /// the C library rejects it. REQUIRES: format is not null.
  void Format(const char* format, ...) CONDUIT_PRINTF(2, 3);
  void FormatArguments(const char* format, std::va_list arguments) CONDUIT_PRINTF(2, 0);

  /// Swaps the texts; does not allocate.
  void Swap(BaseString& other) noexcept;

  /// Compares up to the first NUL, as unsigned bytes; a prefix orders first.
  std::strong_ordering operator<=>(const BaseString& other) const;
  /// Inline, because most compared texts differ in the first byte.
  bool operator==(const BaseString& other) const {
    return buffer[0] == other.buffer[0] && std::strcmp(buffer, other.buffer) == 0;
  }
  std::strong_ordering operator<=>(LentText other) const;

 private:
  struct Owned {
    Char* buffer;
    std::size_t length;
  };
  explicit BaseString(Owned owned)
      : buffer(owned.buffer), length(static_cast<std::int32_t>(owned.length)) {}
  /// Returns a buffer for `count` bytes with the terminating NUL set.
  static Char* Allocate(std::size_t count);
  static Char* Copy(const Char* text, std::int32_t count);
  static Owned OwnedCopy(const Char* text, std::size_t count);
  static Owned OwnedDecimal(std::int32_t number);
  void Adopt(Char* newBuffer, std::int32_t newLength);
  void AppendBytes(const Char* text, std::size_t count);
};

extern template class BaseString<char>;

}  // namespace conduit
