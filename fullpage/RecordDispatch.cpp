#include "fullpage/FullPageInputModule.h"
#include "fullpage/RecordText.h"
#include "runtime/Text.h"

namespace conduit {
namespace {

constexpr RecordText SwipeTracks[] = {
    {"SWIPE_MSR_TRACK_1", offsetof(ReaderSwipeData, track1)},
    {"SWIPE_MSR_TRACK_2", offsetof(ReaderSwipeData, track2)},
    {"SWIPE_MSR_TRACK_3", offsetof(ReaderSwipeData, track3)},
};

}  // namespace

void FullPageInputModule::ProcessRecordData(ReaderDataType type, const void* record) {
  switch (type) {
    case ReaderDataType::CodelineRecord:
      ProcessStringDataItem("INPUT_SOURCE", "OCR");
      ProcessCodelineData(*static_cast<const ReaderCodelineData*>(record));
      break;
    case ReaderDataType::ChipCodelineRecord:
      ProcessCodelineData(*static_cast<const ReaderCodelineData*>(record));
      break;
    case ReaderDataType::SwipeRecord:
      ProcessStringDataItem("INPUT_SOURCE", "MAG");
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
  // Straight to the host: what a card holds does not belong in a log.
  for (const RecordText& track : SwipeTracks) {
    const char* const text = TextAt(record, track.offset);
    host->SendData(track.itemName, ItemTypeText, TextLength(text), text, nullptr, true);
  }
}

}  // namespace conduit
