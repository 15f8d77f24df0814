#include "RunConduit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/Environment.h"

namespace {

std::string Contents(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The running test's own folder: tests run side by side.
std::filesystem::path Folder() {
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  std::filesystem::path folder = TEST_FOLDER;
  folder.append("runs").append(test.test_suite_name()).append(test.name());
  std::filesystem::create_directories(folder);
  return folder;
}

void Interrupt(const StartedProgram& program, const Interruption& interruption,
               const std::filesystem::path& output) {
  constexpr std::chrono::milliseconds moment(20);
  while (Contents(output).find(interruption.after) == std::string::npos && !program.HasEnded()) {
    std::this_thread::sleep_for(moment);
  }
  do {
    program.Ask(*interruption.request);
    std::this_thread::sleep_for(moment);
  } while (interruption.repeated && !program.HasEnded());
}

}  // namespace

Outcome RunConduit(const std::vector<std::string>& arguments, const std::string& script,
                   const Interruption& interruption, const char* outputFile) {
  const std::filesystem::path folder = Folder();
  std::ofstream(folder / "script.txt", std::ios::binary) << script;
  conduit::SetEnvironment("FAKE_MODULE_SCRIPT", folder / "script.txt");
  const std::filesystem::path output = outputFile ? outputFile : folder / "output.txt";
  const std::filesystem::path trouble = folder / "trouble.txt";
  StartedProgram program(CONDUIT, arguments, output, trouble);
  if (interruption.request != nullptr) {
    Interrupt(program, interruption, output);
  }
  const int status = program.Wait();
  return {status, outputFile ? "" : Contents(output), Contents(trouble)};
}
