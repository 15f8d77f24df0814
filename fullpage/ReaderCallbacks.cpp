#include "framework/ReaderNames.h"
#include "fullpage/FeatureMap.h"
#include "fullpage/FullPageInputModule.h"
#include "runtime/Log.h"
#include <conduit/ReaderItem.h>

namespace conduit {
namespace {

constexpr const char* OnDataTag = "FullPageInputModule::ProcessFullPageData";

FullPageInputModule& ModuleOf(void* context) { return *static_cast<FullPageInputModule*>(context); }

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
  const ReaderItem* const item = FindReaderItem(type);
  const bool plain = item != nullptr &&
                     (item->kind == ReaderItemKind::Text || item->kind == ReaderItemKind::Image);
  // The trace names neither a record, whose items have their own names, nor a barcode.
  Log(logger, MessageTrace, OnDataTag, "ItemName: ", plain ? item->name : "");
  if (item == nullptr) {
    return;
  }
  switch (item->kind) {
    case ReaderItemKind::Text:
      DeliverPlainItem(item->name, ItemTypeText, length, data);
      break;
    case ReaderItemKind::Image:
      DeliverPlainItem(item->name, ItemTypeImage, length, data);
      break;
    case ReaderItemKind::Barcode:
      if (HasData(type, data)) {
        DeliverBarcode(item->name, *static_cast<const ReaderBarcodeData*>(data));
      }
      break;
    case ReaderItemKind::Record:
      if (HasData(type, data)) {
        ProcessRecordData(type, data);
      }
      break;
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
  DeliverEvent(code, "FullPageInputModule::ProcessFullPageEvent");
  ReportReaderState();
}

void FullPageInputModule::OnError(const char* text) {
  Log(logger, MessageFailure, "FullPageInputModule::ProcessError",
      "Full Page Reader Error: ", text);
  host->ReportError(text);
  ReportReaderState();
}

void FullPageInputModule::DeliverBarcode(const char* name, const ReaderBarcodeData& barcode) {
  FeatureMap properties(barcode.index);
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

}  // namespace conduit
