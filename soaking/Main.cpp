#include <CLI/CLI.hpp>
#include <cstring>
#include <iostream>
#include <memory>

#include "hosting/LoadedModule.h"
#include "soaking/SoakHost.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/ScriptedReader.h"
#include <conduit/ItemName.h>
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderCodelineData.h>
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

/// Every seventh document is preceded by an error, so that errors meet every kind.
constexpr std::int64_t DocumentsPerError = 7;
constexpr std::int64_t FirstThousand = 1000;
constexpr std::int64_t MostDocuments = 1'000'000'000;

class CountingLogger final : public IModuleLogger {
 public:
  void Log(std::int32_t /*level*/, const char* /*tag*/, const char* /*message*/) override {
    ++lines;
  }
  std::int64_t lines = 0;
};

void SendCodeline(ReaderDataType type, const char* docType, const char* number) {
  ReaderCodelineData record{};
  std::strcpy(record.codeline, "P<UTOERIKSSON<<ANNA<MARIA");
  std::strcpy(record.docType, docType);
  std::strcpy(record.docNumber, number);
  record.dateOfBirth = {5, 11, 85};
  record.expiryDate = {15, 4, 30};
  TheScriptedReader().SendRecord(type, record);
}

void SendPagePassport(const char* number) {
  SendCodeline(ReaderDataType::CodelineRecord, DocumentType::Passport, number);
}

void SendChipPassport(const char* number) {
  SendCodeline(ReaderDataType::ChipCodelineRecord, DocumentType::Passport, number);
}

void SendUnknownPage(const char* number) {
  SendCodeline(ReaderDataType::CodelineRecord, "", number);
}

void SendLicence(const char* number) {
  static ReaderAamvaData record{};
  std::strcpy(record.licenceNumber, number);
  record.height = 180;
  record.heightUnit = static_cast<std::int32_t>(ReaderMeasurementUnit::Centimetre);
  TheScriptedReader().SendRecord(ReaderDataType::AamvaBarcodeRecord, record);
}

void SendSwipe(const char* number) {
  ReaderSwipeData record{};
  std::strcpy(record.track1, number);
  TheScriptedReader().SendRecord(ReaderDataType::SwipeRecord, record);
}

void SendBarcodes(const char* number) {
  ReaderBarcodeData barcode{};
  barcode.count = 3;
  barcode.data = number;
  barcode.length = static_cast<std::int32_t>(std::strlen(number));
  for (; barcode.index < barcode.count; ++barcode.index) {
    TheScriptedReader().SendRecord(ReaderDataType::BarcodeQr, barcode);
  }
}

void SendImages(const char* number) {
  std::string image = number;
  for (const ReaderDataType type : {ReaderDataType::ImageVis, ReaderDataType::ImagePhoto}) {
    TheScriptedReader().SendData(type, static_cast<std::int32_t>(image.size()), image.data());
  }
}

struct PlayedKind {
  DocumentKind kind;
  void (*send)(const char* number);
};

std::vector<PlayedKind> PlayedKinds() {
  const std::vector<const char*> chip(std::begin(CodelineItems), std::end(CodelineItems));
  std::vector<const char*> page = chip;
  page.insert(page.begin(), ItemName::InputSource);
  return {
      {{"passport page", page, ItemName::CodelineDocNumber}, SendPagePassport},
      {{"passport chip", chip, ItemName::CodelineDocNumber}, SendChipPassport},
      {{"unknown page", {ItemName::InputSource, Signal::UnknownDocument}, nullptr},
       SendUnknownPage},
      {{"driving licence",
        {std::begin(LicenceItems), std::end(LicenceItems)},
        ItemName::LicenceNumber},
       SendLicence},
      {{"swiped card",
        {ItemName::InputSource, ItemName::SwipeTrack1, ItemName::SwipeTrack2,
         ItemName::SwipeTrack3},
        ItemName::SwipeTrack1},
       SendSwipe},
      {{"barcodes", {"BARCODE_QRCODE", "BARCODE_QRCODE", "BARCODE_QRCODE"}, "BARCODE_QRCODE"},
       SendBarcodes},
      {{"images", {"IMAGEVIS", "IMAGEPHOTO"}, "IMAGEVIS"}, SendImages},
  };
}

/// What the reader has sent: the other side of the host's counts.
struct Sent {
  std::int64_t documents = 0;
  std::int64_t items = 0;
  std::int64_t events = 0;
  std::int64_t errors = 0;
};

void PlayDocument(const PlayedKind& played, std::int64_t number, SoakHost& host, Sent& sent) {
  const ScriptedReader& reader = TheScriptedReader();
  if (number % DocumentsPerError == 0) {
    reader.SendError("Lamp failure");
    reader.SendEvent(ReaderEventCode::ReaderErrorResolved);
    ++sent.errors;
    ++sent.events;
  }
  const bool swiped = played.send == SendSwipe;
  host.Expect(played.kind, number);
  reader.SendEvent(ReaderEventCode::DocOnWindow);
  reader.SendEvent(swiped ? ReaderEventCode::StartOfSwipeData
                          : ReaderEventCode::StartOfDocumentData);
  played.send(std::to_string(number).c_str());
  reader.SendEvent(swiped ? ReaderEventCode::EndOfSwipeData : ReaderEventCode::EndOfDocumentData);
  reader.SendEvent(ReaderEventCode::DocRemoved);
  host.CheckComplete();
  ++sent.documents;
  sent.items += static_cast<std::int64_t>(played.kind.items.size());
  sent.events += 4;
}

void Compare(const char* what, std::int64_t sent, std::int64_t received) {
  std::cout << what << ": " << sent << " sent, " << received << " received\n";
  if (sent != received) {
    throw SoakFault(std::string("the counts of ") + what + " differ");
  }
}

void Soak(std::int64_t documents) {
  const std::vector<PlayedKind> kinds = PlayedKinds();
  CountingLogger logger;
  SoakHost host;
  LoadedModule module(MODULE_FILE, &logger);
  module->SetHost(&host);
  module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "first");
  module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "second");
  if (module->Initialise() != 0) {
    throw SoakFault("the module does not start");
  }
  const bool counts = CountAllocations(true);
  std::int64_t liveEarly = 0;
  Sent sent;
  for (std::int64_t number = 1; number <= documents; ++number) {
    PlayDocument(kinds[static_cast<std::size_t>(number) % kinds.size()], number, host, sent);
    if (number == FirstThousand) {
      liveEarly = Allocations().live;
    }
  }
  const AllocationCount heap = Allocations();
  CountAllocations(false);
  module->Shutdown();

  Compare("documents", sent.documents, host.documents);
  Compare("items", sent.items, host.items);
  Compare("events", sent.events, host.events);
  Compare("errors", sent.errors, host.errors);
  Compare("scripts", 2 * sent.documents, host.scripts);
  Compare("states", 1 + sent.events + sent.errors, host.states);
  std::cout << "log lines: " << logger.lines << "\n";
  if (counts && documents <= FirstThousand) {
    std::cout << "heap: not compared, that takes more than " << FirstThousand << " documents\n";
  } else if (counts) {
    std::cout << "heap: " << heap.live - liveEarly << " bytes more at the end than after "
              << FirstThousand << " documents, " << heap.calls << " allocations\n";
    if (heap.live != liveEarly) {
      throw SoakFault("memory grows with the number of documents");
    }
  }
}

}  // namespace
}  // namespace conduit

namespace {

int Run(int count, char** arguments) {
  CLI::App app(
      "Plays documents of every kind through the module, with conditions that fire and\n"
      "errors between, and holds every call against what has to come.\n\nExamples:\n"
      "  conduit_soak\n  conduit_soak 3000");
  std::int64_t documents = 200000;
  app.add_option("documents", documents, "How many documents")
      ->capture_default_str()
      ->check(CLI::Range(std::int64_t{1}, conduit::MostDocuments));
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  conduit::Soak(documents);
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return Run(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "soak: %s\n", error.what());
    return 1;
  }
}
