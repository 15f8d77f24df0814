#include "console_host/DocumentSummary.h"

#include <conduit/ItemName.h>

namespace conduit {
namespace {

struct Part {
  const char* before;  ///< what stands before the value behind an earlier one
  const char* codelineItem;
  const char* licenceItem;
};

constexpr Part Parts[] = {
    {"", ItemName::CodelineDocType, ""},
    {": ", ItemName::CodelineSurname, ItemName::LicenceSurname},
    {", ", ItemName::CodelineForenames, ItemName::LicenceGivenNames},
    {", number ", ItemName::CodelineDocNumber, ItemName::LicenceNumber},
    {", born ", ItemName::CodelineDateOfBirthFormatted, ItemName::LicenceDateOfBirthFormatted},
    {", expires ", ItemName::CodelineExpiryDateFormatted, ItemName::LicenceExpiryDateFormatted},
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
