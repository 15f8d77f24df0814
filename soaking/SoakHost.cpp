#include "soaking/SoakHost.h"

#include <cstring>

#include <conduit/ItemName.h>
#include <conduit/ResultCode.h>

namespace conduit {

void SoakHost::Expect(const DocumentKind& expectedKind, std::int64_t expectedNumber) {
  kind = &expectedKind;
  number = std::to_string(expectedNumber);
  received = 0;
}

void SoakHost::CheckComplete() const {
  if (open || received != kind->items.size()) {
    Fail("it ended after " + std::to_string(received) + " items");
  }
}

std::int32_t SoakHost::SendData(const char* name, ItemType /*itemType*/, std::int32_t length,
                                const void* data, IStringMap* properties, bool last) {
  const bool expected = received < kind->items.size();
  if (!open || !expected || std::strcmp(name, kind->items[received]) != 0) {
    Fail(std::string("there came ") + name + ", expected was " +
         (expected ? kind->items[received] : "nothing"));
  }
  if (kind->numberedItem != nullptr && std::strcmp(name, kind->numberedItem) == 0 &&
      std::string_view(static_cast<const char*>(data), static_cast<std::size_t>(length)) !=
          number) {
    Fail(std::string(name) + " is of another document");
  }
  if (properties != nullptr &&
      (std::to_string(received) != properties->Get(ItemProperty::Feature) ||
       last != (received + 1 == kind->items.size()))) {
    Fail("a barcode does not know its place");
  }
  ++received;
  ++items;
  return std::strcmp(name, Signal::UnknownDocument) == 0 ? StopRecord : 0;
}

void SoakHost::SendEvent(const char* /*name*/) { ++events; }

void SoakHost::BeginData() {
  if (open || received != 0) {
    Fail("it began twice");
  }
  open = true;
  ++documents;
}

void SoakHost::EndData() {
  open = false;
  CheckComplete();
}

std::int32_t SoakHost::SetActiveScript(const char* /*name*/) {
  ++scripts;
  return 0;
}

void SoakHost::ReportState(const char* /*text*/) { ++states; }

void SoakHost::ReportError(const char* text) { errors += text[0] != '\0' ? 1 : 0; }

void SoakHost::Fail(const std::string& what) const {
  throw SoakFault("document " + number + " (" + kind->name + "): " + what);
}

}  // namespace conduit
