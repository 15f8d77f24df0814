#include "benchmarks/Workload.h"

#include <sys/mman.h>

#include <cstring>
#include <stdexcept>

#include "tests/support/Journal.h"
#include "tests/support/ScriptedReader.h"
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderCodelineData.h>

namespace conduit {
namespace {

constexpr std::int32_t SmallImage = 1000;
constexpr std::int32_t LargeImage = 100'000'000;
constexpr std::int32_t ConditionCount = 1000;

ReaderCodelineData* Passport() {
  static ReaderCodelineData record = [] {
    ReaderCodelineData made{};
    std::strcpy(made.codeline,
                "P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<\n"
                "L898902C36UTO8511056F3004159ZE184226B<<<<<10");
    std::strcpy(made.line1, "P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<");
    std::strcpy(made.line2, "L898902C36UTO8511056F3004159ZE184226B<<<<<10");
    std::strcpy(made.docId, "P");
    std::strcpy(made.docType, "PASSPORT");
    std::strcpy(made.surname, "ERIKSSON");
    std::strcpy(made.forename, "ANNA");
    std::strcpy(made.secondName, "MARIA");
    std::strcpy(made.forenames, "ANNA MARIA");
    made.dateOfBirth = {5, 11, 85};
    made.expiryDate = {15, 4, 30};
    std::strcpy(made.issuingState, "UTO");
    std::strcpy(made.nationality, "UTO");
    std::strcpy(made.docNumber, "L898902C3");
    std::strcpy(made.sex, "FEMALE");
    made.shortSex = 'F';
    std::strcpy(made.optionalData1, "ZE184226B");
    return made;
  }();
  return &record;
}

ReaderAamvaData* Licence() {
  static ReaderAamvaData record = [] {
    ReaderAamvaData made{};
    std::strcpy(made.licenceNumber, "D1234562");
    std::strcpy(made.fullName, "SAMPLE,ANNA,MARIA");
    std::strcpy(made.surname, "SAMPLE");
    std::strcpy(made.forename, "ANNA");
    std::strcpy(made.middleName, "MARIA");
    std::strcpy(made.givenNames, "ANNA MARIA");
    std::strcpy(made.sex, "FEMALE");
    made.shortSex = 'F';
    made.dateOfBirth = {5, 11, 85};
    made.issueDate = {1, 2, 21};
    made.expiryDate = {5, 11, 29};
    std::strcpy(made.addressStreet, "789 E OAK ST");
    std::strcpy(made.addressCity, "ANYTOWN");
    std::strcpy(made.addressState, "CA");
    std::strcpy(made.addressPostalCode, "902230000");
    std::strcpy(made.addressCountry, "USA");
    made.height = 69;
    made.heightUnit = static_cast<std::int32_t>(ReaderMeasurementUnit::Inch);
    made.weight = 130;
    made.weightUnit = static_cast<std::int32_t>(ReaderMeasurementUnit::Pound);
    made.hairColor = static_cast<std::int32_t>(ReaderHairColor::Brown);
    made.eyeColor = static_cast<std::int32_t>(ReaderEyeColor::Blue);
    return made;
  }();
  return &record;
}

/// Returns memory that crashes the process when a byte of it is read.
void* UnreadableImage() {
  static void* const image =
      mmap(nullptr, LargeImage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (image == MAP_FAILED) {
    throw std::runtime_error("no memory for the image");
  }
  return image;
}

void NoPreparation(Subject& /*subject*/) {}

void SendCodeline(Subject& subject) {
  subject.data(subject.context, ReaderDataType::CodelineRecord, sizeof(ReaderCodelineData),
               Passport());
}

void SendLicence(Subject& subject) {
  subject.data(subject.context, ReaderDataType::AamvaBarcodeRecord, sizeof(ReaderAamvaData),
               Licence());
}

void SendBarcodes(Subject& subject) {
  static constexpr char text[] = "M1ERIKSSON/ANNA";
  constexpr ReaderDataType types[] = {ReaderDataType::BarcodePdf417, ReaderDataType::BarcodeQr,
                                      ReaderDataType::Barcode128};
  ReaderBarcodeData barcode{};
  barcode.count = 3;
  barcode.data = text;
  barcode.length = sizeof text - 1;
  for (const ReaderDataType type : types) {
    subject.data(subject.context, type, sizeof barcode, &barcode);
    ++barcode.index;
  }
}

template <std::int32_t Length>
void SendImage(Subject& subject) {
  subject.data(subject.context, ReaderDataType::ImageVis, Length, UnreadableImage());
}

/// Adds 1,000 conditions; the last one fires, with two actions.
void AddConditions(Subject& subject) {
  static const std::vector<std::string> others = [] {
    std::vector<std::string> made;
    for (std::int32_t number = 1; number < ConditionCount; ++number) {
      made.push_back("EVENT_" + std::to_string(number));
    }
    return made;
  }();
  for (const std::string& name : others) {
    subject.module->AddCondition("ReceiveEvent", name.c_str());
  }
  subject.module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW");
  subject.module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "first");
  subject.module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "second");
}

void SendWaitedForEvent(Subject& subject) {
  subject.event(subject.context, ReaderEventCode::DocOnWindow);
}

/// Sends the values read back to the host, so that outputs can be compared.
void SetAndGetParameters(Subject& subject) {
  constexpr const char* values[][2] = {
      {"LogLevel", "3"}, {"ExpiryDateFormat", "%d.%m.%Y"}, {"BadChars", "*_?"}};
  for (const auto& [name, value] : values) {
    const char* readBack = nullptr;
    if (subject.module->SetParameter(name, value) == 0 &&
        subject.module->GetParameter(name, &readBack) == 0) {
      subject.host->SendEvent(readBack);
    }
  }
}

/// Returns the path of a copy that nothing else loads: loading a loaded library again only
/// increments its reference count.
std::filesystem::path UnloadedTwin(const std::filesystem::path& file) {
  return file.parent_path() / ("unloaded" + file.filename().string());
}

void CopyLibrary(Subject& subject) {
  std::filesystem::copy_file(subject.file, UnloadedTwin(subject.file),
                             std::filesystem::copy_options::overwrite_existing);
  subject.file = UnloadedTwin(subject.file);
}

void LoadAndUnload(Subject& subject) {
  const Subject fresh(subject.file, subject.logger, subject.host);
  fresh.module->Shutdown();
}

class DataNotingHost final : public IInputModuleHost {
 public:
  explicit DataNotingHost(Journal& journal) : journal(journal), recorder(journal) {}

  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override {
    if (data == UnreadableImage()) {
      journal.Write("the reader's own pointer");
    }
    return recorder.SendData(name, itemType, length, data, properties, last);
  }
  void SendEvent(const char* name) override { recorder.SendEvent(name); }
  void BeginData() override { recorder.BeginData(); }
  void EndData() override { recorder.EndData(); }
  std::int32_t SetActiveScript(const char* name) override { return recorder.SetActiveScript(name); }
  void ReportState(const char* text) override { recorder.ReportState(text); }
  void ReportError(const char* text) override { recorder.ReportError(text); }

 private:
  Journal& journal;
  RecordingHost recorder;
};

}  // namespace

Subject::Subject(const std::filesystem::path& file, IModuleLogger* logger, IInputModuleHost* host)
    : file(file), logger(logger), host(host), module(file, logger) {
  module->SetHost(host);
  if (module->Initialise() != 0) {
    throw std::runtime_error("the module does not start");
  }
  data = TheScriptedReader().dataCallback;
  event = TheScriptedReader().eventCallback;
  context = TheScriptedReader().context;
}

const std::vector<Workload>& Workloads() {
  static const std::vector<Workload> workloads = {
      {"codeline record", false, 1.25, NoPreparation, SendCodeline},
      {"logged codeline record", true, 1.5, NoPreparation, SendCodeline},
      {"driving licence", false, 1.25, NoPreparation, SendLicence},
      {"logged driving licence", true, 1.5, NoPreparation, SendLicence},
      {"three barcodes", false, 0, NoPreparation, SendBarcodes},
      {"logged three barcodes", true, 0, NoPreparation, SendBarcodes},
      {"image of 1 kB", false, 0, NoPreparation, SendImage<SmallImage>},
      {"image of 100 MB", false, 0, NoPreparation, SendImage<LargeImage>},
      {"event among 1,000 conditions", false, 0, AddConditions, SendWaitedForEvent},
      {"three parameters set and read", false, 0, NoPreparation, SetAndGetParameters},
      {"load, start, stop, unload", false, 0, CopyLibrary, LoadAndUnload},
  };
  return workloads;
}

std::vector<std::string> OutputOf(const Workload& workload, const std::filesystem::path& file) {
  Journal journal;
  RecordingLogger logger(journal);
  DataNotingHost host(journal);
  Subject subject(file, workload.logged ? &logger : nullptr, &host);
  workload.prepare(subject);
  journal.Take();
  // Twice: the second delivery must not depend on the first.
  workload.deliver(subject);
  workload.deliver(subject);
  return journal.Take();
}

}  // namespace conduit
