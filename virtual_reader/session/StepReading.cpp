#include "virtual_reader/session/StepReading.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include "interfaces/ReaderSwipeData.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/records/AamvaReading.h"
#include "virtual_reader/records/RecordField.h"
#include "virtual_reader/session/CodelineField.h"

namespace conduit {
namespace {

/// Room for an uncompressed page image of 600 dpi.
constexpr std::uintmax_t LargestItem = std::uintmax_t{64} << 20;

/// Far more than three lines: a larger text file is something else.
constexpr std::uintmax_t LargestCodeline = 4096;

constexpr std::int32_t LongestPause = 60 * 60 * 1000;

template <typename Row, std::size_t Size>
std::vector<std::string> NamesOf(const Row (&table)[Size]) {
  std::vector<std::string> names;
  for (const Row& row : table) {
    if constexpr (std::is_convertible_v<Row, const char*>) {
      names.emplace_back(row);
    } else {
      names.emplace_back(row.name);
    }
  }
  return names;
}

/// The lines of a text file, whatever system it comes from, without the empty
/// ones at its end.
std::vector<std::string> LinesOf(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    if (lines.back().ends_with('\r')) {
      lines.back().pop_back();
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  while (!lines.empty() && lines.back().empty()) {
    lines.pop_back();
  }
  return lines;
}

/// Does what may throw std::invalid_argument for a file of a session folder.
template <typename Operation>
void RefuseFor(const std::string& file, const Operation& operation) {
  try {
    operation();
  } catch (const std::invalid_argument& reason) {
    throw SessionError(ReaderResult::SessionWrong, file + ": " + reason.what());
  }
}

}  // namespace

const std::vector<StepReading::FieldReader> StepReading::StepFields = {
    {"event", &StepReading::ReadEvent},       {"error", &StepReading::ReadError},
    {"state", &StepReading::ReadState},       {"pause", &StepReading::ReadPause},
    {"document", &StepReading::ReadDocument}, {"swipe", &StepReading::ReadSwipe},
};

const std::vector<StepReading::FieldReader> StepReading::DocumentFields = {
    {"codeline", &StepReading::ReadPageCodeline},
    {"images", &StepReading::ReadImages},
    {"barcodes", &StepReading::ReadBarcodes},
    {"aamva", &StepReading::ReadAamvaText},
    {"chip", &StepReading::ReadChip},
    {"error", &StepReading::ReadError},
};

void StepReading::ReadFields(const SessionField& object, const std::vector<FieldReader>& readers) {
  std::vector<std::string> names;
  names.reserve(readers.size());
  for (const FieldReader& reader : readers) {
    names.emplace_back(reader.name);
  }
  for (const auto& [name, field] : object.Fields(names)) {
    const auto position = std::find(names.begin(), names.end(), name) - names.begin();
    (this->*readers[static_cast<std::size_t>(position)].read)(field);
  }
}

void StepReading::ReadStep(const SessionField& step) {
  if (step.IsObject() && step.Size() != 1) {
    step.Refuse("a step has exactly one field, this one has " + std::to_string(step.Size()));
  }
  ReadFields(step, StepFields);
}

void StepReading::ReadEvent(const SessionField& field) {
  AddEvent(static_cast<ReaderEventCode>(field.NameAmong("event", NamesOf(ReaderEventNames))));
}

void StepReading::ReadError(const SessionField& field) { Add(RaiseError{field.Text()}); }

void StepReading::ReadState(const SessionField& field) {
  // A host asks for the state when it hears of an event, so there is one.
  Add(SendEvent{ReaderEventCode::AutomaticStateChange,
                static_cast<ReaderState>(field.NameAmong("state", NamesOf(ReaderStateNames)))});
}

void StepReading::ReadPause(const SessionField& field) {
  Add(Pause{std::chrono::milliseconds(field.Integer(0, LongestPause))});
}

void StepReading::ReadSwipe(const SessionField& field) {
  ReaderSwipeData record = {};
  char(*const tracks[])[sizeof record.track1] = {&record.track1, &record.track2, &record.track3};
  std::size_t next = 0;
  for (const SessionField& track : field.Elements(1, std::size(tracks))) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there are no more than the tracks
    track.Try([&] { PutText(*tracks[next++], track.Text(), "the track"); });
  }
  AddEvent(ReaderEventCode::StartOfSwipeData);
  Add(SendItem{ReaderDataType::SwipeRecord, BytesOf(record)});
  AddEvent(ReaderEventCode::EndOfSwipeData);
}

void StepReading::ReadDocument(const SessionField& field) {
  givesBarcodes = field.Find("barcodes").has_value();
  givesAamva = field.Find("aamva").has_value();
  AddEvent(ReaderEventCode::DocOnWindow);
  AddEvent(ReaderEventCode::StartOfDocumentData);
  ReadFields(field, DocumentFields);
  AddEvent(ReaderEventCode::EndOfDocumentData);
  AddEvent(ReaderEventCode::DocRemoved);
}

void StepReading::ReadPageCodeline(const SessionField& field) {
  AddCodeline(field.Place(), ReadCodelineField(field), ReaderDataType::Codeline,
              ReaderDataType::CodelineRecord);
}

void StepReading::AddCodeline(const std::string& place, const CodelineReading& codeline,
                              ReaderDataType textType, ReaderDataType recordType) {
  WarnAt(place, codeline.warnings);
  Add(SendItem{textType, codeline.record.codeline});
  Add(SendItem{recordType, BytesOf(codeline.record)});
}

void StepReading::ReadImages(const SessionField& field) {
  std::vector<std::string> names;
  std::vector<ReaderDataType> types;
  for (const ReaderItemName& item : ReaderItemNames) {
    if (item.itemType == ItemTypeImage) {
      names.emplace_back(item.name);
      types.push_back(item.type);
    }
  }
  std::vector<PageFile> files;
  for (const auto& [name, file] : field.Fields(names)) {
    const auto position = std::find(names.begin(), names.end(), name) - names.begin();
    files.push_back({types[static_cast<std::size_t>(position)], ImageOf(file)});
  }
  AddImages(field.Place(), std::move(files));
}

void StepReading::AddImages(const std::string& place, std::vector<PageFile> files) {
  const PagesReading reading = givesBarcodes ? PagesReading() : ReadPages(files);
  for (PageFile& file : files) {
    Add(SendItem{file.type, std::move(file.file.bytes)});
  }
  if (!reading.hasPages) {
    return;
  }
  if (CanSearchPages()) {
    AddBarcodes(place, reading);
  } else if (!toldThatPagesAreNotSearched) {
    toldThatPagesAreNotSearched = true;
    Warn("this build does not search page images for barcodes");
  }
}

void StepReading::AddBarcodes(const std::string& place, const PagesReading& reading) {
  std::string symbologies;
  std::int32_t index = 0;
  for (const PageBarcode& barcode : reading.barcodes) {
    Add(SendBarcode{barcode.type, index++, static_cast<std::int32_t>(reading.barcodes.size()), 0,
                    barcode.data});
    symbologies += (symbologies.empty() ? "" : ", ") + BarcodeName(barcode.type);
  }
  session.findings.push_back(
      place + ": " +
      (symbologies.empty() ? "no barcode found on the page" : "found on the page: " + symbologies));
  WarnAt(place, reading.warnings);
  for (const PageBarcode& barcode : reading.barcodes) {
    if (givesAamva || barcode.type != ReaderDataType::BarcodePdf417 || !IsAamva(barcode.data)) {
      continue;
    }
    try {
      AddAamva(place, barcode.data);
    } catch (const std::invalid_argument& reason) {
      Warn(place + ": no AAMVA record of the barcode: " + reason.what());
    }
  }
}

void StepReading::ReadBarcodes(const SessionField& field) {
  constexpr std::size_t most = 1000;
  const std::vector<SessionField> barcodes = field.Elements(0, most);
  std::int32_t index = 0;
  for (const SessionField& barcode : barcodes) {
    barcode.Fields({"symbology", "text", "file", "format"});
    const std::size_t symbology =
        barcode.Require("symbology").NameAmong("symbology", NamesOf(ReaderBarcodeNames));
    const auto text = barcode.Find("text");
    const auto file = barcode.Find("file");
    if (text.has_value() == file.has_value()) {
      barcode.Refuse("a barcode has either \"text\" or \"file\"");
    }
    const auto format = barcode.Find("format");
    using Limits = std::numeric_limits<std::int32_t>;
    Add(SendBarcode{ReaderBarcodeNames[symbology].type, index++,
                    static_cast<std::int32_t>(barcodes.size()),
                    format ? format->Integer(Limits::min(), Limits::max()) : 0,
                    text ? text->TextOrBytes() : FileOf(*file)});
  }
}

void StepReading::ReadAamvaText(const SessionField& field) {
  if (field.IsObject()) {
    field.Fields({"file"});
  }
  const std::string text = field.IsObject() ? FileOf(field.Require("file")) : field.Text();
  field.Try([&] { AddAamva(field.Place(), text); });
}

void StepReading::AddAamva(const std::string& place, std::string_view text) {
  const AamvaReading reading = ReadAamva(text);
  WarnAt(place, reading.warnings);
  Add(SendItem{ReaderDataType::AamvaBarcodeRecord, BytesOf(reading.record)});
}

void StepReading::ReadChip(const SessionField& field) {
  AddEvent(ReaderEventCode::RfChipOpenedSuccessfully);
  AddEvent(ReaderEventCode::RfApplicationOpenedSuccessfully);
  for (const auto& [name, part] : field.Fields({"dg1", "photo"})) {
    if (name == "dg1") {
      AddCodeline(part.Place(), ReadCodelineField(part), ReaderDataType::ChipDataGroup1,
                  ReaderDataType::ChipCodelineRecord);
    } else {
      Add(SendItem{ReaderDataType::ChipDataGroup2Photo, ImageOf(part).bytes});
    }
  }
  AddEvent(ReaderEventCode::RfChipRemovalSuccess);
}

void StepReading::ReadScan(const std::string& image, const std::string& codeline) {
  givesBarcodes = false;
  givesAamva = false;
  AddEvent(ReaderEventCode::DocOnWindow);
  AddEvent(ReaderEventCode::StartOfDocumentData);
  if (!codeline.empty()) {
    RefuseFor(codeline, [&] {
      const std::vector<std::string> lines =
          LinesOf(ReadInputFile(folder / PathFromUtf8(codeline), LargestCodeline));
      if (lines.empty()) {
        throw std::invalid_argument("there is no text in the file");
      }
      AddCodeline(codeline, ReadCodeline(lines), ReaderDataType::Codeline,
                  ReaderDataType::CodelineRecord);
    });
  }
  RefuseFor(image, [&] {
    AddImages(image, {{ReaderDataType::ImageVis,
                       ReadImageFile(folder / PathFromUtf8(image), LargestItem)}});
  });
  AddEvent(ReaderEventCode::EndOfDocumentData);
  AddEvent(ReaderEventCode::DocRemoved);
}

void StepReading::WarnAt(const std::string& place, const std::vector<std::string>& warnings) {
  for (const std::string& warning : warnings) {
    Warn(std::string(place).append(": ").append(warning));
  }
}

template <typename Content>
Content StepReading::Read(const SessionField& field,
                          Content (*read)(const std::filesystem::path&, std::uintmax_t)) const {
  const std::string name = field.Text();
  try {
    return read(folder / PathFromUtf8(name), LargestItem);
  } catch (const std::invalid_argument& reason) {
    field.Refuse('"' + name + "\": " + reason.what());
  }
}

std::string StepReading::FileOf(const SessionField& field) const {
  return Read(field, ReadInputFile);
}

ImageFile StepReading::ImageOf(const SessionField& field) const {
  return Read(field, ReadImageFile);
}

}  // namespace conduit
