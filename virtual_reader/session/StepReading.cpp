#include "virtual_reader/session/StepReading.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <type_traits>

#include "interfaces/ReaderBarcodeData.h"
#include "interfaces/ReaderSwipeData.h"
#include "platform/FilePath.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/ItemsOfKind.h"
#include "virtual_reader/records/AamvaReading.h"
#include "virtual_reader/records/RecordBytes.h"
#include "virtual_reader/session/SessionCodeline.h"

namespace conduit {
namespace {

/// Far more than any symbology holds.
constexpr std::uintmax_t LargestBarcode = std::uintmax_t{1} << 20;

constexpr std::int32_t LongestPause = 60 * 60 * 1000;

template <std::size_t Size>
std::vector<std::string> NamesOf(const char* const (&table)[Size]) {
  return {std::begin(table), std::end(table)};
}

std::vector<std::string> NamesOf(const std::vector<ReaderItem>& items) {
  std::vector<std::string> names;
  for (const ReaderItem& item : items) {
    names.emplace_back(item.name);
  }
  return names;
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

StepReading::Part StepReading::ReadFields(const SessionField& object,
                                          const std::vector<FieldReader>& readers) {
  std::vector<std::string> names;
  names.reserve(readers.size());
  for (const FieldReader& reader : readers) {
    names.emplace_back(reader.name);
  }
  std::vector<Part> parts;
  for (const auto& [name, field] : object.Fields(names)) {
    const auto position = std::find(names.begin(), names.end(), name) - names.begin();
    parts.push_back((this->*readers[static_cast<std::size_t>(position)].read)(field));
  }
  return [parts = std::move(parts)](StepBuilder* step) {
    for (const Part& part : parts) {
      part(step);
    }
  };
}

StepWork StepReading::ReadStep(const SessionField& step) {
  if (step.IsObject() && step.Size() != 1) {
    step.Refuse("a step has exactly one field, this one has " + std::to_string(step.Size()));
  }
  return [add = ReadFields(step, StepFields)] {
    StepBuilder builder;
    add(&builder);
    return builder.Take();
  };
}

// Those that need no member are called through the same table as the others.
// NOLINTBEGIN(readability-convert-member-functions-to-static)

StepReading::Part StepReading::ReadEvent(const SessionField& field) {
  const auto event =
      static_cast<ReaderEventCode>(field.NameAmong("event", NamesOf(ReaderEventNames)));
  return [event](StepBuilder* step) { step->AddEvent(event); };
}

StepReading::Part StepReading::ReadError(const SessionField& field) {
  return [text = field.Text()](StepBuilder* step) { step->Add(RaiseError{text}); };
}

StepReading::Part StepReading::ReadState(const SessionField& field) {
  const auto state = static_cast<ReaderState>(field.NameAmong("state", NamesOf(ReaderStateNames)));
  // A host asks for the state when it hears of an event, so there is one.
  return [state](StepBuilder* step) {
    step->Add(SendEvent{ReaderEventCode::AutomaticStateChange, state});
  };
}

StepReading::Part StepReading::ReadPause(const SessionField& field) {
  const std::chrono::milliseconds time(field.Integer(0, LongestPause));
  return [time](StepBuilder* step) { step->Add(Pause{time}); };
}

StepReading::Part StepReading::ReadSwipe(const SessionField& field) {
  ReaderSwipeData record = {};
  char(*const tracks[])[sizeof record.track1] = {&record.track1, &record.track2, &record.track3};
  std::size_t next = 0;
  for (const SessionField& track : field.Elements(1, std::size(tracks))) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there are no more than the tracks
    track.Try([&] { PutText(*tracks[next++], track.Text(), "the track"); });
  }
  return [bytes = BytesOf(record)](StepBuilder* step) {
    step->AddEvent(ReaderEventCode::StartOfSwipeData);
    step->Add(SendItem{ReaderDataType::SwipeRecord, bytes});
    step->AddEvent(ReaderEventCode::EndOfSwipeData);
  };
}

StepReading::Part StepReading::ReadDocument(const SessionField& field) {
  wanted.codeline = !field.Find("codeline").has_value();
  wanted.barcodes = !field.Find("barcodes").has_value();
  wanted.aamva = !field.Find("aamva").has_value();
  imageNames.clear();
  Part add = ReadFields(field, DocumentFields);
  // "step 3, document" is "document step 3" to who reads the log.
  const std::string name = field.Place().substr(0, field.Place().find(','));
  return [name, files = imageNames, add = std::move(add)](StepBuilder* step) {
    step->AddDocument(name);
    if (!files.empty()) {
      step->Note(name, files);
    }
    step->AddEvent(ReaderEventCode::DocOnWindow);
    step->AddEvent(ReaderEventCode::StartOfDocumentData);
    add(step);
    step->AddEvent(ReaderEventCode::EndOfDocumentData);
    step->AddEvent(ReaderEventCode::DocRemoved);
  };
}

StepReading::Part StepReading::ReadPageCodeline(const SessionField& field) {
  return [place = field.Place(), reading = ReadSessionCodeline(field)](StepBuilder* step) {
    step->AddCodeline(place, reading, ReaderDataType::Codeline, ReaderDataType::CodelineRecord);
  };
}

StepReading::Part StepReading::ReadImages(const SessionField& field) {
  std::vector<std::string> names;
  std::vector<ReaderDataType> types;
  for (const ReaderItem& item : ItemsOfKind(ReaderItemKind::Image)) {
    names.emplace_back(item.name);
    types.push_back(item.type);
  }
  std::vector<ImageFile> files;
  for (const auto& [name, file] : field.Fields(names)) {
    const auto position = std::find(names.begin(), names.end(), name) - names.begin();
    files.push_back(CheckImage(types[static_cast<std::size_t>(position)], file));
    imageNames += (imageNames.empty() ? "" : ", ") + files.back().name;
  }
  hasImages = hasImages || !files.empty();
  return [files = std::move(files), wanted = wanted](StepBuilder* step) {
    AddImageFiles(files, wanted, step);
  };
}

StepReading::ImageFile StepReading::CheckImage(ReaderDataType type,
                                               const SessionField& field) const {
  ImageFile file = {type, field.Text(), field.Place(), {}};
  file.path = folder / PathFromUtf8(file.name);
  try {
    RequireInputFile(file.path, LargestImage);
  } catch (const std::invalid_argument& reason) {
    field.Refuse('"' + file.name + "\": " + reason.what());
  }
  return file;
}

void StepReading::AddImageFiles(const std::vector<ImageFile>& files, const PagesWanted& wanted,
                                StepBuilder* step) {
  std::vector<DocumentImage> images;
  for (const ImageFile& file : files) {
    const std::string place = file.place + ": \"" + file.name + '"';
    try {
      images.push_back({file.type, file.name, place, ReadInputFile(file.path, LargestImage)});
    } catch (const std::invalid_argument& reason) {
      // It was there when the session was checked.
      step->AddPassingError(place + ": " + reason.what());
    }
  }
  AddImages(std::move(images), wanted, step);
}

StepReading::Part StepReading::ReadBarcodes(const SessionField& field) {
  constexpr std::size_t most = 1000;
  const std::vector<SessionField> fields = field.Elements(0, most);
  const std::vector<ReaderItem> symbologies = ItemsOfKind(ReaderItemKind::Barcode);
  std::vector<SendBarcode> barcodes;
  for (const SessionField& barcode : fields) {
    barcode.Fields({"symbology", "text", "file", "format"});
    const std::size_t symbology =
        barcode.Require("symbology").NameAmong("symbology", NamesOf(symbologies));
    const auto text = barcode.Find("text");
    const auto file = barcode.Find("file");
    if (text.has_value() == file.has_value()) {
      barcode.Refuse("a barcode has either \"text\" or \"file\"");
    }
    const auto format = barcode.Find("format");
    using Limits = std::numeric_limits<std::int32_t>;
    barcodes.push_back({symbologies[symbology].type, static_cast<std::int32_t>(barcodes.size()),
                        static_cast<std::int32_t>(fields.size()),
                        format ? format->Integer(Limits::min(), Limits::max()) : 0,
                        text ? text->TextOrBytes() : FileOf(*file)});
  }
  return [barcodes = std::move(barcodes)](StepBuilder* step) {
    for (const SendBarcode& barcode : barcodes) {
      step->Add(barcode);
    }
  };
}

StepReading::Part StepReading::ReadAamvaText(const SessionField& field) {
  if (field.IsObject()) {
    field.Fields({"file"});
  }
  const std::string text = field.IsObject() ? FileOf(field.Require("file")) : field.Text();
  // What it says is no part of the work ahead: a wrong one refuses the session.
  field.Try([&text] { ReadAamva(text); });
  return [place = field.Place(), text](StepBuilder* step) { step->AddAamva(place, text); };
}

StepReading::Part StepReading::ReadChip(const SessionField& field) {
  static const std::vector<FieldReader> chipFields = {
      {"dg1", &StepReading::ReadDataGroup1},
      {"photo", &StepReading::ReadChipPhoto},
  };
  return [add = ReadFields(field, chipFields)](StepBuilder* step) {
    step->AddEvent(ReaderEventCode::RfChipOpenedSuccessfully);
    step->AddEvent(ReaderEventCode::RfApplicationOpenedSuccessfully);
    add(step);
    step->AddEvent(ReaderEventCode::RfChipRemovalSuccess);
  };
}

StepReading::Part StepReading::ReadDataGroup1(const SessionField& field) {
  return [place = field.Place(), reading = ReadSessionCodeline(field)](StepBuilder* step) {
    step->AddCodeline(place, reading, ReaderDataType::ChipDataGroup1,
                      ReaderDataType::ChipCodelineRecord);
  };
}

StepReading::Part StepReading::ReadChipPhoto(const SessionField& field) {
  return [photo = CheckImage(ReaderDataType::ChipDataGroup2Photo, field)](StepBuilder* step) {
    AddImageFiles({photo}, {}, step);
  };
}

// NOLINTEND(readability-convert-member-functions-to-static)

std::string StepReading::FileOf(const SessionField& field) const {
  const std::string name = field.Text();
  try {
    return ReadInputFile(folder / PathFromUtf8(name), LargestBarcode);
  } catch (const std::invalid_argument& reason) {
    field.Refuse('"' + name + "\": " + reason.what());
  }
}

}  // namespace conduit
