#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>
#include <sstream>

#include "RunConduit.h"
#include "platform/Environment.h"
#include "platform/ProcessResources.h"

using testing::AllOf;
using testing::HasSubstr;
using namespace std::string_literals;

namespace {

std::string Broken(const std::string& fault) {
  return TEST_FOLDER "/broken_modules/" + fault + MODULE_SUFFIX;
}

/// The line of that check when it failed, without its mark.
std::string Failed(const std::string& check, const std::string& output) {
  std::smatch match;
  return std::regex_search(output, match, std::regex("  FAILED  " + check + " (.*)\n"))
             ? match[1].str()
             : "";
}

TEST(ValidateCommand, PassesModulesThatFollowTheInterface) {
  for (const std::string& module : {std::string(MODULE_FILE), Broken("None")}) {
    const Outcome outcome = RunConduit({"validate", module});
    EXPECT_THAT(outcome.output, HasSubstr("25 passed, 0 warnings, 0 failed, 0 skipped\n"));
    EXPECT_EQ(outcome.trouble, "");
    EXPECT_EQ(outcome.status, 0) << module;
  }
}

struct Case {
  const char* fault;
  const char* check;
  const char* reason;
};

void PrintTo(const Case& one, std::ostream* output) { *output << one.fault; }

class BrokenModule : public testing::TestWithParam<Case> {};

TEST_P(BrokenModule, FailsTheCheckOfItsFault) {
  const auto& [fault, check, reason] = GetParam();
  if (fault == "LeaksFile"s && conduit::ResourcesInUse().files == 0) {
    GTEST_SKIP() << "this system does not count what is open";
  }
  const Outcome outcome =
      RunConduit({"validate", "--timeout", TIMEOUT, "--only", check, Broken(fault)});
  EXPECT_EQ(outcome.status, 1) << outcome.output << outcome.trouble;
  EXPECT_THAT(Failed(check, outcome.output), HasSubstr(reason)) << outcome.output;
}

constexpr Case Cases[] = {
    {"ExportsMore", "exports", "also exports _ZN7conduit6HelperEv"},
    {"IgnoresNullResult", "null-arguments", "null result pointer answered 0 instead of 6"},
    {"DestroysNull", "null-arguments", "CIM_Destroy of null answered 0 instead of 6"},
    {"ReadsNullText", "null-texts", CRASH},
    {"NeedsLogger", "null-logger", CRASH},
    {"LeaksModule", "create-destroy", "5000 modules left "},
    {"LeaksCondition", "create-destroy", "5000 modules left "},
    {"ListsUnsorted", "parameter-list", "\"Port\", does not come after \"Zoom\""},
    {"ListsPastTheEnd", "parameter-list", "writes a result for index -1 of 2"},
    {"ListsPastTheEndOfConditions", "condition-list", "GetConditionAt writes a result for index 0"},
    {"RenamesParameters", "parameter-list", "the names change"},
    {"GivesDefaults", "parameter-values", "\"1\" for Port before it is set instead of \"\""},
    {"ChangesValue", "parameter-values", "\"two\" for Port after it was set"},
    {"KeepsRefusedValue", "parameter-values", "after it refused \"0\" instead of \"1\""},
    {"ThrowsOnUnknownParameter", "unknown-parameter", "threw an exception: map::at"},
    {"TakesAnyCase", "unknown-parameter", "unknown name \"pORT\" answered 0 instead of 2"},
    {"TakesAnyCondition", "unknown-condition", "\"No such name\" answered 0 instead of 3"},
    {"TakesAnyAction", "unknown-action", "\"No such name\" answered 0 instead of 4"},
    {"ListsBackwards", "condition-list", "at 0 is \"ReceiveEvent\", \"Z\" instead of"},
    {"StaysRefused", "reader-refuses", "after one that refused, answered 13 instead of 0"},
    {"HidesRefusal", "reader-refuses", "reader that refuses answered 0 instead of 13"},
    {"HangsInSecondShutdown", "shutdown-any-time", "no answer within " TIMEOUT " s"},
    {"EndsTheProcess", "shutdown-any-time", "ended the process with status 0"},
    {"DeliversAfterShutdown", "shutdown-is-final", "ReportError was called after Shutdown"},
    {"LeavesDocumentOpen", "session-brackets", "without the EndData of its last document"},
    {"EndsDocumentTwice", "session-brackets", "EndData came without a BeginData"},
    {"NamesInLowerCase", "session-items", "item \"Codeline\" has a name that is not in upper"},
    {"NullName", "session-items", "SendData was given a null text"},
    {"CountsTheNul", "session-items", "length 5 but 4 bytes up to its NUL"},
    {"CutsTheImage", "session-items", "not where its image ends"},
    {"ForgetsActions", "session-actions", "nothing more instead of DEVICE_CONNECTED:first"},
    {"WritesNullForUnknown", "unknown-parameter", "writes a null text for the unknown name"},
    {"WritesBesideResult", "parameter-values", "GetParameter writes beside its out-parameter"},
    {"LendsOneText", "parameter-texts", "for Port does not stay good while other parameters"},
    {"KeepsLentValue", "parameter-values", "for Port after it was set instead of \"1\""},
    {"RefusesWithOtherCode", "parameter-values", "Port to \"0\" answered 4, which is no answer"},
    {"LendsConditionText", "condition-list", "texts of the first condition do not stay good"},
    {"NullLogMessage", "calls", "Log was given a null text"},
    {"CallsReserved", "calls", "a reserved operation was called"},
    {"DeadlocksInDelivery", "shutdown-in-delivery", "from within SendEvent, does not return"},
    {"DeadlocksDuringDelivery", "shutdown-in-delivery", "by another thread during SendEvent, does"},
    {"StartsOnce", "second-start", "Initialise after Shutdown answered 13 instead of 0"},
    {"LeaksThread", "leaves-nothing", "4 modules left 4 threads behind"},
    {"LeaksFile", "leaves-nothing", "4 modules left 4 open files behind"},
    {"LeaksProcess", "leaves-nothing", "left 1 process behind"},
    {"LeaksDocument", "session-memory", "4 documents left 4"},
    {"ForgetsBegin", "session-brackets", "item \"CODELINE\" came outside of BeginData"},
    {"BeginsLate", "session-brackets", "item \"CODELINE\" came outside of BeginData"},
    {"OmitsFeature", "session-items", "\"BARCODE_PDF417\" has no property \"feature\""},
    {"NumbersFromOne", "session-items", "has the feature \"1\" instead of \"0\""},
    {"MarksNoLast", "session-items", "no barcode is marked as the last of its read"},
    {"UnknownItemType", "session-items", "has the type 6, which does not exist"},
    {"LengthBeyondData", "session-items", "has the length 1073741824, which is beyond its data"},
    {"ForgetsErrorOfEvent", "session-events", "no ReportError of the empty text came before"},
    {"ForgetsStateOfEvent", "session-events", "no ReportState came after the event DEVICE_CONN"},
    {"ForgetsStateOfStart", "session-events", "Initialise did not report the reader's state"},
    {"IgnoresRefusedScript", "failed-actions", "CONNECTED:second instead of DEVICE_DISCONNECTED"},
    {"SwapsActions", "session-actions", ":second instead of DEVICE_CONNECTED:first"},
};
INSTANTIATE_TEST_SUITE_P(ValidateCommand, BrokenModule, testing::ValuesIn(Cases),
                         [](const auto& one) { return std::string(one.param.fault); });

TEST(ValidateCommand, RunsTheChecksThatFit) {
  const Outcome outcome = RunConduit({"validate", Broken("TakesAnyAction"), "--json", "--only",
                                      "unknown-*n", "--only", "exports"});
  EXPECT_EQ(outcome.output,
            R"({"kind":"validate","schema":1,"module":")" + Broken("TakesAnyAction") + R"("}
{"kind":"check","name":"exports","status":"passed"}
{"kind":"check","name":"unknown-condition","status":"passed"}
{"kind":"check","name":"unknown-action","status":"failed","reason":"AddAction of the unknown name \"No such name\" answered 0 instead of 4"}
{"kind":"summary","passed":2,"warnings":0,"failed":1,"skipped":0}
)");
  EXPECT_EQ(outcome.status, 1);
}

TEST(ValidateCommand, HasAPageThatDescribesEachCheck) {
  std::vector<std::string> described;
  std::ifstream page(PAGE_OF_CHECKS);
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("| `") && !line.starts_with("| `-")) {
      described.push_back(line.substr(3, line.find('`', 3) - 3));
    }
  }
  std::vector<std::string> listed;
  std::istringstream list(RunConduit({"validate", "--list"}).output);
  for (std::string line; std::getline(list, line);) {
    listed.push_back(line.substr(0, line.find(' ')));
  }
  EXPECT_THAT(listed, testing::SizeIs(testing::Ge(25)));
  EXPECT_EQ(listed, described);
}

TEST(ValidateCommand, SkipsWhatNeedsAReaderThatStarts) {
  const std::string noSession = TEST_FOLDER "/unplayable.json";
  std::FILE* const file = std::fopen(noSession.c_str(), "w");
  std::fclose(file);
  const Outcome outcome = RunConduit({"validate", MODULE_FILE, "--session", noSession});
  EXPECT_THAT(outcome.output,
              AllOf(HasSubstr("16 passed, 0 warnings, 0 failed, 9 skipped\n"),
                    HasSubstr("skipped reader-refuses       the reader did not start")));
  EXPECT_EQ(outcome.status, 0);
}

std::string WriteSession(const std::string& name, const std::string& text) {
  std::string file = TEST_FOLDER "/" + name;
  std::ofstream(file) << text;
  return file;
}

TEST(ValidateCommand, JudgesByWhatTheSessionSent) {
  for (const std::string steps : {R"({"pause":600},{"document":{}})",
                                  R"({"event":"END_OF_DOCUMENT_DATA"},{"document":{}})"}) {
    const Outcome outcome =
        RunConduit({"validate", MODULE_FILE, "--only", "session-*", "--session",
                    WriteSession("sparse.json", R"({"steps":[)" + steps + "]}")});
    EXPECT_THAT(outcome.output, HasSubstr("5 passed, 0 warnings, 0 failed")) << steps;
  }
}

TEST(ValidateCommand, WarnsOfSilenceAndSaysAReasonOnce) {
  const Outcome outcome =
      RunConduit({"validate", "--timeout", TIMEOUT, "--only", "session-*", Broken("StaysSilent")});
  EXPECT_THAT(
      outcome.output,
      AllOf(HasSubstr("warning session-memory       Initialise answered 0, but nothing came"),
            HasSubstr("warning session-items        as session-memory\n"),
            HasSubstr("0 passed, 5 warnings, 0 failed, 0 skipped\n")));
  EXPECT_EQ(outcome.status, 0);
}

TEST(ValidateCommand, LeavesNothingWhenItIsInterrupted) {
  const std::filesystem::path folder = TEST_FOLDER "/temporary files";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
  for (const char* const variable : {"TMPDIR", "TMP"}) {
    conduit::SetEnvironment(variable, std::filesystem::relative(folder));
  }
  const EndRequest& request = EndRequests().back();
  const std::string session = WriteSession("long.json", R"({"steps":[{"pause":9000}]})");
  const Outcome outcome = RunConduit({"validate", MODULE_FILE, "--session", session}, "",
                                     {&request, "passed  null-texts"});
  EXPECT_EQ(outcome.status, request.status) << outcome.output << outcome.trouble;
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST(ValidateCommand, TellsWhatIsWrongWithItsArguments) {
  struct Wrong {
    std::vector<std::string> arguments;
    int status;
    const char* trouble;
  };
  for (const Wrong& wrong : {
           Wrong{{"validate", "no.so"}, 1, "no.so: no such file\n"},
           Wrong{{"validate", __FILE__}, 1, "ValidateCommandTest.cpp: "},
           Wrong{{"validate", TEST_FOLDER "/NoModule" MODULE_SUFFIX},
                 1,
                 "does not export CIM_GetInputModule"},
           Wrong{{"validate", Broken("None"), "--session", "no.json"}, 1, "no.json"},
           Wrong{{"validate", MODULE_FILE, "--set", "Port=1"}, 1, "--set Port=1 answered 2"},
           Wrong{{"validate", MODULE_FILE, "--set", "Port"}, 2, "'Port' is not of the form"},
           Wrong{{"validate"}, 2, "MODULE is required"},
           Wrong{{"validate", "x.so", "--only", "expotrs"}, 2, "the checks are: exports, null-"},
           Wrong{{"describe"}, 2, "MODULE is required"},
           Wrong{{"describe", "no.so"}, 1, "no.so: no such file\n"},
       }) {
    const Outcome outcome = RunConduit(wrong.arguments);
    EXPECT_THAT(outcome.trouble, HasSubstr(wrong.trouble));
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.status, wrong.status) << outcome.trouble;
  }
}

TEST(DescribeCommand, ShowsWhatTheModuleTakes) {
  const Outcome outcome = RunConduit(
      {"describe", Broken("GivesDefaults"), "--condition", "Other", "--action", "Play\n"});
  EXPECT_THAT(
      outcome.output,
      AllOf(HasSubstr("parameters, 2\n"), HasSubstr("  Port                                1\n"),
            HasSubstr("  Zoom                                (not set)\n"),
            HasSubstr("  ReceiveEvent                        accepted\n"),
            HasSubstr("  Other                               refused: 3\n"),
            HasSubstr("  SetActiveScript                     accepted\n"),
            HasSubstr("  Play\\n                              refused: 4\n"),
            HasSubstr("  GetConditionCount                   answered 0\n")));
  EXPECT_THAT(
      RunConduit({"describe", "--json", Broken("None")}).output,
      AllOf(HasSubstr(R"("parameters":[{"name":"Port","value":""},)"),
            HasSubstr(R"("actions":[{"name":"SetActiveScript","accepted":true,"answer":0}])")));
}

}  // namespace
