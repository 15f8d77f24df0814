#pragma once

#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <conduit/Compiler.h>

namespace conduit {

/// A text of somebody else, to be compared with strings without copying it.
struct LentText {
  const char* text;  ///< not null
};

/// An owned, NUL-terminated text: every name, value and message is one.
///
/// The buffer holds exactly the text and its NUL; every change of length makes a
/// new one, and only then releases the old one, so that a failed allocation
/// leaves the string as it was and a text from inside the own buffer may be
/// assigned or appended. Copies are deep, and there is no move: a string is
/// never without a buffer. Null texts count as the empty text. An allocation
/// that fails passes the allocator's exception on, which a text beyond the range
/// of `length` also does.
template <class Char>
class BaseString {
  static_assert(std::same_as<Char, char>, "made for 8-bit text only");

 public:
  /// Read directly wherever the text leaves the system; written by this class,
  /// and by who fills a string made by OfLength.
  Char* buffer;         ///< owned; `length` + 1 bytes, never null
  std::int32_t length;  ///< bytes before the terminating NUL

  BaseString();
  /// Implicit, so that a text can be given wherever a name or value is wanted.
  BaseString(const Char* text);
  /// Exactly `count` bytes of the text; a count below 1 gives the empty string.
  BaseString(const Char* text, std::int32_t count);
  BaseString(const BaseString& other);
  /// "True" or "False". Takes no pointer for a truth value.
  explicit BaseString(std::same_as<bool> auto value)
      : BaseString(value ? static_cast<const Char*>("True") : static_cast<const Char*>("False")) {}
  /// The number in signed decimal.
  explicit BaseString(std::int32_t number);
  /// A text of one character; NUL gives the empty string.
  explicit BaseString(Char character);
  virtual ~BaseString() {
    delete[] buffer;
    buffer = nullptr;
    length = 0;
  }

  /// A string of `count` NULs, to be filled by the caller.
  static BaseString OfLength(std::size_t count);
  /// The text that a printf format makes of its arguments; see Format.
  static BaseString FromFormat(const char* format, ...) CONDUIT_PRINTF(1, 2);

  BaseString& operator=(const BaseString& other);
  void Assign(const Char* text, std::int32_t count);

  /// Cuts the text, or extends it with NULs, to `count` bytes.
  /// REQUIRES: count is not negative.
  void SetLength(std::int32_t count);

  void Append(const Char* text);
  void Append(const BaseString& other);
  void Append(std::int32_t number);
  void Append(std::same_as<bool> auto value) { Append(BaseString(value)); }

  /// Replaces the text by what a printf format makes of the arguments; by the
  /// empty text when the formatter refuses the format. REQUIRES: format is not
  /// null.
  void Format(const char* format, ...) CONDUIT_PRINTF(2, 3);
  void FormatArguments(const char* format, std::va_list arguments) CONDUIT_PRINTF(2, 0);

  /// Exchanges the texts; allocates nothing.
  void Swap(BaseString& other) noexcept;

  /// The order of the texts up to their NULs, byte by byte as unsigned values, a
  /// text before every longer one that it begins.
  std::strong_ordering operator<=>(const BaseString& other) const;
  /// Inline, for most texts that are compared differ in their first byte.
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
  /// A buffer for a text of that many bytes, the NUL behind them already set.
  static Char* Allocate(std::size_t count);
  static Char* Copy(const Char* text, std::int32_t count);
  static Owned OwnedCopy(const Char* text, std::size_t count);
  static Owned OwnedDecimal(std::int32_t number);
  void Adopt(Char* newBuffer, std::int32_t newLength);
  void AppendBytes(const Char* text, std::size_t count);
};

extern template class BaseString<char>;

}  // namespace conduit
