#include <gtest/gtest.h>

#include <cwchar>
#include <limits>
#include <new>
#include <string>

#include "runtime/BaseString.h"
#include "runtime/TextBuilder.h"

namespace conduit {
namespace {

using Text = BaseString<char>;

/// Returns the text by its `length`; fails the test when buffer and length disagree.
std::string Content(const Text& text) {
  EXPECT_NE(text.buffer, nullptr);
  EXPECT_GE(text.length, 0);
  EXPECT_EQ(text.buffer[text.length], '\0');
  return {text.buffer, static_cast<std::size_t>(text.length)};
}

TEST(BaseString, IsBuiltFromEveryKindOfValue) {
  EXPECT_EQ(Content(Text()), "");
  EXPECT_EQ(Content(Text(static_cast<const char*>(nullptr))), "");
  EXPECT_EQ(Content(Text("SMITH")), "SMITH");
  EXPECT_EQ(Content(Text("SMITH", 2)), "SM");
  EXPECT_EQ(Content(Text("A\0B", 3)), std::string("A\0B", 3));
  EXPECT_EQ(Content(Text("SMITH", 0)), "");
  EXPECT_EQ(Content(Text("SMITH", -5)), "");
  EXPECT_EQ(Content(Text(nullptr, 3)), "");
  EXPECT_EQ(Content(Text(true)), "True");
  EXPECT_EQ(Content(Text(false)), "False");
  EXPECT_EQ(Content(Text(0)), "0");
  EXPECT_EQ(Content(Text(std::numeric_limits<std::int32_t>::min())), "-2147483648");
  EXPECT_EQ(Content(Text(std::numeric_limits<std::int32_t>::max())), "2147483647");
  EXPECT_EQ(Content(Text('A')), "A");
  EXPECT_EQ(Content(Text('\0')), "");
  EXPECT_EQ(Content(Text::FromFormat("%.2d-%.2d-%.2d", 1, 2, -3)), "01-02--03");
}

TEST(BaseString, CopiesNeverShareABuffer) {
  const Text original("SMITH");
  Text copy = original;
  EXPECT_NE(copy.buffer, original.buffer);
  copy.buffer[0] = 'X';
  EXPECT_EQ(Content(original), "SMITH");
  copy = original;
  EXPECT_EQ(Content(copy), "SMITH");
  copy = *&copy;
  EXPECT_EQ(Content(copy), "SMITH");
}

TEST(BaseString, AppendsTextNumbersAndBooleans) {
  Text text("x");
  text.Append(false);
  text.Append(-7);
  text.Append(Text("ab"));
  EXPECT_EQ(Content(text), "xFalse-7ab");

  const char* const before = text.buffer;
  text.Append("");
  text.Append(static_cast<const char*>(nullptr));
  text.Append(Text());
  EXPECT_EQ(text.buffer, before) << "appending nothing makes no new buffer";
}

TEST(BaseString, AcceptsTextFromItsOwnBuffer) {
  Text text("abcdef");
  text.Append(text);
  text.Append(text.buffer + 10);
  EXPECT_EQ(Content(text), "abcdefabcdefef");
  text.Assign(text.buffer + 2, 3);
  EXPECT_EQ(Content(text), "cde");
}

TEST(BaseString, SetLengthTruncatesOrFillsWithNuls) {
  Text text("abc");
  text.SetLength(5);
  EXPECT_EQ(Content(text), std::string("abc\0\0", 5));
  text.SetLength(2);
  EXPECT_EQ(Content(text), "ab");
  const char* const before = text.buffer;
  text.SetLength(2);
  EXPECT_EQ(text.buffer, before);
  text.SetLength(0);
  text.SetLength(3);
  EXPECT_EQ(Content(text), std::string(3, '\0'));
}

// A sanitizer aborts on such an allocation. GCC and clang announce a sanitizer by
// different macros.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SANITIZED
#endif
#endif
#if !defined(SANITIZED)
TEST(BaseString, ThrowsForATextBeyondTheRangeOfItsLength) {
  Text text("x");
  // Pretends the maximum length; Append throws before it reads the buffer.
  text.length = std::numeric_limits<std::int32_t>::max();
  EXPECT_THROW(text.Append("y"), std::bad_alloc);
  text.length = 1;
  EXPECT_EQ(Content(text), "x") << "nothing is lost";
}
#endif

TEST(BaseString, FormatsTextOfAnyLength) {
  const std::string longText(1000, 'x');
  for (const std::size_t length : {0U, 1U, 126U, 127U, 128U, 129U, 1000U}) {
    Text text("before");
    text.Format("%.*s", static_cast<int>(length), longText.c_str());
    EXPECT_EQ(Content(text), longText.substr(0, length));
  }
  Text text("abc");
  text.Format("%s%s", text.buffer, text.buffer);
  EXPECT_EQ(Content(text), "abcabc");
}

TEST(BaseString, RejectedFormatGivesTheEmptyText) {
  Text text("before");
  constexpr std::wint_t noCharacter = 0xD800;
  text.Format("%lc", noCharacter);
  EXPECT_EQ(Content(text), "");
}

TEST(BaseString, OrdersByUnsignedBytes) {
  const Text ascending[] = {"", "AB", "ABC", "ABD", "a", "z", "\xE9"};
  for (std::size_t left = 0; left < std::size(ascending); ++left) {
    for (std::size_t right = 0; right < std::size(ascending); ++right) {
      EXPECT_EQ(ascending[left] < ascending[right], left < right);
      EXPECT_EQ(ascending[left] == ascending[right], left == right);
    }
  }
}

TEST(TextBuilder, JoinsPiecesOfEveryKindAndLength) {
  const BaseString<char> name("LogLevel");
  TextBuilder text;
  text << "FullPage:" << name << " = " << -12 << " (" << true << ")"
       << static_cast<const char*>(nullptr);
  EXPECT_STREQ(text.Text(), "FullPage:LogLevel = -12 (True)");
  TextBuilder numbers;
  for (const std::int32_t number : {5, 10, 100, -5, -10, INT32_MIN}) {
    numbers.AppendTwoDigits(number) << ".";
  }
  EXPECT_STREQ(numbers.Text(), "05.10.100.-05.-10.-2147483648.");
  EXPECT_STREQ(TextBuilder().Text(), "");
  // Around the size of the stack buffer and far beyond it.
  for (const std::size_t length : {511U, 512U, 513U, 5'000U}) {
    const std::string piece(length, 'x');
    TextBuilder longText;
    longText << piece << piece << "y";
    EXPECT_EQ(longText.Text(), piece + piece + "y");
    EXPECT_EQ(longText.Length(), 2 * length + 1);
  }
}

}  // namespace
}  // namespace conduit
