#include "virtual_reader/session/DocumentParsing.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <utility>

#include "platform/FilePath.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/records/ItemsOfKind.h"
#include "virtual_reader/records/RecordBytes.h"
#include "virtual_reader/session/DocumentImages.h"
#include "virtual_reader/session/SessionCodeline.h"
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

/// Far more than any symbology holds.
constexpr std::uintmax_t LargestBarcode = std::uintmax_t{1} << 20;

constexpr std::int32_t LongestPause = 60 * 60 * 1000;

template <std::size_t Size>
std::vector<std::string> NamesOf(const char* const (&table)[Size]) {
  return {std::begin(table), std::end(table)};
}

/// Calls `operation` with the file that the field names. Refuses the field when that throws
/// std::invalid_argument.
template <typename Operation>
auto WithFile(const SessionField& field, const std::filesystem::path& folder,
              const Operation& operation) {
  const std::string name = field.Text();
  try {
    return operation(folder / PathFromUtf8(name));
  } catch (const std::invalid_argument& reason) {
    field.Refuse('"' + name + "\": " + reason.what());
  }
}

std::string FileOf(const SessionField& field, const std::filesystem::path& folder) {
  return WithFile(field, folder, [](const std::filesystem::path& file) {
    return ReadInputFile(file, LargestBarcode);
  });
}

ImageFile ImageOf(ReaderDataType type, const SessionField& field,
                  const std::filesystem::path& folder) {
  return WithFile(field, folder, [&](const std::filesystem::path& file) {
    RequireInputFile(file, LargestImage);
    const std::string name = field.Text();
    return ImageFile{type, name, field.Place() + ": \"" + name + '"', file};
  });
}

std::vector<std::string> NamesOf(const std::vector<ReaderItem>& items) {
  std::vector<std::string> names;
  names.reserve(items.size());
  for (const ReaderItem& item : items) {
    names.emplace_back(item.name);
  }
  return names;
}

std::vector<ImageFile> ParseImages(const SessionField& field, const std::filesystem::path& folder) {
  std::vector<ImageFile> files;
  const std::vector<ReaderItem> kinds = ItemsOfKind(ReaderItemKind::Image);
  for (const auto& [name, file] : field.Fields(NamesOf(kinds))) {
    for (const ReaderItem& kind : kinds) {
      if (name == kind.name) {
        files.push_back(ImageOf(kind.type, file, folder));
      }
    }
  }
  return files;
}

void ParseBarcodes(const SessionField& field, const std::filesystem::path& folder, Step* step) {
  constexpr std::size_t most = 1000;
  const std::vector<SessionField> fields = field.Elements(0, most);
  const std::vector<ReaderItem> symbologies = ItemsOfKind(ReaderItemKind::Barcode);
  std::int32_t index = 0;
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
    Add(step,
        SendBarcode{symbologies[symbology].type, index++, static_cast<std::int32_t>(fields.size()),
                    format ? format->Integer(Limits::min(), Limits::max()) : 0,
                    text ? text->TextOrBytes() : FileOf(*file, folder)});
  }
}

void ParseAamva(const SessionField& field, const std::filesystem::path& folder, Step* step) {
  if (field.IsObject()) {
    field.Fields({"file"});
  }
  const std::string text = field.IsObject() ? FileOf(field.Require("file"), folder) : field.Text();
  field.Try([&] { AddAamva(step, field.Place(), text); });
}

void ParseChip(const SessionField& field, const std::filesystem::path& folder, Document* document) {
  Add(LastActions(document), SendEvent{ReaderEventCode::RfChipOpenedSuccessfully});
  Add(LastActions(document), SendEvent{ReaderEventCode::RfApplicationOpenedSuccessfully});
  for (const auto& [name, part] : field.Fields({"dg1", "photo"})) {
    if (name == "dg1") {
      AddCodeline(LastActions(document), part.Place(), ReadSessionCodeline(part),
                  ReaderDataType::ChipDataGroup1, ReaderDataType::ChipCodelineRecord);
    } else {
      document->parts.emplace_back(
          std::vector{ImageOf(ReaderDataType::ChipDataGroup2Photo, part, folder)});
    }
  }
  Add(LastActions(document), SendEvent{ReaderEventCode::RfChipRemovalSuccess});
}

/// Adds the names of the images, for the log, ahead of all other notes on the document.
void AddNames(Document* document, const std::vector<ImageFile>& files) {
  std::string names;
  for (const ImageFile& file : files) {
    names += (names.empty() ? "" : ", ") + file.name;
  }
  if (!names.empty()) {
    Step note;
    AddNote(&note, document->name, names);
    document->parts.emplace(document->parts.begin(), std::move(note));
  }
}

Document ParseDocument(const SessionField& field, const std::filesystem::path& folder) {
  Document document;
  // The log says "document step 3" of "step 3, document".
  document.name = field.Place().substr(0, field.Place().find(','));
  document.wanted = {!field.Find("codeline"), !field.Find("barcodes"), !field.Find("aamva")};
  for (const auto& [name, part] :
       field.Fields({"codeline", "images", "barcodes", "aamva", "chip", "error"})) {
    if (name == "codeline") {
      AddCodeline(LastActions(&document), part.Place(), ReadSessionCodeline(part),
                  ReaderDataType::Codeline, ReaderDataType::CodelineRecord);
    } else if (name == "images") {
      const std::vector<ImageFile> files = ParseImages(part, folder);
      AddNames(&document, files);
      document.parts.emplace_back(files);
    } else if (name == "barcodes") {
      ParseBarcodes(part, folder, LastActions(&document));
    } else if (name == "aamva") {
      ParseAamva(part, folder, LastActions(&document));
    } else if (name == "chip") {
      ParseChip(part, folder, &document);
    } else {
      Add(LastActions(&document), RaiseError{part.Text()});
    }
  }
  return document;
}

void ParseSwipe(const SessionField& field, Step* step) {
  ReaderSwipeData record = {};
  char(*const tracks[])[sizeof record.track1] = {&record.track1, &record.track2, &record.track3};
  std::size_t next = 0;
  for (const SessionField& track : field.Elements(1, std::size(tracks))) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there are no more than the tracks
    track.Try([&] { PutText(*tracks[next++], track.Text(), "the track"); });
  }
  Add(step, SendEvent{ReaderEventCode::StartOfSwipeData});
  Add(step, SendItem{ReaderDataType::SwipeRecord, BytesOf(record)});
  Add(step, SendEvent{ReaderEventCode::EndOfSwipeData});
}

}  // namespace

Document ParseStep(const SessionField& step, const std::filesystem::path& folder) {
  if (step.IsObject() && step.Size() != 1) {
    step.Refuse("a step has exactly one field, this one has " + std::to_string(step.Size()));
  }
  const auto fields = step.Fields({"event", "error", "state", "pause", "document", "swipe"});
  const auto& [name, field] = fields.front();
  if (name == "document") {
    return ParseDocument(field, folder);
  }
  Document document;
  Step* const actions = LastActions(&document);
  if (name == "event") {
    const std::size_t event = field.NameAmong("event", NamesOf(ReaderEventNames));
    Add(actions, SendEvent{static_cast<ReaderEventCode>(event)});
  } else if (name == "error") {
    Add(actions, RaiseError{field.Text()});
  } else if (name == "state") {
    // A host asks for the state when it hears of an event, so there is one.
    const std::size_t state = field.NameAmong("state", NamesOf(ReaderStateNames));
    Add(actions, SendEvent{ReaderEventCode::AutomaticStateChange, static_cast<ReaderState>(state)});
  } else if (name == "pause") {
    Add(actions, Pause{std::chrono::milliseconds(field.Integer(0, LongestPause))});
  } else {
    ParseSwipe(field, actions);
  }
  return document;
}

}  // namespace conduit
