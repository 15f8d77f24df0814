#include "virtual_reader/records/CodelineFormat.h"

#include <algorithm>

namespace conduit {
namespace {

using Lines = std::vector<std::string>;

// Doc 9303-5 (TD1), 9303-6 (TD2), 9303-4 (TD3), 9303-7 (MRV-A and MRV-B).
constexpr CodelineSpan WholeTd1[] = {{0, 5, 25}, {1, 0, 7}, {1, 8, 7}, {1, 18, 11}};
constexpr CodelineSpan WholeTd2[] = {{1, 0, 10}, {1, 13, 7}, {1, 21, 14}};
constexpr CodelineSpan WholeTd3[] = {{1, 0, 10}, {1, 13, 7}, {1, 21, 22}};

constexpr CodelineFormat Formats[] = {
    {.lineName = "a TD1 line",
     .lines = 3,
     .width = 30,
     .longNumbers = true,
     .names = {2, 0, 30},
     .number = {0, 5, 9},
     .birth = {1, 0, 6},
     .sex = {1, 7, 1},
     .expiry = {1, 8, 6},
     .nationality = {1, 15, 3},
     .optional1 = {0, 15, 15},
     .optional2 = {1, 18, 11},
     .composite = WholeTd1},
    {.lineName = "a TD2 line",
     .width = 36,
     .longNumbers = true,
     .names = {0, 5, 31},
     .optional1 = {1, 28, 7},
     .composite = WholeTd2},
    {.lineName = "a TD3 line",
     .width = 44,
     .names = {0, 5, 39},
     .optional1 = {1, 28, 14},
     .checksOptional = true,
     .composite = WholeTd3},
    {.lineName = "an MRV-A line",
     .width = 44,
     .visa = true,
     .names = {0, 5, 39},
     .optional1 = {1, 28, 16}},
    {.lineName = "an MRV-B line",
     .width = 36,
     .visa = true,
     .names = {0, 5, 31},
     .optional1 = {1, 28, 8}},
};

void Cover(CodelineSpan span, CodelineCheck* check) {
  for (std::size_t i = 0; i < span.length; ++i) {
    check->covered.push_back({span.line, span.column + i});
  }
}

CodelineCheck CheckOf(const char* field, CodelineSpan span) {
  CodelineCheck check = {field, {}, BehindSpan(span)};
  Cover(span, &check);
  return check;
}

/// A number too long for its field has a filler for a check digit, and goes on in the
/// optional data up to the next filler, its check digit last (Doc 9303-5 and 9303-6).
CodelineCheck CheckOfNumber(const CodelineFormat& format, const Lines& lines) {
  CodelineCheck check = CheckOf("the document number", format.number);
  const std::string_view optional = TextOfSpan(lines, format.optional1);
  const std::size_t rest = std::min(optional.find('<'), optional.size());
  const bool isFull = TextOfSpan(lines, format.number).find('<') == std::string_view::npos;
  if (format.longNumbers && lines[check.digit.line][check.digit.column] == '<' && rest > 0 &&
      isFull) {
    Cover({format.optional1.line, format.optional1.column, rest - 1}, &check);
    check.digit = {format.optional1.line, format.optional1.column + rest - 1};
  }
  return check;
}

}  // namespace

std::span<const CodelineFormat> CodelineFormats() { return Formats; }

std::vector<CodelineCheck> CodelineChecks(const CodelineFormat& format, const Lines& lines) {
  std::vector<CodelineCheck> checks = {CheckOfNumber(format, lines),
                                       CheckOf("the date of birth", format.birth),
                                       CheckOf("the date of expiry", format.expiry)};
  if (format.checksOptional) {
    checks.push_back(CheckOf("the optional data", format.optional1));
  }
  if (!format.composite.empty()) {
    CodelineCheck whole = {"the whole codeline", {}, {1, format.width - 1}};
    for (const CodelineSpan& span : format.composite) {
      Cover(span, &whole);
    }
    checks.push_back(std::move(whole));
  }
  return checks;
}

int CheckValueOf(char character) {
  if (character >= '0' && character <= '9') {
    return character - '0';
  }
  return character >= 'A' && character <= 'Z' ? character - 'A' + 10 : 0;
}

char WantedDigit(const CodelineCheck& check, const Lines& lines) {
  constexpr int weights[] = {7, 3, 1};
  int sum = 0;
  for (std::size_t i = 0; i < check.covered.size(); ++i) {
    const CodelinePlace place = check.covered[i];
    sum += CheckValueOf(lines[place.line][place.column]) * weights[i % 3];
  }
  return static_cast<char>('0' + sum % 10);
}

bool IsMet(const CodelineCheck& check, const Lines& lines) {
  const char digit = lines[check.digit.line][check.digit.column];
  const bool isEmpty =
      std::all_of(check.covered.begin(), check.covered.end(),
                  [&lines](CodelinePlace place) { return lines[place.line][place.column] == '<'; });
  return digit == WantedDigit(check, lines) || (isEmpty && digit == '<');
}

}  // namespace conduit
