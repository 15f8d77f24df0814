#include <gmock/gmock.h>

#include "tests/virtual_reader/ReaderSession.h"

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Refusal {
  std::string json;
  std::string reason;
  ReaderResult result = ReaderResult::SessionWrong;
};

std::string Step(const std::string& step) { return R"({"steps": [{"pause": 0}, )" + step + "]}"; }

std::string InDocument(const std::string& fields) {
  return Step(R"({"document": {)" + fields + "}}");
}

/// An object of the fields "0", "1" and so on.
std::string ManyFields(int count) {
  std::string fields;
  for (int i = 0; i < count; ++i) {
    fields += (i > 0 ? ", \"" : "\"") + std::to_string(i) + "\": 0";
  }
  return "{" + fields + "}";
}

std::string Text(std::size_t size) { return '"' + std::string(size, 'x') + '"'; }

const Refusal Refusals[] = {
    {"", "session.json: the file is empty", ReaderResult::SessionUnreadable},
    {"{\n  \"steps\": [,]}", "not JSON: line 2, column 13: ", ReaderResult::SessionMalformed},
    {"{\"steps\": [\"\xFF\"]}", "not JSON: line 1", ReaderResult::SessionMalformed},
    {R"({"steps": [1e999]})", "not JSON: ", ReaderResult::SessionMalformed},
    {std::string(100000, '['), "stand in each other deeper", ReaderResult::SessionMalformed},
    {"[]", "session.json: this is array, not an object"},
    {"{}", "the field \"steps\" is missing"},
    {R"({"step": []})", "there is no field \"step\"; known: \"steps\""},
    {R"({"steps": {}})", "steps: this is object, not a list"},
    {Step("1"), "step 2: this is number, not an object"},
    {Step("{}"), "step 2: a step has exactly one field, this one has 0"},
    {Step(R"({"pause": 1, "state": "Asleep"})"), "step 2: a step has exactly one field"},
    {Step(R"({"pause": 1, "pause": 2})"), "step 2: the field \"pause\" stands twice"},
    {Step(R"({"event": [1], "event": 2})"), "step 2: the field \"event\" stands twice"},
    {Step(ManyFields(64)), "step 2: a step has exactly one field, this one has 64"},
    {Step(ManyFields(65)), "step 2: an object has more than 64 fields"},
    {Step(R"({"puase": 1})"), "step 2: there is no field \"puase\"; known: \"event\", \"error\""},
    {Step(R"({"event": "DOC_ON_WINDOWS"})"),
     "step 2, event: there is no event \"DOC_ON_WINDOWS\"; the nearest is \"DOC_ON_WINDOW\""},
    {Step(R"({"event": 5})"), "step 2, event: this is number, not a text"},
    {Step(R"({"state": "asleep"})"), "step 2, state: there is no state \"asleep\"; known: \"Not "},
    {Step(R"({"error": "a\u0000b"})"), "step 2, error: the text holds a NUL"},
    {Step(R"({"pause": -1})"), "step 2, pause: -1 is not within 0 to 3600000"},
    {Step(R"({"pause": 18446744073709551615})"), "18446744073709551615 is not within"},
    {Step(R"({"pause": 0.5})"), "step 2, pause: this is number, not a whole number"},
    {Step(R"({"swipe": []})"), "step 2, swipe: the list has 0 entries, it takes at least 1"},
    {Step(R"({"swipe": ["", "", "", ""]})"), "the list has 4 entries, it takes at most 3"},
    {Step(R"({"swipe": ["", )" + Text(1024) + "]}"),
     "step 2, swipe #2: the track has 1024 bytes, the record holds 1023"},
    {InDocument(R"("codline": [])"), "step 2, document: there is no field \"codline\""},
    {InDocument(R"("codeline": [])"), "document.codeline: the list has 0 entries"},
    {InDocument(R"("codeline": ["AB"])"), "document.codeline: 1 lines of 2 characters fit no"},
    {InDocument(R"("codeline": {"lines": [)" + Text(44) + ", " + Text(43) + "]}"),
     "step 2, document.codeline.lines: line 2 has 43 characters, a TD3 line has 44"},
    {InDocument(R"("codeline": {"fields": {"docType": ""}})"), "\"lines\" is missing"},
    {InDocument(R"("codeline": {"lines": [)" + Text(200) + R"(], "fields": {"docType": ""}})"),
     "document.codeline.lines: line 1 has 200 bytes, the record holds 199"},
    {InDocument(R"("codeline": {"lines": [], "fields": {"docType": "", "surnam": ""}})"),
     "codeline.fields: there is no field \"surnam\"; the nearest is \"surname\""},
    {InDocument(R"("codeline": {"lines": [], "fields": {"docType": )" + Text(40) + "}}"),
     "codeline.fields.docType: the text has 40 bytes, the record holds 39"},
    {InDocument(R"("codeline": {"lines": [], "fields": {"docType": "", "shortSex": "MF"}})"),
     "codeline.fields.shortSex: the record holds one character"},
    {InDocument(
         R"("codeline": {"lines": [], "fields": {"docType": "", "expiryDate": {"day": 1}}})"),
     "codeline.fields.expiryDate: the field \"month\" is missing"},
    {InDocument(R"("images": {"IMAGEVIZ": "x"})"), "there is no field \"IMAGEVIZ\"; known: "},
    {InDocument(R"("images": {"CODELINE": "x"})"), "there is no field \"CODELINE\""},
    {InDocument(R"("images": {"IMAGEVIS": "none.png"})"),
     "document.images.IMAGEVIS: \"none.png\": there is no such file"},
    {InDocument(R"("images": {"IMAGEVIS": "."})"), "this is a folder or a device"},
    {InDocument(R"("images": {"IMAGEVIS": "empty"})"), "the file is empty"},
    {InDocument(R"("images": {"IMAGEVIS": "huge"})"), "the file has 1073741824 bytes, at most"},
    {InDocument(R"("barcodes": [{"symbology": "QR", "text": ""}])"),
     "document.barcodes #1.symbology: there is no symbology \"QR\"; known: "},
    {InDocument(R"("barcodes": [{"symbology": "BARCODE_QRCODE", "text": "", "file": "x"}])"),
     "document.barcodes #1: a barcode has either \"text\" or \"file\""},
    {InDocument(R"("aamva": "@")"), "document.aamva: the file type \"ANSI \" does not follow"},
    {InDocument(R"("aamva": {"file": "none.txt"})"), "document.aamva.file: \"none.txt\": there"},
    {InDocument(R"("chip": {"dg2": "x"})"), "document.chip: there is no field \"dg2\"; known: "},
};

TEST(SessionRefusal, NamesTheFileThePlaceAndTheReason) {
  for (const Refusal& refusal : Refusals) {
    SCOPED_TRACE(refusal.json.substr(0, 200));
    ReaderSession session(refusal.json);
    session.Write("empty", "");
    session.Write("huge", "");
    std::filesystem::resize_file(session.folder / "huge", std::uintmax_t{1} << 30);
    EXPECT_EQ(session.Start(), Code(refusal.result));
    EXPECT_THAT(session.Calls(),
                ElementsAre(testing::AllOf(HasSubstr("session.json: "), HasSubstr(refusal.reason),
                                           testing::EndsWith(" Error"))));
    EXPECT_EQ(StateName(), "Error");
  }
}

TEST(SessionRefusal, TellsWhenThereIsNoSuchSession) {
  ReaderSession session;
  const std::pair<std::string, ReaderResult> cases[] = {
      {"", ReaderResult::NoSession},
      {(session.folder / "none.json").string(), ReaderResult::SessionUnreadable},
      {session.folder.string(), ReaderResult::SessionUnreadable},
      {"/dev/zero", ReaderResult::SessionUnreadable}};
  for (const auto& [file, result] : cases) {
    ReaderSession::Name(file);
    EXPECT_EQ(session.Start(), Code(result)) << file;
    EXPECT_THAT(session.Calls().back(), HasSubstr(file.empty() ? "HALDEN_READER_SESSION" : file));
  }
}

TEST(SessionRefusal, IsOverWithTheNextStartOrShutdown) {
  ReaderSession session("{}");
  EXPECT_NE(session.Start(), 0);
  session.Write("session.json", R"({"steps": []})");
  EXPECT_EQ(session.PlayUntil().size(), 2U);
  HaldenReader_Shutdown();
  session.Write("session.json", "{}");
  EXPECT_NE(session.Start(), 0);
  HaldenReader_Shutdown();
  EXPECT_EQ(StateName(), "Not Initialised");
}

}  // namespace
}  // namespace conduit
