#include "fullpage/FullPageInputModule.h"
#include "fullpage/ReaderNames.h"
#include "parameters/StringMap.h"
#include "runtime/DecimalText.h"
#include "runtime/Log.h"
#include "runtime/Text.h"

namespace conduit {
namespace {

constexpr const char* OnDataTag = "FullPageInputModule::ProcessFullPageData";

FullPageInputModule& ModuleOf(void* context) { return *static_cast<FullPageInputModule*>(context); }

bool IsRecord(ReaderDataType type) {
  switch (type) {
    case ReaderDataType::CodelineRecord:
    case ReaderDataType::ChipCodelineRecord:
    case ReaderDataType::SwipeRecord:
    case ReaderDataType::AamvaSwipeRecord:
    case ReaderDataType::AamvaBarcodeRecord:
      return true;
    default:
      return false;
  }
}

}  // namespace

void FullPageInputModule::ProcessFullPageData(void* context, ReaderDataType type,
                                              std::int32_t length, void* data) {
  ModuleOf(context).OnData(type, length, data);
}

void FullPageInputModule::ProcessFullPageEvent(void* context, ReaderEventCode code) {
  ModuleOf(context).OnEvent(code);
}

void FullPageInputModule::ProcessError(void* /*first*/, const ReaderErrorInfo* error,
                                       void* context) {
  ModuleOf(context).OnError(error != nullptr ? error->description : "");
}

void FullPageInputModule::OnData(ReaderDataType type, std::int32_t length, const void* data) {
  if (IsRecord(type)) {
    // Without a name of its own: its texts have theirs.
    Log(logger, MessageTrace, OnDataTag, "ItemName: ");
    if (HasData(type, data)) {
      ProcessRecordData(type, data);
    }
    return;
  }
  ItemType itemType = ItemTypeUnknown;
  const BaseString<char> name = GetItemName(type, &itemType);
  Log(logger, MessageTrace, OnDataTag, "ItemName: ", name);
  if (itemType != ItemTypeUnknown && name.length > 0) {
    DeliverPlainItem(name.buffer, itemType, length, data);
  } else if (const BaseString<char> barcodeName = GetBarcodeItemName(type);
             barcodeName.length > 0 && HasData(type, data)) {
    DeliverBarcode(barcodeName.buffer, *static_cast<const ReaderBarcodeData*>(data));
  }
}

bool FullPageInputModule::HasData(ReaderDataType type, const void* data) {
  if (data == nullptr) {
    Log(logger, MessageFailure, OnDataTag, "No data came with an item of type ",
        static_cast<std::int32_t>(type));
  }
  return data != nullptr;
}

void FullPageInputModule::OnEvent(ReaderEventCode code) {
  host->ReportError("");
  const BaseString<char> name = GetEventName(code);
  Log(logger, MessageTrace, "FullPageInputModule::ProcessFullPageEvent", "Event: ", name);
  ReceiveEvent(name.buffer);
  switch (code) {
    case ReaderEventCode::StartOfDocumentData:
    case ReaderEventCode::StartOfSwipeData:
      host->BeginData();
      break;
    case ReaderEventCode::EndOfDocumentData:
    case ReaderEventCode::EndOfSwipeData:
      host->EndData();
      break;
    case ReaderEventCode::ReaderErrorResolved:
      host->ReportError("");
      break;
    default:
      break;
  }
  if (name.length > 0) {
    host->SendEvent(name.buffer);
  }
  ReportReaderState();
}

void FullPageInputModule::OnError(const char* text) {
  Log(logger, MessageFailure, "FullPageInputModule::ProcessError",
      "Full Page Reader Error: ", text);
  host->ReportError(text);
  ReportReaderState();
}

void FullPageInputModule::DeliverBarcode(const char* name, const ReaderBarcodeData& barcode) {
  StringMap properties;
  properties.Set("feature", DecimalText(barcode.index).text);
  const bool last = std::int64_t{barcode.index} + 1 == barcode.count;
  const ItemType itemType = GetBarcodeItemType(barcode.format);
  if (itemType == ItemTypeText && barcode.data == nullptr) {
    host->SendData(name, itemType, 0, "", &properties, last);
  } else {
    host->SendData(name, itemType, barcode.length, barcode.data, &properties, last);
  }
}

void FullPageInputModule::DeliverPlainItem(const char* name, ItemType itemType, std::int32_t length,
                                           const void* data) {
  if (itemType == ItemTypeText && data == nullptr) {
    host->SendData(name, itemType, 0, "", nullptr, true);
  } else {
    host->SendData(name, itemType, length, data, nullptr, true);
  }
}

void FullPageInputModule::ReportReaderState() {
  ReportReaderState(static_cast<ReaderState>(HaldenReader_GetState()));
}

void FullPageInputModule::ReportReaderState(ReaderState state) {
  host->ReportState(GetStateText(state).buffer);
}

}  // namespace conduit
