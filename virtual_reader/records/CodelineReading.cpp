#include "virtual_reader/records/CodelineReading.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "virtual_reader/records/CodelineFormat.h"
#include "virtual_reader/records/RecordBytes.h"
#include <conduit/ItemName.h>

namespace conduit {
namespace {

using Lines = std::vector<std::string>;

/// What a document code says of a document; the first row that it begins with
/// counts. The second letter is the issuer's choice: R stands for residence
/// permits in Europe, C1 and C2 for the United States' resident cards.
constexpr struct {
  std::string_view code;
  const char* docType;
} DocumentTypes[] = {
    {"IR", DocumentType::ResidenceCard}, {"AR", DocumentType::ResidenceCard},
    {"CR", DocumentType::ResidenceCard}, {"C1", DocumentType::ResidenceCard},
    {"C2", DocumentType::ResidenceCard}, {"P", DocumentType::Passport},
    {"V", DocumentType::Visa},           {"I", DocumentType::IdentityCard},
    {"A", DocumentType::IdentityCard},   {"C", DocumentType::IdentityCard},
    {"D", DocumentType::DrivingLicence}, {"", DocumentType::Unknown},
};

/// A printed X is a filler in the machine-readable zone.
constexpr struct {
  char read;
  const char* sex;
  char shortSex;
} Sexes[] = {
    {'M', "MALE", 'M'}, {'F', "FEMALE", 'F'}, {'<', "UNSPECIFIED", 'X'}, {'X', "UNSPECIFIED", 'X'}};

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
const CodelineFormat& FormatOf(const Lines& lines) {
  const bool visa = !lines.empty() && lines[0].starts_with('V');
  for (const CodelineFormat& format : CodelineFormats()) {
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

/// The number with what of it stands in the optional data, and the rest of that.
void ReadNumber(const Lines& lines, const CodelineFormat& format, const CodelineCheck& check,
                ReaderCodelineData* record) {
  std::string_view optional = TextOfSpan(lines, format.optional1);
  std::string number;
  for (const CodelinePlace& place : check.covered) {
    number += lines[place.line][place.column];
  }
  if (number.size() > format.number.length) {
    const std::size_t taken = number.size() - format.number.length + 1;
    optional.remove_prefix(std::min(taken + 1, optional.size()));
  }
  PutText(record->docNumber, WithoutFillers(number), "docNumber");
  PutText(record->optionalData1, WithoutFillersAtEnd(optional), "optionalData1");
}

Lines WarningsOf(const Lines& lines, const std::vector<CodelineCheck>& checks) {
  Lines warnings;
  for (const CodelineCheck& check : checks) {
    if (!IsMet(check, lines)) {
      warnings.push_back(std::string("the check digit of ") + check.field + " is '" +
                         lines[check.digit.line][check.digit.column] +
                         "', by the codeline it would be '" + WantedDigit(check, lines) + "'");
    }
  }
  return warnings;
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
  const CodelineFormat& format = FormatOf(lines);
  const std::vector<CodelineCheck> checks = CodelineChecks(format, lines);
  CodelineReading reading = {UnreadCodeline(lines), WarningsOf(lines, checks)};
  ReaderCodelineData& record = reading.record;

  const std::string code(WithoutFillersAtEnd(std::string_view(lines[0]).substr(0, 2)));
  const auto* const type =
      std::find_if(std::begin(DocumentTypes), std::end(DocumentTypes),
                   [&](const auto& row) { return code.starts_with(row.code); });
  PutText(record.docId, code, "docId");
  PutText(record.docType, type->docType, "docType");
  PutText(record.issuingState, WithoutFillersAtEnd(std::string_view(lines[0]).substr(2, 3)),
          "issuingState");
  ReadNames(TextOfSpan(lines, format.names), &record);
  ReadNumber(lines, format, checks.front(), &record);
  PutText(record.nationality, WithoutFillersAtEnd(TextOfSpan(lines, format.nationality)),
          "nationality");
  record.dateOfBirth = DateOf(TextOfSpan(lines, format.birth));
  record.expiryDate = DateOf(TextOfSpan(lines, format.expiry));
  ReadSex(TextOfSpan(lines, format.sex)[0], &record);
  PutText(record.optionalData2, WithoutFillersAtEnd(TextOfSpan(lines, format.optional2)),
          "optionalData2");
  return reading;
}

}  // namespace conduit
