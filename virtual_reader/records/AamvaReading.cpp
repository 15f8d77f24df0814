#include "virtual_reader/records/AamvaReading.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>

#include "virtual_reader/records/RecordBytes.h"

namespace conduit {
namespace {

using Elements = std::map<std::string, std::string>;
using Warnings = std::vector<std::string>;

/// The data elements of text fields. `older` replaces a missing element: it is the element
/// of an older edition, or that of the residence address in place of the mailing address.
constexpr struct {
  const char* id;
  const char* older;
  const char* name;
  std::size_t offset;
  std::size_t size;
} Texts[] = {
#define CONDUIT_AAMVA_FIELD(field) \
#field, offsetof(ReaderAamvaData, field), sizeof(ReaderAamvaData::field)
    {"DAQ", "", CONDUIT_AAMVA_FIELD(licenceNumber)},
    {"DAA", "", CONDUIT_AAMVA_FIELD(fullName)},
    {"DCS", "DAB", CONDUIT_AAMVA_FIELD(surname)},
    {"DAC", "", CONDUIT_AAMVA_FIELD(forename)},
    {"DAD", "", CONDUIT_AAMVA_FIELD(middleName)},
    {"DCU", "DAE", CONDUIT_AAMVA_FIELD(nameSuffix)},
    {"DCT", "", CONDUIT_AAMVA_FIELD(givenNames)},
    {"DAG", "DAL", CONDUIT_AAMVA_FIELD(addressStreet)},
    {"DAI", "DAN", CONDUIT_AAMVA_FIELD(addressCity)},
    {"DAJ", "DAO", CONDUIT_AAMVA_FIELD(addressState)},
    {"DAK", "DAP", CONDUIT_AAMVA_FIELD(addressPostalCode)},
    {"DCG", "", CONDUIT_AAMVA_FIELD(addressCountry)},
#undef CONDUIT_AAMVA_FIELD
};

constexpr const char* OtherIds[] = {"DBA", "DBB", "DBC", "DBD", "DAU",
                                    "DAV", "DAW", "DAX", "DAY", "DAZ"};

/// The record's text for the sex has room for seven characters, too few for "UNSPECIFIED".
constexpr struct {
  std::string_view code;
  const char* sex;
  char shortSex;
} Sexes[] = {{"1", "MALE", 'M'}, {"2", "FEMALE", 'F'}, {"9", "UNKNOWN", 'X'},
             {"M", "MALE", 'M'}, {"F", "FEMALE", 'F'}, {"X", "UNKNOWN", 'X'}};

template <typename Color>
struct ColorCode {
  std::string_view code;
  Color color;
};

constexpr ColorCode<ReaderEyeColor> EyeColors[] = {
    {"BLK", ReaderEyeColor::Black},       {"BLU", ReaderEyeColor::Blue},
    {"BRO", ReaderEyeColor::Brown},       {"GRY", ReaderEyeColor::Grey},
    {"GRN", ReaderEyeColor::Green},       {"HAZ", ReaderEyeColor::Hazel},
    {"MAR", ReaderEyeColor::Maroon},      {"PNK", ReaderEyeColor::Pink},
    {"DIC", ReaderEyeColor::Dichromatic}, {"UNK", ReaderEyeColor::Unknown},
};

constexpr ColorCode<ReaderHairColor> HairColors[] = {
    {"BAL", ReaderHairColor::Bald},    {"BLK", ReaderHairColor::Black},
    {"BLN", ReaderHairColor::Blond},   {"BRO", ReaderHairColor::Brown},
    {"GRY", ReaderHairColor::Grey},    {"RED", ReaderHairColor::RedAuburn},
    {"SDY", ReaderHairColor::Sandy},   {"WHI", ReaderHairColor::White},
    {"UNK", ReaderHairColor::Unknown},
};

[[noreturn]] void Refuse(const std::string& reason) { throw std::invalid_argument(reason); }

std::string_view Trimmed(std::string_view text) {
  const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(start, text.find_last_not_of(' ') + 1 - start);
}

bool IsNumber(std::string_view text) {
  return !text.empty() && text.size() < 9 &&
         std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::int32_t Number(std::string_view digits) { return std::stoi(std::string(digits)); }

bool IsKnownId(std::string_view id) {
  return std::find(std::begin(OtherIds), std::end(OtherIds), id) != std::end(OtherIds) ||
         std::any_of(std::begin(Texts), std::end(Texts),
                     [id](const auto& text) { return text.id == id || text.older == id; });
}

/// The AAMVA header: "ANSI ", issuer identification number (6), AAMVA version (2), since
/// version 2 the jurisdiction version (2), number of subfiles (2), and for each a subfile
/// designator of type (2), offset (4) and length (4).
struct Header {
  std::int32_t version;
  std::string_view body;     ///< everything after the header
  std::string_view licence;  ///< the DL or ID subfile; empty when it is not at its offset
};

std::string_view LicenceAt(std::string_view text, std::string_view designator) {
  const std::string_view type = designator.substr(0, 2);
  if ((type != "DL" && type != "ID") || !IsNumber(designator.substr(2, 8))) {
    return {};
  }
  const auto offset = static_cast<std::size_t>(Number(designator.substr(2, 4)));
  const auto length = static_cast<std::size_t>(Number(designator.substr(6, 4)));
  if (offset > text.size() || !text.substr(offset).starts_with(type)) {
    return {};
  }
  const std::string_view subfile = text.substr(offset, length);
  const bool ends = subfile.ends_with('\r') || offset + length == text.size();
  return ends ? subfile : std::string_view();
}

/// Returns the offset of the file type, or npos when it does not follow the "@".
std::size_t FileTypeIn(std::string_view text) {
  std::size_t at = text.find("ANSI ");
  if (at == std::string_view::npos) {
    at = text.find("AAMVA");  // the file type of early cards
  }
  constexpr std::size_t separators = 8;  // compliance indicator "@", LF, RS, CR, and a few more
  return at > separators ? std::string_view::npos : at;
}

Header ReadHeader(std::string_view text) {
  if (!text.starts_with('@')) {
    Refuse("the text does not begin with \"@\", as an AAMVA barcode does");
  }
  constexpr std::size_t fileTypeSize = 5;
  const std::size_t at = FileTypeIn(text);
  if (at == std::string_view::npos) {
    Refuse("the file type \"ANSI \" does not follow the \"@\" of the AAMVA barcode");
  }
  const std::string_view rest = text.substr(at + fileTypeSize);
  const auto part = [rest](std::size_t from, std::size_t size) {
    return from < rest.size() ? rest.substr(from, size) : std::string_view();
  };
  if (!IsNumber(part(0, 8)) || part(0, 8).size() < 8) {
    Refuse("the issuer and version after \"ANSI \" are not 8 digits");
  }
  Header header = {Number(part(6, 2)), {}, {}};
  std::size_t next = header.version < 2 ? 8 : 10;
  // Ignores the number of subfiles: the designators end where no digits follow.
  for (next += 2; part(next, 10).size() == 10 && IsNumber(part(next + 2, 8)); next += 10) {
    if (header.licence.empty()) {
      header.licence = LicenceAt(text, part(next, 10));
    }
  }
  header.body = part(next, rest.size());
  return header;
}

/// Parses the data elements, one per line: LF separates elements, CR is the segment
/// terminator. The subfile type precedes the first element of a subfile.
Elements FindElements(std::string_view text) {
  Elements elements;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\n\r\x1e"), text.size());
    std::string_view line = text.substr(0, end);
    if ((line.starts_with("DL") || line.starts_with("ID")) && line.size() >= 5 &&
        IsKnownId(line.substr(2, 3))) {
      line.remove_prefix(2);
    }
    const std::string_view id = line.substr(0, 3);
    const std::string_view value = line.size() > 3 ? Trimmed(line.substr(3)) : std::string_view();
    // The standard's values for "not applicable" and "unavailable".
    const bool absent = value.empty() || value == "NONE" || value == "unavl";
    if (IsKnownId(id) && !absent) {
      elements.emplace(id, value);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return elements;
}

std::string ValueOf(const Elements& elements, const std::string& id) {
  const auto found = elements.find(id);
  return found == elements.end() ? "" : found->second;
}

constexpr ReaderDate AbsentDate = {ReaderDateAbsent, ReaderDateAbsent, ReaderDateAbsent};

bool IsDate(ReaderDate date) {
  return date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31;
}

/// Parses a date: MMDDYYYY in the United States; CCYYMMDD in Canada and in the edition of
/// 2000. Accepts a date that is valid only in the other order.
ReaderDate DateOf(const Elements& elements, const std::string& id, bool yearFirst) {
  const std::string text = ValueOf(elements, id);
  if (text.empty() || text == "00000000") {
    return AbsentDate;
  }
  if (text.size() == 8 && IsNumber(text)) {
    const auto part = [&text](std::size_t at) { return Number(text.substr(at, 2)); };
    const ReaderDate ending = {part(2), part(0), part(6)};
    const ReaderDate leading = {part(6), part(4), part(2)};
    const ReaderDate expected = yearFirst ? leading : ending;
    const ReaderDate other = yearFirst ? ending : leading;
    if (IsDate(expected) || IsDate(other)) {
      return IsDate(expected) ? expected : other;
    }
  }
  Refuse(id + " is \"" + text + "\", not a date " +
         (yearFirst ? "in the order CCYYMMDD" : "in the order MMDDYYYY"));
}

struct Measurement {
  std::int32_t value;
  ReaderMeasurementUnit unit;
};

/// Removes the leading number and the blanks around it from the text and returns it.
std::optional<std::int32_t> TakeNumber(std::string_view* text) {
  *text = Trimmed(*text);
  const std::size_t end = std::min(text->find_first_not_of("0123456789"), text->size());
  const std::string_view digits = text->substr(0, end);
  if (!IsNumber(digits)) {
    return {};
  }
  text->remove_prefix(end);
  *text = Trimmed(*text);
  return Number(digits);
}

bool TakeMark(std::string_view mark, std::string_view* text) {
  const bool found = text->starts_with(mark);
  text->remove_prefix(found ? mark.size() : 0);
  return found;
}

/// Parses feet and inches: 5'-10", 5' 10", 5-10, 5 FT 10 IN, 5'.
std::optional<std::int32_t> InchesOf(std::string_view text) {
  constexpr std::int32_t inchesOfFoot = 12;
  const auto feet = TakeNumber(&text);
  if (!feet || *feet > 9 ||
      (!TakeMark("'", &text) && !TakeMark("ft", &text) && !text.starts_with('-'))) {
    return {};
  }
  text = Trimmed(text);
  TakeMark("-", &text);
  std::int32_t inches = 0;
  if (!text.empty()) {
    const auto given = TakeNumber(&text);
    const bool ends =
        TakeMark("\"", &text) || TakeMark("''", &text) || TakeMark("in", &text) || text.empty();
    if (!given || *given >= inchesOfFoot || !ends || !text.empty()) {
      return {};
    }
    inches = *given;
  }
  return *feet * inchesOfFoot + inches;
}

/// Parses a height: "069 in", "175 cm", feet and inches in three digits, as on older cards,
/// or in the forms of InchesOf.
Measurement HeightOf(const Elements& elements) {
  const std::string centimetres = ValueOf(elements, "DAV");
  const std::string text = ValueOf(elements, "DAU");
  if (text.empty()) {
    return IsNumber(centimetres)
               ? Measurement{Number(centimetres), ReaderMeasurementUnit::Centimetre}
               : Measurement{};
  }
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (const auto inches = InchesOf(lower)) {
    return {*inches, ReaderMeasurementUnit::Inch};
  }
  std::string_view unit = lower;
  if (const auto number = TakeNumber(&unit)) {
    if (unit == "in" || unit == "\"") {
      return {*number, ReaderMeasurementUnit::Inch};
    }
    if (unit == "cm") {
      return {*number, ReaderMeasurementUnit::Centimetre};
    }
    if (text.size() == 3 && unit.empty() && *number % 100 < 12) {
      return {*number / 100 * 12 + *number % 100, ReaderMeasurementUnit::Inch};
    }
  }
  Refuse("DAU is \"" + text + "\", not a height as \"069 in\", \"175 cm\" or \"509\"");
}

Measurement WeightOf(const Elements& elements) {
  for (const auto& [id, unit] : {std::pair{"DAW", ReaderMeasurementUnit::Pound},
                                 std::pair{"DAX", ReaderMeasurementUnit::Kilogram}}) {
    const std::string text = ValueOf(elements, id);
    if (!text.empty()) {
      if (!IsNumber(text)) {
        Refuse(std::string(id) + " is \"" + text + "\", not a weight in digits");
      }
      return {Number(text), unit};
    }
  }
  return {};
}

template <typename Color, std::size_t Size>
std::int32_t ColorOf(const Elements& elements, const char* id,
                     const ColorCode<Color> (&table)[Size], Warnings* warnings) {
  const std::string code = ValueOf(elements, id);
  const auto found = std::find_if(std::begin(table), std::end(table),
                                  [&code](const auto& row) { return row.code == code; });
  if (found != std::end(table)) {
    return static_cast<std::int32_t>(found->color);
  }
  if (!code.empty()) {
    warnings->push_back(std::string(id) + " is \"" + code +
                        "\", not a colour code: sent as unknown");
  }
  return static_cast<std::int32_t>(Color::Unknown);
}

void ReadSex(const Elements& elements, ReaderAamvaData* record) {
  const std::string code = ValueOf(elements, "DBC");
  const auto* const found = std::find_if(std::begin(Sexes), std::end(Sexes),
                                         [&code](const auto& row) { return row.code == code; });
  if (found != std::end(Sexes)) {
    PutText(record->sex, found->sex, "sex");
    record->shortSex = found->shortSex;
  } else if (!code.empty()) {
    Refuse("DBC is \"" + code + "\", not a sex: expected 1, 2 or 9");
  }
}

/// The separators of names in one data element: a comma; on older cards also "@" and "$".
constexpr std::string_view NameSeparators = ",@$";

/// Splits at separators, or at blanks where there are none.
std::vector<std::string> SplitName(std::string_view text) {
  const bool separated = text.find_first_of(NameSeparators) != std::string_view::npos;
  const std::string_view separators = separated ? NameSeparators : " ";
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(separators), text.size());
    parts.emplace_back(Trimmed(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string result;
  for (const std::string& part : parts) {
    result += (result.empty() || part.empty() ? "" : " ") + part;
  }
  return result;
}

/// Derives missing name elements. Editions have the full name (DAA), surname and given names
/// (DCT), or each name in its own element.
void CompleteNames(Elements* elements) {
  Elements& all = *elements;
  const std::string whole = ValueOf(all, "DAA");
  if (const auto full = SplitName(whole);
      whole.find_first_of(NameSeparators) != std::string::npos) {
    all.emplace("DAB", full[0]);
    all.emplace("DAC", full.size() > 1 ? full[1] : "");
    all.emplace("DAD",
                Joined({full.begin() + std::min<std::ptrdiff_t>(2, std::ssize(full)), full.end()}));
  }
  if (const auto given = SplitName(ValueOf(all, "DCT")); !given.empty()) {
    all.emplace("DAC", given[0]);
    all.emplace("DAD", Joined({given.begin() + 1, given.end()}));
    all["DCT"] = Joined(given);
  }
  all.emplace("DCT", Joined({ValueOf(all, "DAC"), ValueOf(all, "DAD")}));
  const std::string surname = ValueOf(all, all.contains("DCS") ? "DCS" : "DAB");
  const std::string suffix = ValueOf(all, all.contains("DCU") ? "DCU" : "DAE");
  all.emplace("DAA", Joined({ValueOf(all, "DCT"), surname, suffix}));
}

}  // namespace

bool IsAamva(std::string_view text) {
  return text.starts_with('@') && FileTypeIn(text) != std::string_view::npos;
}

AamvaReading ReadAamva(std::string_view text) {
  const Header header = ReadHeader(text);
  AamvaReading reading = {};
  if (header.licence.empty()) {
    reading.warnings.emplace_back(
        "the AAMVA header has no DL or ID subfile at its offset: data elements are found by name");
  }
  Elements elements = FindElements(header.licence.empty() ? header.body : header.licence);
  if (elements.empty()) {
    Refuse("the AAMVA text holds no element of a licence (DAQ, DCS, DBB, ...)");
  }
  CompleteNames(&elements);

  ReaderAamvaData& record = reading.record;
  const auto eachByItself = [&reading](auto&& read) {
    try {
      read();
    } catch (const std::invalid_argument& reason) {
      reading.warnings.push_back(std::string(reason.what()) + ": left out");
    }
  };
  for (const auto& field : Texts) {
    const std::string id = elements.contains(field.id) ? field.id : field.older;
    eachByItself([&] {
      PutText(reinterpret_cast<char*>(&record) + field.offset, field.size, ValueOf(elements, id),
              id + " (" + field.name + ")");
    });
  }
  eachByItself([&] { ReadSex(elements, &record); });
  const bool yearFirst = header.version < 2 || ValueOf(elements, "DCG") == "CAN";
  record.dateOfBirth = record.issueDate = record.expiryDate = AbsentDate;
  eachByItself([&] { record.dateOfBirth = DateOf(elements, "DBB", yearFirst); });
  eachByItself([&] { record.issueDate = DateOf(elements, "DBD", yearFirst); });
  eachByItself([&] { record.expiryDate = DateOf(elements, "DBA", yearFirst); });
  eachByItself([&] {
    const Measurement height = HeightOf(elements);
    record.height = height.value;
    record.heightUnit = static_cast<std::int32_t>(height.unit);
  });
  eachByItself([&] {
    const Measurement weight = WeightOf(elements);
    record.weight = weight.value;
    record.weightUnit = static_cast<std::int32_t>(weight.unit);
  });
  record.eyeColor = ColorOf(elements, "DAY", EyeColors, &reading.warnings);
  record.hairColor = ColorOf(elements, "DAZ", HairColors, &reading.warnings);
  return reading;
}

}  // namespace conduit
