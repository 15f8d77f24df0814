#include "virtual_reader/session/DocumentBuilder.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <utility>

#include "platform/FilePath.h"
#include "virtual_reader/InputFile.h"
#include "virtual_reader/records/AamvaReading.h"
#include "virtual_reader/records/ItemsOfKind.h"
#include "virtual_reader/session/SessionCodeline.h"
#include <conduit/ReaderBarcodeData.h>

namespace conduit {
namespace {

/// Far more than any symbology holds.
constexpr std::uintmax_t LargestBarcode = std::uintmax_t{1} << 20;

std::vector<std::string> NamesOf(const std::vector<ReaderItem>& items) {
  std::vector<std::string> names;
  for (const ReaderItem& item : items) {
    names.emplace_back(item.name);
  }
  return names;
}

}  // namespace

const std::vector<FieldReader<DocumentBuilder>> DocumentBuilder::Fields = {
    {"codeline", &DocumentBuilder::ReadPageCodeline},
    {"images", &DocumentBuilder::ReadImages},
    {"barcodes", &DocumentBuilder::ReadBarcodes},
    {"aamva", &DocumentBuilder::ReadAamvaText},
    {"chip", &DocumentBuilder::ReadChip},
    {"error", &DocumentBuilder::ReadError},
};

DocumentBuilder::DocumentBuilder(const std::filesystem::path& folder, const SessionField& document,
                                 std::shared_ptr<PageReaders> readers)
    : folder(folder),
      document(document),
      readers(std::move(readers)),
      wanted({!document.Find("codeline").has_value(), !document.Find("barcodes").has_value(),
              !document.Find("aamva").has_value()}) {}

StepPart DocumentBuilder::Build() {
  StepPart add = ReadFields(*this, document, Fields);
  // "step 3, document" is "document step 3" to who reads the log.
  const std::string name = document.Place().substr(0, document.Place().find(','));
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

// Those that need no member are called through the same table as the others.
// NOLINTBEGIN(readability-convert-member-functions-to-static)

StepPart DocumentBuilder::ReadError(const SessionField& field) { return RaisingError(field); }

StepPart DocumentBuilder::ReadPageCodeline(const SessionField& field) {
  return [place = field.Place(), reading = ReadSessionCodeline(field)](StepBuilder* step) {
    step->AddCodeline(place, reading, ReaderDataType::Codeline, ReaderDataType::CodelineRecord);
  };
}

StepPart DocumentBuilder::ReadImages(const SessionField& field) {
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
  return [files = std::move(files), wanted = wanted, readers = readers](StepBuilder* step) {
    AddImageFiles(files, wanted, readers.get(), step);
  };
}

DocumentBuilder::ImageFile DocumentBuilder::CheckImage(ReaderDataType type,
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

void DocumentBuilder::AddImageFiles(const std::vector<ImageFile>& files, const PagesWanted& wanted,
                                    PageReaders* readers, StepBuilder* step) {
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
  conduit::ReadImages(&images, wanted, readers);
  AddImages(std::move(images), wanted, step);
}

StepPart DocumentBuilder::ReadBarcodes(const SessionField& field) {
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

StepPart DocumentBuilder::ReadAamvaText(const SessionField& field) {
  if (field.IsObject()) {
    field.Fields({"file"});
  }
  const std::string text = field.IsObject() ? FileOf(field.Require("file")) : field.Text();
  // What it says is no part of the work ahead: a wrong one refuses the session.
  field.Try([&text] { ReadAamva(text); });
  return [place = field.Place(), text](StepBuilder* step) { step->AddAamva(place, text); };
}

StepPart DocumentBuilder::ReadChip(const SessionField& field) {
  static const std::vector<FieldReader<DocumentBuilder>> chipFields = {
      {"dg1", &DocumentBuilder::ReadDataGroup1},
      {"photo", &DocumentBuilder::ReadChipPhoto},
  };
  return [add = ReadFields(*this, field, chipFields)](StepBuilder* step) {
    step->AddEvent(ReaderEventCode::RfChipOpenedSuccessfully);
    step->AddEvent(ReaderEventCode::RfApplicationOpenedSuccessfully);
    add(step);
    step->AddEvent(ReaderEventCode::RfChipRemovalSuccess);
  };
}

StepPart DocumentBuilder::ReadDataGroup1(const SessionField& field) {
  return [place = field.Place(), reading = ReadSessionCodeline(field)](StepBuilder* step) {
    step->AddCodeline(place, reading, ReaderDataType::ChipDataGroup1,
                      ReaderDataType::ChipCodelineRecord);
  };
}

StepPart DocumentBuilder::ReadChipPhoto(const SessionField& field) {
  return [photo = CheckImage(ReaderDataType::ChipDataGroup2Photo, field), readers = readers](
             StepBuilder* step) { AddImageFiles({photo}, {}, readers.get(), step); };
}

// NOLINTEND(readability-convert-member-functions-to-static)

std::string DocumentBuilder::FileOf(const SessionField& field) const {
  const std::string name = field.Text();
  try {
    return ReadInputFile(folder / PathFromUtf8(name), LargestBarcode);
  } catch (const std::invalid_argument& reason) {
    field.Refuse('"' + name + "\": " + reason.what());
  }
}

}  // namespace conduit
