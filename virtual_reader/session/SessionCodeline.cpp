#include "virtual_reader/session/SessionCodeline.h"

#include <cstddef>
#include <iterator>

#include "virtual_reader/records/RecordBytes.h"

namespace conduit {
namespace {

constexpr struct {
  const char* name;
  std::size_t offset;
  std::size_t size;
} Texts[] = {
#define CONDUIT_CODELINE_FIELD(field) \
  { #field, offsetof(ReaderCodelineData, field), sizeof(ReaderCodelineData::field) }
    CONDUIT_CODELINE_FIELD(codeline),      CONDUIT_CODELINE_FIELD(line1),
    CONDUIT_CODELINE_FIELD(line2),         CONDUIT_CODELINE_FIELD(line3),
    CONDUIT_CODELINE_FIELD(docId),         CONDUIT_CODELINE_FIELD(docType),
    CONDUIT_CODELINE_FIELD(surname),       CONDUIT_CODELINE_FIELD(forename),
    CONDUIT_CODELINE_FIELD(secondName),    CONDUIT_CODELINE_FIELD(forenames),
    CONDUIT_CODELINE_FIELD(issuingState),  CONDUIT_CODELINE_FIELD(nationality),
    CONDUIT_CODELINE_FIELD(docNumber),     CONDUIT_CODELINE_FIELD(sex),
    CONDUIT_CODELINE_FIELD(optionalData1), CONDUIT_CODELINE_FIELD(optionalData2),
#undef CONDUIT_CODELINE_FIELD
};

void PutShortSex(const SessionField& field, ReaderCodelineData* record) {
  const std::string text = field.Text();
  if (text.size() > 1) {
    field.Refuse("the record holds one character, this text has " + std::to_string(text.size()) +
                 " bytes");
  }
  record->shortSex = text.empty() ? '\0' : text[0];
}

ReaderDate DateOf(const SessionField& field) {
  field.Fields({"day", "month", "year"});
  // Wide enough to let a damaged date through on purpose.
  const auto part = [&field](const char* name) { return field.Require(name).Integer(-1, 9999); };
  return {part("day"), part("month"), part("year")};
}

void PutField(const std::string& name, const SessionField& field, ReaderCodelineData* record) {
  for (const auto& text : Texts) {
    if (name == text.name) {
      char* const start = reinterpret_cast<char*>(record) + text.offset;
      field.Try([&] { PutText(start, text.size, field.Text(), "the text"); });
    }
  }
  if (name == "shortSex") {
    PutShortSex(field, record);
  } else if (name == "dateOfBirth") {
    record->dateOfBirth = DateOf(field);
  } else if (name == "expiryDate") {
    record->expiryDate = DateOf(field);
  }
}

void PutFields(const SessionField& fields, ReaderCodelineData* record) {
  std::vector<std::string> known = {"shortSex", "dateOfBirth", "expiryDate"};
  for (const auto& text : Texts) {
    known.emplace_back(text.name);
  }
  for (const auto& [name, field] : fields.Fields(known)) {
    PutField(name, field, record);
  }
}

std::vector<std::string> LinesOf(const SessionField& field, std::size_t fewest) {
  std::vector<std::string> lines;
  for (const SessionField& line : field.Elements(fewest, 3)) {
    lines.push_back(line.Text());
  }
  return lines;
}

CodelineReading Reading(const SessionField& lines, bool typeIsGiven) {
  CodelineReading reading;
  const std::vector<std::string> texts = LinesOf(lines, typeIsGiven ? 0 : 1);
  lines.Try([&] {
    try {
      reading = ReadCodeline(texts);
    } catch (const std::invalid_argument&) {
      if (!typeIsGiven) {
        throw;
      }
      reading = {UnreadCodeline(texts), {}};
    }
  });
  return reading;
}

}  // namespace

CodelineReading ReadSessionCodeline(const SessionField& field) {
  if (field.IsArray()) {
    return Reading(field, false);
  }
  field.Fields({"lines", "fields"});
  const std::optional<SessionField> fields = field.Find("fields");
  const bool typeIsGiven = fields && fields->IsObject() && fields->Find("docType");
  CodelineReading reading = Reading(field.Require("lines"), typeIsGiven);
  if (fields) {
    PutFields(*fields, &reading.record);
  }
  return reading;
}

}  // namespace conduit
