#include "console_host/ItemDescription.h"

#include "hosting/DataFormat.h"
#include "hosting/Utf8.h"

namespace conduit {

std::string Described(const ItemReceived& item) {
  const std::string length = std::to_string(item.length);
  if (item.length < 0) {
    return "(no data, impossible length " + length + ")";
  }
  if (!item.data) {
    return "(no data, " + length + " bytes announced)";
  }
  if (item.data->empty()) {
    return "(empty)";
  }
  if (ReadsAsText(item.type, *item.data)) {
    return Escaped(*item.data);
  }
  const std::string format(DataFormat(*item.data));
  return (format.empty() ? "(binary data" : "(" + format + " image") + ", " + length + " bytes)";
}

}  // namespace conduit
