#include "fullpage/FullPageInputModule.h"
#include "fullpage/RecordText.h"
#include "runtime/Text.h"
#include <conduit/ItemName.h>

namespace conduit {
namespace {

constexpr RecordText SwipeTracks[] = {
    {ItemName::SwipeTrack1, offsetof(ReaderSwipeData, track1)},
    {ItemName::SwipeTrack2, offsetof(ReaderSwipeData, track2)},
    {ItemName::SwipeTrack3, offsetof(ReaderSwipeData, track3)},
};

}  // namespace

void FullPageInputModule::ProcessRecordData(ReaderDataType type, const void* record) {
  switch (type) {
    case ReaderDataType::CodelineRecord:
      ProcessStringDataItem(ItemName::InputSource, InputSource::Ocr);
      ProcessCodelineData(*static_cast<const ReaderCodelineData*>(record));
      break;
    case ReaderDataType::ChipCodelineRecord:
      ProcessCodelineData(*static_cast<const ReaderCodelineData*>(record));
      break;
    case ReaderDataType::SwipeRecord:
      ProcessStringDataItem(ItemName::InputSource, InputSource::Mag);
      ProcessSwipeData(*static_cast<const ReaderSwipeData*>(record));
      break;
    case ReaderDataType::AamvaSwipeRecord:
    case ReaderDataType::AamvaBarcodeRecord:
      ProcessAamvaData(*static_cast<const ReaderAamvaData*>(record));
      break;
    default:
      break;
  }
}

void FullPageInputModule::ProcessSwipeData(const ReaderSwipeData& record) {
  // Not through ProcessText, which logs: card data does not belong in a log.
  for (const RecordText& track : SwipeTracks) {
    const char* const text = TextAt(record, track.offset);
    host->SendData(track.itemName.data(), ItemTypeText, TextLength(text), text, nullptr, true);
  }
}

}  // namespace conduit
