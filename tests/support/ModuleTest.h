#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "hosting/LoadedModule.h"
#include "tests/support/Journal.h"
#include "tests/support/ScriptedReader.h"

namespace conduit {

using Lines = std::vector<std::string>;

/// The built module, started, with a scripted reader, a recording host and an empty journal.
class ModuleTest : public testing::Test {
 public:
  ModuleTest(const ModuleTest&) = delete;
  ModuleTest& operator=(const ModuleTest&) = delete;

 protected:
  ModuleTest() {
    reader = {};
    module->SetHost(&host);
    module->Initialise();
    journal.Take();
    reader.onCall = [this](const std::string& call) { journal.Write("reader " + call); };
  }
  ~ModuleTest() override { reader = {}; }

  /// Returns the journal since the last call, without log lines.
  Lines TakeHostCalls() {
    Lines calls;
    for (std::string& line : journal.Take()) {
      if (line.rfind("log ", 0) != 0) {
        calls.push_back(std::move(line));
      }
    }
    return calls;
  }

  ScriptedReader& reader = TheScriptedReader();
  Journal journal;
  RecordingLogger logger{journal};
  RecordingHost host{journal};
  LoadedModule module{MODULE_FILE, &logger};
};

/// Appends the two journal lines of an item from a record.
inline void ExpectItem(Lines& expected, const std::string& name, const std::string& value) {
  expected.push_back(
      "log 2 FullPageInputModule::ProcessStringDataItem: ProcessStringDataItem - "
      "aName " +
      name + "  aValue " + value);
  expected.push_back("SendData " + name + " 4 " + std::to_string(value.size()) + " " + "'" +
                     Escape(value) + "' last");
}

}  // namespace conduit
