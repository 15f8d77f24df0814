#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "RunConduit.h"

using testing::HasSubstr;
using testing::Not;

namespace {

/// The absolute path as the system itself writes it.
std::string SystemPath(const std::string& file) {
  return (std::filesystem::absolute(TEST_FOLDER) / file).make_preferred().string();
}

std::string Contents(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

struct Case {
  std::string what;
  std::vector<std::string> arguments;
  std::string script;
  std::string written;  ///< what is written of the path
  std::string file;     ///< what is looked at beside the output
};

TEST(PathsInOutput, StandAsTheSystemWritesThem) {
  const std::string fake = SystemPath("FakeModule" MODULE_SUFFIX);
  const std::string session = SystemPath("unplayable.txt");
  std::ofstream(session) << "{";
  const std::string page = SystemPath("page.png");
  const std::string missing = SystemPath("missing");
  const std::string report = SystemPath("paths.html");
  const std::string table = SystemPath("paths.csv");
  const std::string delivers = "reader 2024-05-01T09:30:00.120Z 1 document " + page +
                               "\nlog 0 looked at " + page + "\nbegin\nerror damaged: " + page +
                               "\nend\nevent DEVICE_DISCONNECTED\nstate Terminated\n";
  const Case cases[] = {
      {"session", {"run", "--module", fake, session}, delivers, "session " + session, ""},
      {"reader", {"run", "--module", fake}, delivers, "document " + page, ""},
      {"error", {"run", "--module", fake}, delivers, "damaged: " + page, ""},
      {"trouble", {"run", "--module", fake}, delivers, "looked at " + page, ""},
      {"log", {"run", "--module", fake, "--log", "0"}, delivers, "looked at " + page, ""},
      {"report",
       {"run", "--module", fake, "--report", report},
       delivers,
       ">damaged: " + page,
       report},
      {"report's log",
       {"run", "--module", fake, "--report", report},
       delivers,
       "looked at " + page,
       report},
      {"table", {"run", "--module", fake, "--table", table}, delivers, page + ",", table},
      {"refused start",
       {"run", "--module", fake},
       "refuse\nlog 0 no reader at " + page,
       "no reader at " + page,
       ""},
      {"refused value",
       {"run", "--module", fake, "--set", "Level=" + page},
       "",
       "Level=" + page,
       ""},
      {"no report", {"run", "--report", missing + "/a.html"}, "", "write report " + missing, ""},
      {"no session", {"run", missing}, "", "read session " + missing, ""},
      {"what the reader says", {"run", session}, "", "Reader Error: " + session, ""},
      {"no module", {"run", "--module", missing}, "", "load module " + missing, ""},
      {"validate", {"validate", missing}, "", "validate module " + missing, ""},
      {"describe", {"describe", missing}, "", "load module " + missing, ""},
  };
  for (const Case& one : cases) {
    const Outcome outcome = RunConduit(one.arguments, one.script);
    const std::string text =
        outcome.output + outcome.trouble + (one.file.empty() ? "" : Contents(one.file));
    EXPECT_THAT(text, HasSubstr(one.written)) << one.what;
    EXPECT_THAT(text, Not(HasSubstr(R"(\\)"))) << one.what;
  }
}

TEST(PathsInOutput, HaveNoMoreBackslashesInJsonThanItAsksFor) {
  const std::string page = SystemPath("page.png");
  const std::string doubled = std::regex_replace(page, std::regex(R"(\\)"), R"(\\)");
  for (const char* const said : {"log 0 no reader at ", "error no reader at "}) {
    const Outcome outcome =
        RunConduit({"run", "--module", SystemPath("FakeModule" MODULE_SUFFIX), "--json"},
                   std::string("refuse\n").append(said).append(page));
    EXPECT_THAT(outcome.output, HasSubstr("no reader at " + doubled + "\""));
  }
}

}  // namespace
