#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "RunConduit.h"
#include "platform/Environment.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr const char* Fake = TEST_FOLDER "/FakeModule" MODULE_SUFFIX;
constexpr const char* End = "event DEVICE_DISCONNECTED\nstate Terminated\n";
constexpr const char* Document = "event DOC_ON_WINDOW\nerror torn\nevent DOC_REMOVED\n";

Outcome RunFake(std::vector<std::string> arguments, const std::string& script,
                const Interruption& interruption = {}) {
  arguments.insert(arguments.begin(), {"run", "--module", Fake});
  return RunConduit(arguments, script + End, interruption);
}

/// What no other test has, for they run beside each other.
std::string OwnName(const std::string& ending) {
  const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
  return std::string(TEST_FOLDER "/FileSafety.") + test->name() + ending;
}

/// A new folder that is empty.
std::filesystem::path EmptyFolder() {
  const std::filesystem::path folder = OwnName("");
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  return folder;
}

std::string Contents(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) {
      files.push_back(entry.path().filename());
    }
  }
  return files;
}

TEST(FileSafety, ALinkStaysAndLeadsToTheNewTable) {
  const std::filesystem::path folder = EmptyFolder();
  const std::filesystem::path link = folder / "latest.csv";
  std::filesystem::create_symlink("november.csv", link);
  for (const char* const round : {"to nothing", "to an earlier table"}) {
    EXPECT_EQ(RunFake({"--table", link}, Document).trouble, "") << round;
    EXPECT_EQ(std::filesystem::read_symlink(link), "november.csv");
    EXPECT_THAT(Contents(folder / "november.csv"), HasSubstr(",torn\r\n"));
    struct stat status = {};
    EXPECT_EQ(stat(link.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(FilesIn(folder).size(), 2U) << round;
  }
}

TEST(FileSafety, NothingIsWrittenThroughWhatAnotherUserHasPut) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "only root makes files of other users";
  }
  constexpr uid_t other = 65534;
  const std::filesystem::path folder = EmptyFolder();
  const std::filesystem::path link = folder / "link.csv";
  std::filesystem::create_symlink("elsewhere", link);
  const std::filesystem::path pipe = folder / "pipe.csv";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0666), 0);
  for (const std::filesystem::path& one : {link, pipe}) {
    ASSERT_EQ(lchown(one.c_str(), other, other), 0);
  }
  EXPECT_THAT(RunFake({"--table", link}, "").trouble, HasSubstr("a symbolic link of another user"));
  EXPECT_THAT(RunFake({"--report", pipe}, "").trouble, HasSubstr("or a pipe of another user"));
  EXPECT_THAT(RunFake({"--save", link.string() + "/"}, "").trouble, HasSubstr("of another user"));
  EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
}

TEST(FileSafety, APipeIsWrittenToAsLongAsSomebodyReads) {
  const std::filesystem::path pipe = EmptyFolder() / "pipe.csv";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(RunFake({"--table", pipe}, "").trouble,
            "conduit: cannot write table " + pipe.string() + ": no program reads from this pipe\n");

  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GT(fcntl(reader, F_SETPIPE_SZ, 4096), 0);
  std::string rows;
  for (int i = 0; i < 500; ++i) {
    rows += Document;
  }
  const EndRequest& request = EndRequests().front();
  const Outcome stalled = RunFake({"--table", pipe}, rows, {&request, "DOC_ON_WINDOW"});
  EXPECT_THAT(stalled.trouble, HasSubstr("its reader took nothing while this program was asked"));
  EXPECT_EQ(stalled.status, 1);
  close(reader);

  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const Outcome heard = RunFake({"--report", "/dev/fd/" + std::to_string(ends[1])}, "");
  EXPECT_EQ(heard.trouble, "");
  char start[16] = {};
  EXPECT_EQ(read(ends[0], start, 15), 15);
  EXPECT_STREQ(start, "<!DOCTYPE html>");
  close(ends[0]);
  close(ends[1]);
}

/// Runs the fake module as a shell does it.
/// @param how  the shell's command, in which "$@" is the program with its arguments
Outcome RunByShell(const std::string& how, const std::vector<std::string>& arguments,
                   const std::string& script) {
  const std::filesystem::path file = OwnName(".script");
  std::ofstream(file) << script << End;
  conduit::SetEnvironment("FAKE_MODULE_SCRIPT", file);
  std::vector<std::string> words = {"-c", how, "sh", CONDUIT, "run", "--module", Fake};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::filesystem::path output = OwnName(".output");
  const std::filesystem::path trouble = OwnName(".trouble");
  StartedProgram program("/bin/sh", words, output, trouble);
  const int status = program.Wait();
  return {status, Contents(output), Contents(trouble)};
}

TEST(FileSafety, AFileThatMayNotGrowIsAnErrorAndLooksUnfinished) {
  const std::filesystem::path folder = EmptyFolder();
  std::string rows;
  for (int i = 0; i < 1000; ++i) {
    rows += Document;
  }
  const std::string picture = "begin\nitem IMAGEVIS 5 89504E470D0A1A0A" + std::string(80000, '0');
  struct Case {
    std::vector<std::string> arguments;
    std::string script;
    std::string trouble;
    std::string left;
  };
  const std::string table = folder / "people.csv";
  const std::string report = folder / "run.html";
  const std::string items = folder / "items";
  const Case cases[] = {
      {{"--table", table},
       rows,
       "table " + table + ": File too large; what was written is kept in ",
       "people.csv."},
      {{"--report", report},
       picture + "\nend\n",
       "report " + report + ": File too large; what ",
       "run.html."},
      {{"--save", items},
       picture + "\nend\n",
       "cannot save to " + items + "/document-00001/IMAGEVIS.png: File too large",
       ""},
      {{}, rows, "cannot write to standard output: File too large", ""},
  };
  for (const Case& one : cases) {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const std::string how = one.arguments.empty() ? "" : " >/dev/null";
    const Outcome outcome =
        RunByShell("ulimit -f 64; exec \"$@\"" + how, one.arguments, one.script);
    EXPECT_THAT(outcome.trouble, HasSubstr(one.trouble));
    EXPECT_EQ(outcome.status, 1) << one.trouble;
    if (one.left.empty()) {
      EXPECT_THAT(FilesIn(folder), IsEmpty()) << one.trouble;
    } else {
      ASSERT_EQ(FilesIn(folder).size(), 1U) << one.trouble;
      EXPECT_THAT(FilesIn(folder).front().string(),
                  AllOf(StartsWith(one.left), testing::EndsWith(".part")));
    }
  }
}

TEST(FileSafety, EachFileThatIsLostIsNamed) {
  const std::filesystem::path folder = EmptyFolder();
  std::string rows;
  for (int i = 0; i < 100; ++i) {
    rows += Document;
  }
  const Outcome outcome = RunByShell(
      "ulimit -f 1; exec \"$@\"",
      {"--report", (folder / "run.html").string(), "--table", (folder / "people.csv").string()},
      rows);
  EXPECT_THAT(outcome.trouble, AllOf(HasSubstr("conduit: cannot write report "),
                                     HasSubstr("conduit: cannot write table ")));
  EXPECT_EQ(outcome.status, 1);
}

TEST(FileSafety, ARunThatFailsBeforeItsFirstRowLeavesTheEarlierTable) {
  const std::filesystem::path folder = EmptyFolder();
  for (const char* const name : {"people.csv", "people.jsonl"}) {
    const std::string table = folder / name;
    RunFake({"--table", table}, Document);
    const std::string earlier = Contents(table);
    EXPECT_THAT(earlier, HasSubstr("torn"));
    EXPECT_EQ(RunFake({"--table", table}, "refuse\n").status, 1);
    EXPECT_EQ(RunFake({"--table", table, (folder / "missing.json").string()}, "").status, 1);
    EXPECT_EQ(Contents(table), earlier);
    RunFake({"--table", table}, "");
    EXPECT_THAT(Contents(table), testing::Not(HasSubstr("torn"))) << "a run without documents";
  }
  EXPECT_EQ(FilesIn(folder).size(), 2U);
}

TEST(FileSafety, ARefusedRunLeavesNoFile) {
  const std::filesystem::path folder = EmptyFolder();
  RunFake({"--report", folder / "run.html", "--table", folder / "no/people.csv"}, "");
  EXPECT_THAT(FilesIn(folder), IsEmpty());
}

TEST(FileSafety, NoFileTakesThePlaceOfAClosedStandardOutput) {
  const std::filesystem::path folder = EmptyFolder();
  const Outcome outcome =
      RunByShell("exec \"$@\" >&-", {"--report", (folder / "run.html").string()}, "");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(Contents(folder / "run.html"), StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(outcome.trouble, HasSubstr("standard output: Bad file descriptor"));
}

}  // namespace
