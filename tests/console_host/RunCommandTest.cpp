#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "RunConduit.h"
#include "platform/Environment.h"
#include "platform/FilePath.h"
#include <conduit/Version.h>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// The script with the end of a session after it.
std::string ToItsEnd(const std::string& script) {
  return script + "event DEVICE_DISCONNECTED\nstate Terminated\n";
}

std::string InFolder(const std::string& file) { return std::string(TEST_FOLDER "/").append(file); }

std::string Module(const std::string& name) { return InFolder(name + MODULE_SUFFIX); }

Outcome RunFake(std::vector<std::string> arguments, const std::string& script,
                const Interruption& interruption = {}) {
  arguments.insert(arguments.begin(), {"run", "--module", Module("FakeModule")});
  return RunConduit(arguments, script, interruption);
}

std::string WriteFile(const std::string& name, const std::string& contents) {
  std::string file = InFolder(name);
  std::ofstream(conduit::PathFromUtf8(file)) << contents;
  return file;
}

TEST(RunCommand, ShowsWhatArrivesInOrder) {
  const Outcome outcome = RunFake(
      {},
      ToItsEnd(
          "event START_OF_DOCUMENT_DATA\nbegin\nstate Reading\nitem CODELINE_SURNAME 4 534D495448\n"
          "item SCDG2_PHOTO 5 FFD8FFE0\nmissing IMAGEIR\nitem BARCODE_PDF417 0 41 0 more\n"
          "item BARCODE_QRCODE 3 00FF 1 last\nend\nerror Paper jam\nevent "
          "READER_ERROR_RESOLVED\n"));
  EXPECT_EQ(outcome.output,
            "run     FakeModule" MODULE_SUFFIX
            "\n"
            "state   Enabled\n"
            "event   START_OF_DOCUMENT_DATA\n"
            "begin\n"
            "  state   Reading\n"
            "  CODELINE_SURNAME                      SMITH\n"
            "  SCDG2_PHOTO                           (JPEG image, 4 bytes)\n"
            "  IMAGEIR                               (no data, 12 bytes announced)\n"
            "  BARCODE_PDF417                        A (feature 0, more follow)\n"
            "  BARCODE_QRCODE                        (binary data, 2 bytes) (feature 1, last)\n"
            "end\n"
            "ERROR   Paper jam\n"
            "error   (none stands any more)\n"
            "event   READER_ERROR_RESOLVED\n"
            "event   DEVICE_DISCONNECTED\n"
            "state   Terminated\n"
            "stop    the reader has terminated\n");
  EXPECT_EQ(outcome.trouble, "");
  EXPECT_EQ(outcome.status, 0);
}

constexpr const char* ReaderScript =
    "reader 2024-05-01T09:30:00.120Z 1 document a.png\n"
    "reader 2024-05-01T09:30:00.120Z 1 note a.png: found\n"
    "event DOC_ON_WINDOW\nbegin\nitem NAME 4 41\nend\nevent DOC_REMOVED\n"
    "reader 2024-05-01T09:30:00.121Z 1 document b.png\n"
    "event DOC_ON_WINDOW\nerror b.png: the file ends early\nevent DOC_REMOVED\n"
    "reader another library's line\n";

TEST(RunCommand, ShowsTheReadersLogAndCountsWhatWasNotRead) {
  std::filesystem::remove_all(InFolder("by-document"));
  const Outcome outcome = RunFake({"--save", InFolder("by-document")}, ToItsEnd(ReaderScript));
  EXPECT_EQ(outcome.output, "run     FakeModule" MODULE_SUFFIX
                            "\n"
                            "state   Enabled\n"
                            "reader  document a.png\n"
                            "reader  a.png: found\n"
                            "event   DOC_ON_WINDOW\n"
                            "begin\n"
                            "  NAME                                  A\n"
                            "end\n"
                            "event   DOC_REMOVED\n"
                            "reader  document b.png\n"
                            "event   DOC_ON_WINDOW\n"
                            "ERROR   b.png: the file ends early\n"
                            "error   (none stands any more)\n"
                            "event   DOC_REMOVED\n"
                            "reader  another library's line\n"
                            "event   DEVICE_DISCONNECTED\n"
                            "state   Terminated\n"
                            "pages   1 of 2 could not be read\n"
                            "stop    the reader has terminated\n");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(std::filesystem::exists(InFolder("by-document/document-00001-a_png/NAME.txt")));
}

TEST(RunCommand, LeavesTheReadersLogWhereTheUserWantsIt) {
  const std::string log = WriteFile("reader.log", "of an earlier run\n");
  const Outcome outcome =
      RunFake({"--set", "LogFileName=" + log}, ToItsEnd("reader new\nevent A\n"));
  EXPECT_THAT(outcome.output, AllOf(HasSubstr("reader  new\n"), Not(HasSubstr("earlier"))));
  std::ifstream file(log);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "of an earlier run\nnew\n");
}

TEST(RunCommand, NeedsNoFolderForTheReadersLog) {
  if (!std::filesystem::exists("/proc/self/fd")) {
    GTEST_SKIP() << "this system has no files in memory";
  }
  const char* const before = std::getenv("TMPDIR");
  conduit::SetEnvironment("TMPDIR", InFolder("no-such-folder"));
  const Outcome outcome = RunFake({}, ToItsEnd(ReaderScript));
  conduit::SetEnvironment("TMPDIR", before != nullptr ? before : "/tmp");
  EXPECT_THAT(outcome.output, HasSubstr("\nreader  document b.png\n"));
}

TEST(RunCommand, TakesNoNameForAWordOfTheReader) {
  const std::string table = InFolder("names.jsonl");
  std::filesystem::remove(table);
  const std::string line = "reader 2024-05-01T09:30:00.120Z 1 ";
  const Outcome outcome =
      RunFake({"--json", "--table", table},
              ToItsEnd(line + "document document 1.png\n" + line + "note document 1.png: none\n" +
                       line + "note warning: 1.png: none\n" + line +
                       "warning 1.png\\x0a: odd\nevent DOC_ON_WINDOW\nevent DOC_REMOVED\n"));
  EXPECT_THAT(outcome.output,
              AllOf(HasSubstr(R"("text":"document document 1.png","document":"document 1.png"})"),
                    HasSubstr(R"("text":"document 1.png: none"})"),
                    HasSubstr(R"("text":"warning: 1.png: none"})"),
                    HasSubstr(R"("text":"warning: 1.png\n: odd","warning":"1.png\n: odd"})")));
  std::ifstream file(table);
  const std::string rows(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 1);
  EXPECT_THAT(rows, AllOf(StartsWith(R"({"file":"document 1.png",)"),
                          HasSubstr(R"("warnings":["1.png\n: odd"])")));
}

TEST(RunCommand, SaysThatLinesOfTheReadersLogAreMissing) {
  const char* const full = "/dev/full";
  if (!std::filesystem::exists(full)) {
    GTEST_SKIP() << "this system has no " << full;
  }
  const std::string session = WriteFile("no-steps.json", R"({"steps": []})");
  const Outcome outcome =
      RunConduit({"run", session, "--set", std::string("LogFileName=").append(full)});
  EXPECT_THAT(outcome.output, HasSubstr("reader  warning: the reader's log /dev/full is not "
                                        "followed, as it is not a regular file\n"));
  EXPECT_THAT(outcome.output, HasSubstr("ERROR   the log file \"/dev/full\" cannot be written: "));
  EXPECT_THAT(outcome.trouble, HasSubstr("warning: lines are missing from the reader's log"));
  EXPECT_EQ(outcome.status, 1);
}

TEST(RunCommand, TakesNoErrorForOneOfAnotherLog) {
  const std::string log = InFolder("followed.log");
  struct Case {
    const char* what;
    std::string error;
    int status;
  };
  const Case cases[] = {
      {"the log that is followed", "the log file \"" + log + "\" cannot be written: full", 1},
      {"a page's file of such a name", "the log file \"a\" cannot be written: b.png: torn", 0},
      {"the same, with the log's name behind", "a.png: " + log + "\" cannot be written: ", 0},
  };
  for (const Case& one : cases) {
    const Outcome outcome =
        RunFake({"--set", "LogFileName=" + log}, ToItsEnd("error " + one.error + "\n"));
    EXPECT_EQ(outcome.status, one.status) << one.what;
    EXPECT_EQ(outcome.trouble.empty(), one.status == 0) << one.what << ": " << outcome.trouble;
  }
}

TEST(RunCommand, DoesNotFollowItsOwnOutput) {
  const std::string output = InFolder("own-output.txt");
  const Outcome outcome =
      RunConduit({"run", "--module", Module("FakeModule"), "--set", "LogFileName=" + output},
                 ToItsEnd("reader line\nevent A\n"), {}, output.c_str());
  EXPECT_EQ(outcome.status, 0);
  std::ifstream file(output);
  EXPECT_THAT(std::string(std::istreambuf_iterator<char>(file), {}),
              HasSubstr("is not followed, as this program writes its own output into it\n"));
}

TEST(RunCommand, GivesProgramsOneObjectALine) {
  const Outcome outcome = RunFake(
      {"--json", "--log", "2"},
      ToItsEnd("begin\nitem NAME 4 41FF\nitem IMAGEVIS 5 424D00\nitem BARCODE_QRCODE 0 42 0 more\n"
               "missing IMAGEIR\nend\nlog 2 trace\nlog 3 detail\nerror \nerror Jam\n"));
  const std::string module = Module("FakeModule");
  EXPECT_EQ(outcome.output, R"({"kind":"run","schema":1,"conduit":")" CONDUIT_VERSION
                            R"(","module":")" +
                                module + "\"}\n" +
                                R"({"kind":"state","text":"Enabled"}
{"kind":"begin"}
{"kind":"item","name":"NAME","itemType":4,"length":2,"value":"A�","valueHex":"41ff","last":true}
{"kind":"item","name":"IMAGEVIS","itemType":5,"length":3,"format":"BMP","sha256":"5ff08c4ccbb15a9bbafcbb08724f46658eec516d9ef8ac695c7b6839b68d2545","last":true}
{"kind":"item","name":"BARCODE_QRCODE","itemType":0,"length":1,"value":"B","feature":"0","last":false}
{"kind":"item","name":"IMAGEIR","itemType":5,"length":12,"missing":true,"last":true}
{"kind":"end"}
{"kind":"log","level":2,"tag":"Fake::Play","message":"trace"}
{"kind":"error","text":"Jam"}
{"kind":"error","text":""}
{"kind":"event","name":"DEVICE_DISCONNECTED"}
{"kind":"state","text":"Terminated"}
{"kind":"stop","reason":"terminated"}
)");
  EXPECT_EQ(outcome.status, 0);
}

TEST(RunCommand, SavesEveryItemUnderANameOfItsOwn) {
  const std::filesystem::path folder = InFolder("saved");
  std::filesystem::remove_all(folder);
  const std::string longName(300, 'L');
  const Outcome outcome = RunFake(
      {"--save", (folder / "new").string()},
      ToItsEnd("item OUTSIDE 4 41\nbegin\nitem ../../A:B\\C 4 41FF0A\nitem IMAGEIR 5 424D00\n"
               "item imageir 5 FFD8FF\nitem IMAGEIR-2 0 00\nitem IMAGEIR 5 00\nmissing GONE\n"
               "item NUL 4\nitem com1 4\nitem " +
               longName + " 4 42\nend\nnulls\nbegin\nitem IMAGEIR 5 424D00\nend\n"));
  EXPECT_EQ(outcome.trouble, "conduit: : \n");  // the null texts
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) {
      std::ifstream file(entry.path(), std::ios::binary);
      files[entry.path().lexically_relative(folder / "new").generic_string()] = {
          std::istreambuf_iterator<char>(file), {}};
    }
  }
  const std::map<std::string, std::string> expected = {
      {"document-00000/OUTSIDE.txt", "A"},
      {"document-00000/unnamed.txt", ""},
      {"document-00001/______A_B_C.txt", "A\xFF\n"},
      {"document-00001/IMAGEIR.bmp", std::string("BM\0", 3)},
      {"document-00001/imageir-2.jpg", "\xFF\xD8\xFF"},
      {"document-00001/IMAGEIR-2-2.bin", std::string(1, '\0')},
      {"document-00001/IMAGEIR-3.bin", std::string(1, '\0')},
      {"document-00001/_NUL.txt", ""},
      {"document-00001/_com1.txt", ""},
      {"document-00001/" + longName.substr(0, 100) + ".txt", "B"},
      {"document-00002/IMAGEIR.bmp", std::string("BM\0", 3)},
  };
  EXPECT_EQ(files, expected);
}

TEST(RunCommand, WritesTheReportHoweverTheRunEnds) {
  struct Case {
    std::string script;
    Interruption interruption;
    const char* outcome;
  };
  const Case cases[] = {
      {ToItsEnd("begin\nend\n"), {}, "The reader has terminated."},
      {"event READY", {&EndRequests().front(), "READY"}, "The run was interrupted."},
      {"refuse\nlog 0 Reader Error: no device\nerror no device\n",
       {},
       "Initialise answered 13: the reader did not start (Reader Error: no device)"},
      {"no memory", {}, "CIM_GetInputModule answered 6"},
  };
  const std::string file = InFolder("report.html");
  for (const Case& one : cases) {
    RunFake({"--report", file}, one.script, one.interruption);
    std::ifstream page(file);
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(page), {}),
                AllOf(HasSubstr(one.outcome), HasSubstr("</html>")));
  }
}

TEST(RunCommand, FailsWhenItsReportIsLost) {
  const char* const full = "/dev/full";
  if (!std::filesystem::exists(full)) {
    GTEST_SKIP() << "this system has no " << full;
  }
  const Outcome outcome = RunFake({"--report", full}, ToItsEnd(""));
  EXPECT_EQ(outcome.trouble, "conduit: cannot write report /dev/full: No space left on device\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST(RunCommand, HandsSessionAndConfigurationToTheModule) {
  const std::string session = WriteFile("sitzung-ä.json", "{}");
  const Outcome outcome =
      RunFake({"--set", "Format=a=b", "--set", "Format=", session, "--on", "DOC_ON_WINDOW=first",
               "--on", "DOC_ON_WINDOW=second", "--on", "OTHER=third", "--log", "3"},
              ToItsEnd("event DOC_ON_WINDOW\nconditions\n"));
  EXPECT_THAT(outcome.output,
              AllOf(HasSubstr("Fake::Fake: " + session + "\n"), HasSubstr("Format = a=b\n"),
                    HasSubstr("Format = \n"),
                    HasSubstr("script  first\nscript  second\nevent   DOC_ON_WINDOW\nstate   2\n"),
                    Not(HasSubstr("third"))));
  EXPECT_THAT(outcome.trouble, AllOf(HasSubstr("warning: no reader event is named OTHER;"),
                                     Not(HasSubstr("named DOC_ON_WINDOW"))));
  EXPECT_EQ(outcome.status, 0);
}

TEST(RunCommand, RefusesTheSignalsThatItIsTold) {
  const std::string script = ToItsEnd("ask BAD_CHARS\nask UNKNOWN_DOCUMENT\n");
  EXPECT_THAT(
      RunFake({"--refuse", "BAD_CHARS"}, script).output,
      AllOf(HasSubstr("? (refused)\nstate   answered 1\n"), HasSubstr("?\nstate   answered 0\n")));
}

TEST(RunCommand, StopsTheModuleBeforeItDestroysIt) {
  for (const EndRequest& request : EndRequests()) {
    const Outcome outcome =
        RunFake({"--log", "3"}, "state Terminated\nbegin\nevent READY", {&request, "READY"});
    EXPECT_THAT(outcome.output,
                HasSubstr("stopped\n  log 3   Fake::~Fake: destroyed\nstop    interrupted\n"))
        << request.name;
    EXPECT_EQ(outcome.status, request.status) << request.name;
  }
}

TEST(RunCommand, EndsAtOnceWhenItIsAskedAgain) {
  const EndRequest& request = EndRequests().front();
  const Outcome outcome = RunFake({}, "event READY\nhang", {&request, "READY", true});
  EXPECT_THAT(outcome.output, Not(HasSubstr("stop ")));
  EXPECT_NE(outcome.status, request.status);
}

TEST(RunCommand, KeepsLinesOfSeveralThreadsApart) {
  std::istringstream lines(RunFake({}, ToItsEnd("storm\n")).output);
  int items = 0;
  for (std::string line; std::getline(lines, line);) {
    for (const char letter : {'a', 'b', 'c', 'd'}) {
      const std::string text(8, letter);
      const std::string expected = text + std::string(30, ' ').append(text);
      items += line == expected ? 1 : 0;
    }
  }
  EXPECT_EQ(items, 800);
}

TEST(RunCommand, SurvivesNullTexts) {
  const Outcome outcome = RunFake({}, ToItsEnd("nulls\n"));
  EXPECT_THAT(outcome.output, HasSubstr("(unnamed)"));
  EXPECT_EQ(outcome.status, 0);
}

TEST(RunCommand, TellsTheModulesFailuresWithoutALog) {
  const Outcome outcome = RunFake({}, ToItsEnd("log 0 it broke\nlog 1 it wondered\n"));
  EXPECT_EQ(outcome.trouble, "conduit: Fake::Play: it broke\n");
  EXPECT_EQ(RunFake({"--log", "0"}, ToItsEnd("log 0 it broke\n")).trouble, "");
}

TEST(RunCommand, TellsWhyTheReaderDidNotStartOnce) {
  const Outcome outcome =
      RunFake({}, "refuse\nlog 0 Reader Error: no device\nerror no device\nstate Error\n");
  EXPECT_EQ(outcome.trouble,
            "conduit: the reader did not start (result 13: the reader or its library refused)\n"
            "  Reader Error: no device\n");
  EXPECT_EQ(outcome.output, "run     FakeModule" MODULE_SUFFIX "\nstate   Error\n");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(
      RunFake({"--json"}, "refuse\nerror no \xff device\n").output,
      HasSubstr(R"({"kind":"failure","message":"the reader did not start","result":13,"reasons":)"
                R"(["no \\xff device"]})"
                "\n"
                R"({"kind":"stop","reason":"failed"})"));
}

TEST(RunCommand, TellsWhatTheModuleThrew) {
  EXPECT_EQ(RunFake({}, "throw").trouble, "conduit: it gave up\n");
  EXPECT_EQ(RunConduit({"describe", Module("FakeModule")}, "throw").trouble,
            "conduit: it gave up\n");
}

TEST(RunCommand, FailsWhenItsOutputIsLost) {
  const char* const full = "/dev/full";
  if (!std::filesystem::exists(full)) {
    GTEST_SKIP() << "this system has no " << full;
  }
  const std::string fake = Module("FakeModule");
  const std::vector<std::string> commands[] = {
      // Without an end of its own: the lost output must stop it.
      {"run", "--module", fake},
      {"run", "--module", fake, "--json"},
      {"run", "--help"},
      {"validate", fake, "--only", "exports"},
      {"validate", "--list"},
      {"describe", fake},
      {"describe", fake, "--json"},
      {"--help"},
      {"--version"},
  };
  for (const std::vector<std::string>& command : commands) {
    const Outcome outcome = RunConduit(command, "event A", {}, full);
    EXPECT_EQ(outcome.trouble,
              "conduit: cannot write to standard output: No space left on device\n");
    EXPECT_EQ(outcome.status, 1) << testing::PrintToString(command);
  }
}

struct Refusal {
  const char* what;
  std::vector<std::string> arguments;
  std::string script;
  int status;
  std::vector<std::string> trouble;
};

TEST(RunCommand, NamesWhatItRefusesAndWhy) {
  const std::string fake = Module("FakeModule");
  const std::string text = WriteFile("text.so", "no library");
  const Refusal refusals[] = {
      {"no command", {}, "", 2, {"subcommand is required"}},
      {"unknown option", {"run", "--wrong"}, "", 2, {"--wrong"}},
      {"setting without =", {"run", "--set", "Format"}, "", 2, {"'Format'", "NAME=VALUE"}},
      {"setting without name", {"run", "--set", "=1"}, "", 2, {"'=1'", "NAME=VALUE"}},
      {"reaction without =", {"run", "--on", "DOC"}, "", 2, {"'DOC'", "EVENT=SCRIPT"}},
      {"unknown signal", {"run", "--refuse", "IMAGEIR"}, "", 2, {"IMAGEIR"}},
      {"log level", {"run", "--log", "4"}, "", 2, {"4"}},
      {"data without JSON", {"run", "--data"}, "", 2, {"--data requires --json"}},
      {"report nowhere",
       {"run", "--module", fake, "--report", "no/run.html"},
       "",
       1,
       {"conduit: cannot write report no/run.html: No such file or directory\n"}},
      {"report on a folder",
       {"run", "--module", fake, "--report", TEST_FOLDER},
       "",
       1,
       {TEST_FOLDER ": it is a folder"}},
      {"report on a session",
       {"run", "--module", fake, "--report", text},
       "",
       1,
       {"text.so: the file exists and is no report"}},
      {"folder in use",
       {"run", "--module", fake, "--save", TEST_FOLDER},
       "",
       1,
       {"conduit: cannot save to " TEST_FOLDER ": the folder is not empty\n"}},
      {"folder within a file",
       {"run", "--module", fake, "--save", text + "/items"},
       "",
       1,
       {"/items: Not a directory"}},
      {"folder on a file",
       {"run", "--module", fake, "--save", text},
       "",
       1,
       {"text.so: it is not a folder"}},
      {"no session", {"run", "no.json", "--module", fake}, "", 1, {"no.json: No such file"}},
      {"no module", {"run", "--module", "no.so"}, "", 1, {"load module no.so: no such file"}},
      {"module folder", {"run", "--module", TEST_FOLDER}, "", 1, {TEST_FOLDER ": it is a folder"}},
      {"text file", {"run", "--module", text}, "", 1, {text + ": " NO_LIBRARY}},
      {"no functions",
       {"run", "--module", Module("NoModule")},
       "",
       1,
       {"NoModule" MODULE_SUFFIX ": it does not export CIM_GetInputModule"}},
      {"no memory", {"run", "--module", fake}, "no memory", 1, {"CIM_GetInputModule answered 6"}},
      {"null module", {"run", "--module", fake}, "no module", 1, {"gave no module"}},
      {"refused values",
       {"run", "--module", fake, "--set", "Level=9", "--set", "Wrong=1"},
       "",
       1,
       {"refuses --set Level=9 (result 6: the value breaks a rule)\n  Level is too high\n",
        "refuses --set Wrong=1 (result 2: no parameter has that name)\n  never heard\n",
        "the module's parameters are: Format, Level, LogFileName\n"}},
      {"refused event",
       {"run", "--module", fake, "--on", "NO_SUCH_EVENT=a"},
       "",
       1,
       {"refuses --on NO_SUCH_EVENT=a (result 3: no such condition)"}},
  };
  for (const Refusal& refusal : refusals) {
    SCOPED_TRACE(refusal.what);
    const Outcome outcome = RunConduit(refusal.arguments, refusal.script);
    EXPECT_EQ(outcome.status, refusal.status);
    for (const std::string& part : refusal.trouble) {
      EXPECT_THAT(outcome.trouble, HasSubstr(part));
    }
  }
}

TEST(RunCommand, ExplainsItself) {
  EXPECT_THAT(RunConduit({"--version"}).output, StartsWith("conduit 1."));
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--help"}, std::vector<std::string>{"run", "--help"}}) {
    const Outcome outcome = RunConduit(arguments);
    EXPECT_THAT(outcome.output, HasSubstr("Examples:"));
    EXPECT_EQ(outcome.status, 0);
  }
}

}  // namespace
