#include "console_host/DocumentSummary.h"

namespace conduit {

namespace {

struct Part {
  const char* before;  ///< what stands before the value behind an earlier one
  const char* codelineItem;
  const char* licenceItem;
};

constexpr Part Parts[] = {
    {"", "CODELINE_DOC_TYPE", ""},
    {": ", "CODELINE_SURNAME", "AAMVA_PARSED_SURNAME"},
    {", ", "CODELINE_FORENAMES", "AAMVA_PARSED_GIVENNAMES"},
    {", number ", "CODELINE_DOC_NUMBER", "AAMVA_PARSED_LICENCENUMBER"},
    {", born ", "CODELINE_DATE_OF_BIRTH_STR_FORMATTED", "AAMVA_PARSED_DATEOFBIRTH_FORMATTED"},
    {", expires ", "CODELINE_EXPIRY_DATE_STR_FORMATTED", "AAMVA_PARSED_EXPIRYDATE_FORMATTED"},
};

}  // namespace

void DocumentSummary::Take(const ItemReceived& item) {
  for (const Part& part : Parts) {
    const bool wanted = item.name == part.codelineItem || item.name == part.licenceItem;
    // The page comes before the chip, which has the same items again.
    if (wanted && item.data && !item.data->empty()) {
      values.emplace(item.name, *item.data);
    }
  }
}

std::string DocumentSummary::ValueOf(const char* codelineItem, const char* licenceItem) const {
  const auto codeline = values.find(codelineItem);
  if (codeline != values.end()) {
    return codeline->second;
  }
  const auto licence = values.find(licenceItem);
  return licence != values.end() ? licence->second : "";
}

std::string DocumentSummary::Text() const {
  std::string text;
  for (const Part& part : Parts) {
    const std::string value = ValueOf(part.codelineItem, part.licenceItem);
    if (!value.empty()) {
      text += (text.empty() ? "" : part.before) + value;
    }
  }
  return text;
}

}  // namespace conduit
