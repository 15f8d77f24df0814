#include "virtual_reader/records/CodelineReading.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string_view>

#include "virtual_reader/records/RecordField.h"

namespace conduit {
namespace {

using Lines = std::vector<std::string>;

/// Where a field stands: line and column from 0, as Doc 9303 counts from 1.
struct Span {
  std::size_t line;
  std::size_t column;
  std::size_t length;
};

/// Where the fields stand that all formats of as many lines share.
struct Layout {
  Span names;
  Span number;
  Span birth;
  Span sex;
  Span expiry;
  Span nationality;
};

constexpr std::size_t ToTheEnd = std::string_view::npos;
constexpr Span None = {0, 0, 0};
constexpr Layout ThreeLines = {{2, 0, ToTheEnd}, {0, 5, 9}, {1, 0, 6},
                               {1, 7, 1},        {1, 8, 6}, {1, 15, 3}};
constexpr Layout TwoLines = {{0, 5, ToTheEnd}, {1, 0, 9},  {1, 13, 6},
                             {1, 20, 1},       {1, 21, 6}, {1, 10, 3}};

struct Format {
  const char* lineName;
  std::size_t lines;
  std::size_t width;
  bool visa;
  bool longNumbers;  ///< a number too long for its field goes on in the optional data
  Layout layout;
  Span optional1;
  Span optional2;
  /// What the check digit at the end of line 2 covers; nothing: there is none.
  std::span<const Span> composite;
};

// Doc 9303-5 (TD1), 9303-6 (TD2), 9303-4 (TD3), 9303-7 (MRV-A and MRV-B).
constexpr Span WholeTd1[] = {{0, 5, 25}, {1, 0, 7}, {1, 8, 7}, {1, 18, 11}};
constexpr Span WholeTd2[] = {{1, 0, 10}, {1, 13, 7}, {1, 21, 14}};
constexpr Span WholeTd3[] = {{1, 0, 10}, {1, 13, 7}, {1, 21, 22}};
constexpr Format Formats[] = {
    {"a TD1 line", 3, 30, false, true, ThreeLines, {0, 15, 15}, {1, 18, 11}, WholeTd1},
    {"a TD2 line", 2, 36, false, true, TwoLines, {1, 28, 7}, None, WholeTd2},
    {"a TD3 line", 2, 44, false, false, TwoLines, {1, 28, 14}, None, WholeTd3},
    {"an MRV-A line", 2, 44, true, false, TwoLines, {1, 28, 16}, None, {}},
    {"an MRV-B line", 2, 36, true, false, TwoLines, {1, 28, 8}, None, {}},
};

/// What a document code says of a document; the first row that it begins with
/// counts. The second letter is the issuer's choice: R stands for residence
/// permits in Europe, C1 and C2 for the United States' resident cards.
constexpr struct {
  std::string_view code;
  const char* docType;
} DocumentTypes[] = {
    {"IR", "RESIDENCE CARD"},
    {"AR", "RESIDENCE CARD"},
    {"CR", "RESIDENCE CARD"},
    {"C1", "RESIDENCE CARD"},
    {"C2", "RESIDENCE CARD"},
    {"P", "PASSPORT"},
    {"V", "VISA"},
    {"I", "IDENTITY CARD"},
    {"A", "IDENTITY CARD"},
    {"C", "IDENTITY CARD"},
    {"D", "DRIVING LICENCE"},
    {"", "UNKNOWN DOCUMENT"},
};

/// A printed X is a filler in the machine-readable zone.
constexpr struct {
  char read;
  const char* sex;
  char shortSex;
} Sexes[] = {
    {'M', "MALE", 'M'}, {'F', "FEMALE", 'F'}, {'<', "UNSPECIFIED", 'X'}, {'X', "UNSPECIFIED", 'X'}};

std::string_view At(const Lines& lines, Span span) {
  return std::string_view(lines[span.line]).substr(span.column, span.length);
}

Span Behind(Span span) { return {span.line, span.column + span.length, 1}; }

std::string_view WithoutFillersAtEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of('<') + 1);
}

std::string WithoutFillers(std::string_view text) {
  std::string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result),
               [](char c) { return c != '<'; });
  return result;
}

std::string Joined(const Lines& texts, char separator) {
  std::string result;
  for (const std::string& text : texts) {
    result += (&text == &texts.front() ? "" : std::string(1, separator)) + text;
  }
  return result;
}

/// The names between single fillers.
Lines SplitNames(std::string_view text) {
  Lines names;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('<'), text.size());
    if (end > 0) {
      names.emplace_back(text.substr(0, end));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return names;
}

/// Two digits. Unknown parts of a date are fillers, and damage is no number: 0.
std::int32_t DatePart(std::string_view text) {
  const bool isNumber =
      std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  return isNumber ? (text[0] - '0') * 10 + (text[1] - '0') : 0;
}

ReaderDate DateOf(std::string_view text) {
  return {DatePart(text.substr(4, 2)), DatePart(text.substr(2, 2)), DatePart(text.substr(0, 2))};
}

/// Weights 7, 3, 1; letters count from A = 10, a filler as 0 (Doc 9303-3, 4.9).
char CheckDigitOf(std::string_view text) {
  constexpr int weights[] = {7, 3, 1};
  int sum = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const int value = c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'Z' ? c - 'A' + 10 : 0;
    sum += value * weights[i % 3];
  }
  return static_cast<char>('0' + sum % 10);
}

void Check(const char* name, std::string_view covered, char digit, Lines* warnings) {
  const char wanted = CheckDigitOf(covered);
  // Where nothing stands, a filler may take the digit's place.
  const bool empty = covered.find_first_not_of('<') == std::string_view::npos;
  if (digit != wanted && !(empty && digit == '<')) {
    warnings->push_back(std::string("the check digit of ") + name + " is '" + digit +
                        "', by the codeline it would be '" + wanted + "'");
  }
}

[[noreturn]] void RefuseLines(const Lines& lines) {
  std::string sizes;
  for (const std::string& line : lines) {
    sizes += (sizes.empty() ? "" : ", ") + std::to_string(line.size());
  }
  throw std::invalid_argument(
      std::to_string(lines.size()) + " lines of " + sizes +
      " characters fit no codeline format (TD1 3 of 30, TD2 and MRV-B 2 of 36, TD3 and MRV-A "
      "2 of 44); in a session file, with \"fields\" that give \"docType\", they are taken as they "
      "are");
}

void RequireAscii(const Lines& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (std::any_of(lines[i].begin(), lines[i].end(),
                    [](unsigned char c) { return c < ' ' || c > '~'; })) {
      throw std::invalid_argument("line " + std::to_string(i + 1) +
                                  " has a character that is not printable ASCII");
    }
  }
}

/// The format that the document's code and any of its lines speak for, so that
/// one line of a wrong length is told against the format that was meant.
const Format& FormatOf(const Lines& lines) {
  const bool visa = !lines.empty() && lines[0].starts_with('V');
  for (const Format& format : Formats) {
    const auto fits = [&](const std::string& line) { return line.size() == format.width; };
    if (format.lines != lines.size() || (format.lines == 2 && format.visa != visa) ||
        std::none_of(lines.begin(), lines.end(), fits)) {
      continue;
    }
    const auto wrong = std::find_if_not(lines.begin(), lines.end(), fits);
    if (wrong != lines.end()) {
      throw std::invalid_argument("line " + std::to_string(wrong - lines.begin() + 1) + " has " +
                                  std::to_string(wrong->size()) + " characters, " +
                                  format.lineName + " has " + std::to_string(format.width));
    }
    return format;
  }
  RefuseLines(lines);
}

void ReadNames(std::string_view field, ReaderCodelineData* record) {
  const std::string_view text = WithoutFillersAtEnd(field);
  const std::size_t end = std::min(text.find("<<"), text.size());
  const Lines given = SplitNames(text.substr(end));
  PutText(record->surname, Joined(SplitNames(text.substr(0, end)), ' '), "surname");
  PutText(record->forename, given.empty() ? "" : given[0], "forename");
  PutText(record->secondName, given.size() < 2 ? "" : given[1], "secondName");
  PutText(record->forenames, Joined(given, ' '), "forenames");
}

void ReadSex(char read, ReaderCodelineData* record) {
  record->shortSex = read;
  for (const auto& sex : Sexes) {
    if (sex.read == read) {
      PutText(record->sex, sex.sex, "sex");
      record->shortSex = sex.shortSex;
    }
  }
}

/// A number too long for its field has a filler for a check digit, and goes on
/// in the optional data up to the next filler, its check digit last (Doc 9303-5
/// and 9303-6).
void ReadNumber(const Lines& lines, const Format& format, CodelineReading* reading) {
  std::string number(At(lines, format.layout.number));
  char digit = At(lines, Behind(format.layout.number))[0];
  std::string_view optional = At(lines, format.optional1);
  const std::size_t rest = std::min(optional.find('<'), optional.size());
  if (format.longNumbers && digit == '<' && rest > 0 && number.find('<') == std::string::npos) {
    number += optional.substr(0, rest - 1);
    digit = optional[rest - 1];
    optional.remove_prefix(std::min(rest + 1, optional.size()));
  }
  Check("the document number", number, digit, &reading->warnings);
  PutText(reading->record.docNumber, WithoutFillers(number), "docNumber");
  PutText(reading->record.optionalData1, WithoutFillersAtEnd(optional), "optionalData1");
}

void CheckDates(const Lines& lines, const Format& format, Lines* warnings) {
  Check("the date of birth", At(lines, format.layout.birth),
        At(lines, Behind(format.layout.birth))[0], warnings);
  Check("the date of expiry", At(lines, format.layout.expiry),
        At(lines, Behind(format.layout.expiry))[0], warnings);
  if (!format.composite.empty()) {
    std::string covered;
    for (const Span& span : format.composite) {
      covered += At(lines, span);
    }
    Check("the whole codeline", covered, lines[1].back(), warnings);
  }
}

}  // namespace

ReaderCodelineData UnreadCodeline(const Lines& lines) {
  ReaderCodelineData record = {};
  PutText(record.codeline, Joined(lines, '\n'), "the whole codeline");
  char(*const fields[])[sizeof record.line1] = {&record.line1, &record.line2, &record.line3};
  for (std::size_t i = 0; i < lines.size() && i < std::size(fields); ++i) {
    PutText(*fields[i], lines[i], "line " + std::to_string(i + 1));
  }
  return record;
}

CodelineReading ReadCodeline(const Lines& lines) {
  RequireAscii(lines);
  const Format& format = FormatOf(lines);
  CodelineReading reading = {UnreadCodeline(lines), {}};
  ReaderCodelineData& record = reading.record;

  const std::string code(WithoutFillersAtEnd(std::string_view(lines[0]).substr(0, 2)));
  const auto* const type =
      std::find_if(std::begin(DocumentTypes), std::end(DocumentTypes),
                   [&](const auto& row) { return code.starts_with(row.code); });
  PutText(record.docId, code, "docId");
  PutText(record.docType, type->docType, "docType");
  PutText(record.issuingState, WithoutFillersAtEnd(std::string_view(lines[0]).substr(2, 3)),
          "issuingState");
  ReadNames(At(lines, format.layout.names), &record);
  ReadNumber(lines, format, &reading);
  PutText(record.nationality, WithoutFillersAtEnd(At(lines, format.layout.nationality)),
          "nationality");
  record.dateOfBirth = DateOf(At(lines, format.layout.birth));
  record.expiryDate = DateOf(At(lines, format.layout.expiry));
  ReadSex(At(lines, format.layout.sex)[0], &record);
  PutText(record.optionalData2, WithoutFillersAtEnd(At(lines, format.optional2)), "optionalData2");
  CheckDates(lines, format, &reading.warnings);
  return reading;
}

}  // namespace conduit
