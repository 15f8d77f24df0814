#include <gmock/gmock.h>

#include <cstdio>
#include <ostream>
#include <regex>

#include "RunConduit.h"

using testing::AllOf;
using testing::HasSubstr;

namespace {

std::string Broken(const std::string& fault) {
  return TEST_FOLDER "/broken_modules/" + fault + ".so";
}

/// The lines of the failed checks, without their mark.
std::string Failed(const std::string& output) {
  std::string failed;
  const std::regex line("  FAILED  (.*\n)");
  for (std::sregex_iterator match(output.begin(), output.end(), line), end; match != end; ++match) {
    failed += (*match)[1];
  }
  return failed;
}

TEST(ValidateCommand, PassesModulesThatFollowTheInterface) {
  for (const std::string& module : {std::string(MODULE_FILE), Broken("None")}) {
    const Outcome outcome = RunConduit({"validate", module});
    EXPECT_THAT(outcome.output, HasSubstr("17 passed, 0 failed, 0 skipped\n"));
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
  const Outcome outcome = RunConduit({"validate", "--timeout", "2", Broken(fault)});
  EXPECT_EQ(outcome.status, 1) << outcome.output << outcome.trouble;
  EXPECT_THAT(outcome.output, HasSubstr(" 1 failed, 0 skipped\n"));
  EXPECT_THAT(Failed(outcome.output), AllOf(testing::StartsWith(check), HasSubstr(reason)));
}

constexpr Case Cases[] = {
    {"ExportsMore", "exports", "also exports _ZN7conduit6HelperEv"},
    {"IgnoresNullResult", "null-arguments", "null result pointer answered 0 instead of 6"},
    {"DestroysNull", "null-arguments", "CIM_Destroy of null answered 0 instead of 6"},
    {"ReadsNullText", "null-texts", "crashed: SIGSEGV"},
    {"NeedsLogger", "null-logger", "crashed: SIGSEGV"},
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
    {"HangsInSecondShutdown", "shutdown-any-time", "no answer within 2 s"},
    {"EndsTheProcess", "shutdown-any-time", "ended the process with status 0"},
    {"DeliversAfterShutdown", "shutdown-is-final", "ReportError was called after Shutdown"},
    {"LeavesDocumentOpen", "session-brackets", "without the EndData of its last document"},
    {"EndsDocumentTwice", "session-brackets", "EndData came without a BeginData"},
    {"NamesInLowerCase", "session-items", "item \"Codeline\" has a name that is not in upper"},
    {"NullName", "session-items", "SendData was given a null text"},
    {"CountsTheNul", "session-items", "length 5 but 4 bytes up to its NUL"},
    {"CutsTheImage", "session-items", "not where its image ends"},
    {"ForgetsActions", "session-actions", "nothing more instead of DEVICE_CONNECTED:first"},
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
{"kind":"summary","passed":2,"failed":1,"skipped":0}
)");
  EXPECT_EQ(outcome.status, 1);
}

TEST(ValidateCommand, SkipsWhatNeedsAReaderThatStarts) {
  const std::string noSession = TEST_FOLDER "/unplayable.json";
  std::FILE* const file = std::fopen(noSession.c_str(), "w");
  std::fclose(file);
  const Outcome outcome = RunConduit({"validate", MODULE_FILE, "--session", noSession});
  EXPECT_THAT(outcome.output,
              AllOf(HasSubstr("12 passed, 0 failed, 5 skipped\n"),
                    HasSubstr("skipped session-items      the reader did not start")));
  EXPECT_EQ(outcome.status, 0);
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
           Wrong{{"validate", TEST_FOLDER "/NoModule.so"}, 1, "does not export CIM_GetInputModule"},
           Wrong{{"validate", Broken("None"), "--session", "no.json"}, 1, "no.json"},
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
            HasSubstr("  Play\\n                              refused: 4\n")));
  EXPECT_THAT(
      RunConduit({"describe", "--json", Broken("None")}).output,
      AllOf(HasSubstr(R"("parameters":[{"name":"Port","value":""},)"),
            HasSubstr(R"("actions":[{"name":"SetActiveScript","accepted":true,"answer":0}])")));
}

}  // namespace
