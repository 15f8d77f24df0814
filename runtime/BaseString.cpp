#include "runtime/BaseString.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

#include "runtime/DecimalText.h"
#include "runtime/Text.h"

namespace conduit {
namespace {

constexpr std::size_t LongestText = std::numeric_limits<std::int32_t>::max();

}  // namespace

template <class Char>
BaseString<Char>::BaseString() : buffer(Allocate(0)), length(0) {}

template <class Char>
BaseString<Char>::BaseString(const Char* text)
    : BaseString(OrEmpty(text), TextLength(OrEmpty(text))) {}

template <class Char>
BaseString<Char>::BaseString(const Char* text, std::int32_t count)
    : buffer(Copy(text, count)), length(text != nullptr ? std::max(count, 0) : 0) {}

template <class Char>
BaseString<Char>::BaseString(const BaseString& other) : BaseString(other.buffer, other.length) {}

template <class Char>
BaseString<Char>::BaseString(std::int32_t number) : BaseString(DecimalText(number).text) {}

template <class Char>
BaseString<Char>::BaseString(Char character) : BaseString(&character, character != '\0' ? 1 : 0) {}

template <class Char>
BaseString<Char>::~BaseString() {
  delete[] buffer;
  buffer = nullptr;
  length = 0;
}

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
  AppendBytes(OrEmpty(text), TextLength(OrEmpty(text)));
}

template <class Char>
void BaseString<Char>::Append(const BaseString& other) {
  AppendBytes(other.buffer, other.length);
}

template <class Char>
void BaseString<Char>::Append(std::int32_t number) {
  Append(DecimalText(number).text);
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
  // The system's own formats fit here, and so are formatted only once.
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
  // A text too long for its length is asked for as what no allocator can give.
  const std::size_t size =
      count <= LongestText ? count + 1 : std::numeric_limits<std::size_t>::max() / 2;
  Char* const allocated = new Char[size];
  allocated[size - 1] = '\0';
  return allocated;
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
void BaseString<Char>::AppendBytes(const Char* text, std::int32_t count) {
  if (count < 1) {
    return;
  }
  const auto kept = static_cast<std::size_t>(length);
  const auto added = static_cast<std::size_t>(count);
  Char* const longer = Allocate(kept + added);
  std::memcpy(longer, buffer, kept);
  std::memcpy(longer + kept, text, added);
  Adopt(longer, static_cast<std::int32_t>(kept + added));
}

template class BaseString<char>;

}  // namespace conduit
