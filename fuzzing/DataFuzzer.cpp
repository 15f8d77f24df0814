// Calls back as any reader may: any type, any length, records of arbitrary bytes whose texts
// end somewhere in the record.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <vector>

#include "fullpage/FullPageInputModule.h"
#include "fuzzing/CheckingHost.h"

namespace conduit {
namespace {

/// Returns a record in a block of exactly its size, so that the sanitizer detects a read
/// beyond it. The last text ends in a NUL, as the contract requires.
std::vector<char> RecordOf(FuzzedDataProvider& input, std::size_t size, std::size_t lastTextEnd) {
  std::vector<char> record =
      input.ConsumeBytes<char>(std::min(input.ConsumeIntegralInRange<std::size_t>(0, 4096), size));
  // Repeats the input to fill the record: long texts from short inputs.
  const std::size_t given = record.size();
  record.resize(size);
  for (std::size_t index = given; given > 0 && index < size; ++index) {
    record[index] = record[index - given];
  }
  record[lastTextEnd - 1] = '\0';
  return record;
}

void SendBarcode(FullPageInputModule& module, ReaderDataType type, FuzzedDataProvider& input) {
  ReaderBarcodeData barcode{};
  barcode.index = input.ConsumeIntegral<std::int32_t>();
  barcode.count = input.ConsumeIntegral<std::int32_t>();
  barcode.format = input.ConsumeIntegralInRange<std::int32_t>(-2, 15);
  std::vector<char> bytes = input.ConsumeBytes<char>(100);
  barcode.data = input.ConsumeBool() ? bytes.data() : nullptr;
  barcode.length = input.ConsumeIntegral<std::int32_t>();
  FullPageInputModule::ProcessFullPageData(&module, type, input.ConsumeIntegral<std::int32_t>(),
                                           &barcode);
}

void SendItem(FullPageInputModule& module, FuzzedDataProvider& input) {
  constexpr std::int32_t known[] = {0,  1,  4,  6,  7,  10, 11, 13,         14,
                                    15, 18, 19, 20, 74, 75, 80, 0x10000006, 0x1000000C};
  const auto type = static_cast<ReaderDataType>(
      input.ConsumeBool() ? input.PickValueInArray(known) : input.ConsumeIntegral<std::int32_t>());
  std::size_t size = 0;
  std::size_t lastTextEnd = 0;
  switch (type) {
    case ReaderDataType::CodelineRecord:
    case ReaderDataType::ChipCodelineRecord:
      size = lastTextEnd = sizeof(ReaderCodelineData);
      break;
    case ReaderDataType::SwipeRecord:
      size = lastTextEnd = sizeof(ReaderSwipeData);
      break;
    case ReaderDataType::AamvaSwipeRecord:
    case ReaderDataType::AamvaBarcodeRecord:
      size = sizeof(ReaderAamvaData);
      lastTextEnd = offsetof(ReaderAamvaData, height);
      break;
    case ReaderDataType::BarcodePdf417:
    case ReaderDataType::BarcodeQr:
      SendBarcode(module, type, input);
      return;
    default:
      // The module must pass the pointer on unread: null proves that.
      FullPageInputModule::ProcessFullPageData(&module, type, input.ConsumeIntegral<std::int32_t>(),
                                               nullptr);
      return;
  }
  std::vector<char> record = RecordOf(input, size, lastTextEnd);
  FullPageInputModule::ProcessFullPageData(&module, type, input.ConsumeIntegral<std::int32_t>(),
                                           record.data());
}

}  // namespace
}  // namespace conduit

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  conduit::CheckingHost host;
  conduit::CheckingLogger logger;
  conduit::FullPageInputModule module(input.ConsumeBool() ? &logger : nullptr);
  module.SetHost(&host);
  while (input.remaining_bytes() > 0) {
    host.stops = input.ConsumeBool();
    conduit::SendItem(module, input);
    conduit::FullPageInputModule::ProcessFullPageEvent(
        &module, input.ConsumeBool() ? conduit::ReaderEventCode::DocOnWindow
                                     : static_cast<conduit::ReaderEventCode>(
                                           input.ConsumeIntegral<std::int32_t>()));
  }
  return 0;
}
