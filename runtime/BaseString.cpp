#include "runtime/BaseString.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

#include "runtime/Text.h"

namespace conduit {
namespace {

constexpr std::size_t LongestText = std::numeric_limits<std::int32_t>::max();

}  // namespace

template <class Char>
BaseString<Char>::BaseString() : buffer(Allocate(0)), length(0) {}

template <class Char>
BaseString<Char>::BaseString(const Char* text)
    : BaseString(text != nullptr ? OwnedCopy(text, std::strlen(text)) : OwnedCopy("", 0)) {}

template <class Char>
BaseString<Char>::BaseString(const Char* text, std::int32_t count)
    : buffer(Copy(text, count)), length(text != nullptr ? std::max(count, 0) : 0) {}

template <class Char>
BaseString<Char>::BaseString(const BaseString& other) : BaseString(other.buffer, other.length) {}

template <class Char>
BaseString<Char>::BaseString(std::int32_t number) : BaseString(OwnedDecimal(number)) {}

template <class Char>
BaseString<Char>::BaseString(Char character) : BaseString(&character, character != '\0' ? 1 : 0) {}

template <class Char>
BaseString<Char> BaseString<Char>::OfLength(std::size_t count) {
  Char* const nuls = Allocate(count);
  std::memset(nuls, 0, count);
  return BaseString(Owned{nuls, count});
}

template <class Char>
BaseString<Char> BaseString<Char>::FromFormat(const char* format, ...) {
  BaseString result;
  std::va_list arguments;
  va_start(arguments, format);
  result.FormatArguments(format, arguments);
  va_end(arguments);
  return result;
}

template <class Char>
BaseString<Char>& BaseString<Char>::operator=(const BaseString& other) {
  if (this != &other) {
    Assign(other.buffer, other.length);
  }
  return *this;
}

template <class Char>
void BaseString<Char>::Assign(const Char* text, std::int32_t count) {
  Adopt(Copy(text, count), text != nullptr ? std::max(count, 0) : 0);
}

template <class Char>
void BaseString<Char>::SetLength(std::int32_t count) {
  if (count == length) {
    return;
  }
  const auto size = static_cast<std::size_t>(count);
  const auto kept = static_cast<std::size_t>(std::min(count, length));
  Char* const resized = Allocate(size);
  std::memcpy(resized, buffer, kept);
  std::memset(resized + kept, 0, size - kept);
  Adopt(resized, count);
}

template <class Char>
void BaseString<Char>::Append(const Char* text) {
  AppendBytes(OrEmpty(text), std::strlen(OrEmpty(text)));
}

template <class Char>
void BaseString<Char>::Append(const BaseString& other) {
  AppendBytes(other.buffer, static_cast<std::size_t>(std::max(other.length, 0)));
}

template <class Char>
void BaseString<Char>::Append(std::int32_t number) {
  Append(BaseString(number));
}

template <class Char>
void BaseString<Char>::Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  FormatArguments(format, arguments);
  va_end(arguments);
}

template <class Char>
void BaseString<Char>::FormatArguments(const char* format, std::va_list arguments) {
  // Most results fit here, so the second formatting is rare.
  std::array<Char, 128> scratch;
  std::va_list again;
  va_copy(again, arguments);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): both callers start the list
  const int count = std::vsnprintf(scratch.data(), scratch.size(), format, arguments);
  if (count < 0) {
    Assign(nullptr, 0);
  } else if (static_cast<std::size_t>(count) < scratch.size()) {
    Assign(scratch.data(), count);
  } else {
    const std::size_t size = static_cast<std::size_t>(count) + 1;
    BaseString formatted = OfLength(size - 1);
    std::vsnprintf(formatted.buffer, size, format, again);
    Swap(formatted);
  }
  va_end(again);
}

template <class Char>
void BaseString<Char>::Swap(BaseString& other) noexcept {
  std::swap(buffer, other.buffer);
  std::swap(length, other.length);
}

template <class Char>
std::strong_ordering BaseString<Char>::operator<=>(const BaseString& other) const {
  return std::strcmp(buffer, other.buffer) <=> 0;
}

template <class Char>
std::strong_ordering BaseString<Char>::operator<=>(LentText other) const {
  return std::strcmp(buffer, other.text) <=> 0;
}

template <class Char>
Char* BaseString<Char>::Allocate(std::size_t count) {
  // A text beyond the range of `length` requests a size that every allocator refuses.
  const std::size_t size =
      count <= LongestText ? count + 1 : std::numeric_limits<std::size_t>::max() / 2;
  Char* const allocated = new Char[size];
  allocated[size - 1] = '\0';
  return allocated;
}

template <class Char>
typename BaseString<Char>::Owned BaseString<Char>::OwnedCopy(const Char* text, std::size_t count) {
  Char* const copy = Allocate(count);
  std::memcpy(copy, text, count);
  return {copy, count};
}

template <class Char>
typename BaseString<Char>::Owned BaseString<Char>::OwnedDecimal(std::int32_t number) {
  std::array<Char, 11> digits;  // a sign and ten digits
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  // The narrow type proves to the optimiser that the copy is short.
  const auto length = static_cast<unsigned char>(end.ptr - digits.data());
  return OwnedCopy(digits.data(), length);
}

template <class Char>
Char* BaseString<Char>::Copy(const Char* text, std::int32_t count) {
  const auto size = static_cast<std::size_t>(text != nullptr ? std::max(count, 0) : 0);
  Char* const copy = Allocate(size);
  if (size > 0) {
    std::memcpy(copy, text, size);
  }
  return copy;
}

template <class Char>
void BaseString<Char>::Adopt(Char* newBuffer, std::int32_t newLength) {
  delete[] buffer;
  buffer = newBuffer;
  length = newLength;
}

template <class Char>
void BaseString<Char>::AppendBytes(const Char* text, std::size_t count) {
  if (count == 0) {
    return;
  }
  const auto kept = static_cast<std::size_t>(length);
  Char* const longer = Allocate(kept + count);
  std::memcpy(longer, buffer, kept);
  std::memcpy(longer + kept, text, count);
  Adopt(longer, static_cast<std::int32_t>(kept + count));
}

template class BaseString<char>;

}  // namespace conduit
