#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace conduit {

/// The place of a field of a machine-readable zone (MRZ): line and column from 0, where ICAO
/// Doc 9303 counts from 1.
struct CodelineSpan {
  std::size_t line;
  std::size_t column;
  std::size_t length;
};

/// A format of ICAO Doc 9303, with the places of its fields. Most are those of all formats of two
/// lines.
struct CodelineFormat {
  const char* lineName;
  std::size_t lines = 2;
  std::size_t width;
  bool visa = false;
  bool longNumbers = false;  ///< a number too long for its field goes on in the optional data
  CodelineSpan names;
  CodelineSpan number = {1, 0, 9};
  CodelineSpan birth = {1, 13, 6};
  CodelineSpan sex = {1, 20, 1};
  CodelineSpan expiry = {1, 21, 6};
  CodelineSpan nationality = {1, 10, 3};
  CodelineSpan optional1;
  CodelineSpan optional2 = {1, 0, 0};  ///< of no length: there is none
  /// Whether optional1 has a check digit of its own.
  bool checksOptional = false;
  /// What the check digit at the end of line 2 covers; nothing: there is none.
  std::span<const CodelineSpan> composite = {};
};

/// TD1, TD2, TD3, MRV-A and MRV-B.
std::span<const CodelineFormat> CodelineFormats();

struct CodelinePlace {
  std::size_t line;
  std::size_t column;
};

/// A check digit, and what it is computed over.
struct CodelineCheck {
  const char* field;  ///< "the document number"
  std::vector<CodelinePlace> covered;
  CodelinePlace digit;
};

/// The check digits of a zone. Which they are depends on the text, for a number too
/// long for its field has its check digit elsewhere.
/// @param lines  as many and as long as the format's
std::vector<CodelineCheck> CodelineChecks(const CodelineFormat& format,
                                          const std::vector<std::string>& lines);

/// The digit that stands there by what it is computed over: with the weights 7, 3, 1,
/// letters counting from A = 10 and a filler as 0 (Doc 9303-3, 4.9).
char WantedDigit(const CodelineCheck& check, const std::vector<std::string>& lines);

/// Whether that digit stands there; over nothing but fillers a filler may as well.
bool IsMet(const CodelineCheck& check, const std::vector<std::string>& lines);

/// What a character counts in a check digit.
int CheckValueOf(char character);

/// What stands in a field.
inline std::string_view TextOfSpan(const std::vector<std::string>& lines, CodelineSpan span) {
  return std::string_view(lines[span.line]).substr(span.column, span.length);
}

/// The check digit's place behind a field.
inline CodelinePlace BehindSpan(CodelineSpan span) {
  return {span.line, span.column + span.length};
}

}  // namespace conduit
