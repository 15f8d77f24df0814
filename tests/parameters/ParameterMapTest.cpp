#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "parameters/ParameterMap.h"
#include "tests/support/Journal.h"

namespace conduit {
namespace {

using testing::ElementsAre;

TEST(ParameterMap, FindsWholeNamesOnly) {
  Journal journal;
  RecordingLogger logger(journal);
  ParameterMap map(&logger, "FullPage");
  BaseString<char> target;
  map.AddStringParameter("BadChars", &target);
  EXPECT_EQ(map.SetValue("BadChars", "*"), 0);
  const char* value = nullptr;
  EXPECT_EQ(map.GetValue("BadChars", &value), 0);
  EXPECT_STREQ(value, "*");
  journal.Take();

  EXPECT_EQ(map.SetValue("badchars", "*"), 2);
  EXPECT_EQ(map.SetValue(nullptr, nullptr), 2);
  EXPECT_EQ(map.GetValue("BadChar", &value), 2);
  EXPECT_STREQ(value, "*") << "a name that finds nothing leaves the value as it was";
  EXPECT_THAT(journal.Take(),
              ElementsAre("log 1 ParameterMap::SetValue: Cannot set value to parameter "
                          "\"badchars\", no such parameter exists",
                          "log 1 ParameterMap::SetValue: Cannot set value to parameter \"\", no "
                          "such parameter exists",
                          "log 1 ParameterMap::GetValue: Cannot get value to parameter "
                          "\"BadChar\", no such parameter exists"));
}

TEST(ParameterMap, ListsInByteOrderOfNames) {
  ParameterMap map(nullptr, "M");
  BaseString<char> text;
  std::int32_t number = 0;
  for (const char* const name : {"b", "", "B", "ab", "a"}) {
    map.AddStringParameter(name, &text);
  }
  map.AddLogLevelParameter(&number);
  std::vector<std::string> names;
  for (std::int32_t index = -1; index <= map.Count(); ++index) {
    const char* name = nullptr;
    const char* value = nullptr;
    map.GetParameterAt(index, &name, &value);
    names.emplace_back(name != nullptr ? name : "-");
    map.GetParameterAt(index, nullptr, &value);
    map.GetParameterAt(index, &name, nullptr);
  }
  EXPECT_THAT(names, ElementsAre("-", "", "B", "LogLevel", "a", "ab", "b", "-"));
}

TEST(ParameterMap, DuplicateNameKeepsBothParametersAlive) {
  Journal journal;
  RecordingLogger logger(journal);
  ParameterMap map(&logger, "M");
  BaseString<char> first;
  BaseString<char> second;
  map.AddStringParameter("Name", &first);
  StringParameter* const shadowed = map.AddStringParameter("Name", &second);
  EXPECT_EQ(map.Count(), 1);
  EXPECT_EQ(map.SetValue("Name", "one"), 0);
  EXPECT_EQ(shadowed->SetValue("two"), 0);
  EXPECT_STREQ(first.buffer, "one");
  EXPECT_STREQ(second.buffer, "two");
}

}  // namespace
}  // namespace conduit
