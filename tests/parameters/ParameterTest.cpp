#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "parameters/IntParameter.h"
#include "parameters/StringParameter.h"
#include "tests/support/Journal.h"

namespace conduit {
namespace {

using testing::ElementsAre;

std::string ValueText(Parameter& parameter) {
  const char* value = nullptr;
  EXPECT_EQ(parameter.GetValue(&value), 0);
  return value;
}

class ParameterTest : public testing::Test {
 protected:
  Journal journal;
  RecordingLogger logger{journal};
};

TEST_F(ParameterTest, BaseKeepsAnyText) {
  Parameter parameter("Name", nullptr, &logger);
  EXPECT_EQ(ValueText(parameter), "");
  EXPECT_EQ(parameter.SetValue("text"), 0);
  EXPECT_EQ(parameter.ValidateCurrent(), 0);
  EXPECT_EQ(ValueText(parameter), "text");
  EXPECT_EQ(parameter.SetValue(nullptr), 0);
  EXPECT_EQ(ValueText(parameter), "");
  EXPECT_THAT(journal.Take(), ElementsAre());
}

struct IntCase {
  const char* text;
  std::int32_t result;
  std::int32_t target;
  const char* line;
};

TEST_F(ParameterTest, IntegerAcceptsDecimalTextInItsRange) {
  const IntCase cases[] = {
      {"3", 0, 3, "log 3 NumericParameter<int>::SetValue: FullPage:LogLevel = 3"},
      {"7", 6, 1,
       "log 0 NumericParameter<int>::Validate: Invalid value for FullPage:LogLevel - value 7 is "
       "not between the range 0 and 5"},
      {"-1", 6, 1,
       "log 0 NumericParameter<int>::Validate: Invalid value for FullPage:LogLevel - value -1 is "
       "not between the range 0 and 5"},
      {" +4", 0, 4, "log 3 NumericParameter<int>::SetValue: FullPage:LogLevel = 4"},
      {"abc", 0, 0, nullptr},
      {"5 ", 0, 0, nullptr},
      {"2.0", 0, 0, nullptr},
      {"", 0, 0, nullptr},
      {"   ", 0, 0, nullptr},
      {"-", 0, 0, nullptr},
      {"  +", 0, 0, nullptr},
      {"\t3", 0, 0, nullptr},
      {"+-3", 0, 0, nullptr},
      {"0003", 0, 3, nullptr},
  };
  for (const IntCase& row : cases) {
    SCOPED_TRACE(row.text);
    std::int32_t target = 1;
    IntParameter parameter("LogLevel", "FullPage:LogLevel", &logger, &target);
    parameter.mustBeInRange = true;
    parameter.rangeHigh = 5;
    EXPECT_EQ(parameter.SetValue(row.text), row.result);
    EXPECT_EQ(target, row.target);
    EXPECT_EQ(ValueText(parameter), row.result == 0 ? row.text : "");
    const auto lines = journal.Take();
    ASSERT_EQ(lines.size(), 1U);
    if (row.line != nullptr) {
      EXPECT_EQ(lines[0], row.line);
    }
  }
}

TEST_F(ParameterTest, IntegerFallsBackWithoutANumber) {
  std::int32_t target = 1;
  IntParameter parameter("N", "M:N", nullptr, &target);
  parameter.fallback = 42;
  EXPECT_EQ(parameter.SetValue(nullptr), 0);
  EXPECT_EQ(target, 42);
  EXPECT_EQ(ValueText(parameter), "");
}

struct RuleCase {
  std::function<void(IntParameter&)> rule;
  std::int32_t accepted;
  std::int32_t refused;
  const char* message;
};

TEST_F(ParameterTest, EachIntegerRuleRefusesWithItsOwnMessage) {
  const RuleCase cases[] = {
      {[](auto& p) { p.mustEqual = true, p.equalValue = 7; }, 7, 8,
       " - value must be equal to 7, got 8"},
      {[](auto& p) { p.mustNotEqual = true, p.notEqualValue = 7; }, 8, 7,
       " - value must be not equal to 7, got 7"},
      {[](auto& p) { p.mustBeLess = true, p.lessValue = 10; }, 9, 10,
       " - value must be less than 10 (Can be equal: False), got 10"},
      {[](auto& p) { p.mustBeLess = true, p.lessValue = 10, p.lessCanBeEqual = true; }, 10, 11,
       " - value must be less than 10 (Can be equal: True), got 11"},
      {[](auto& p) { p.mustBeGreater = true, p.greaterValue = -10; }, -9, -10,
       " - value must be greater than -10 (Can be equal: False), got -10"},
      {[](auto& p) { p.mustBeGreater = p.greaterCanBeEqual = true, p.greaterValue = -10; }, -10,
       -11, " - value must be greater than -10 (Can be equal: True), got -11"},
      {[](auto& p) { p.mustBeInRange = true, p.rangeLow = 2, p.rangeHigh = 3; }, 2, 4,
       " - value 4 is not between the range 2 and 3"},
      // Of several broken rules, the first one is logged.
      {[](auto& p) { p.mustEqual = p.mustNotEqual = true, p.notEqualValue = 5; }, 0, 5,
       " - value must be equal to 0, got 5"},
      {[](auto& p) { p.mustNotEqual = p.mustBeLess = true, p.notEqualValue = 5; }, -1, 5,
       " - value must be not equal to 5, got 5"},
      {[](auto& p) { p.mustBeGreater = p.mustBeInRange = true, p.rangeHigh = 9; }, 1, -1,
       " - value must be greater than 0 (Can be equal: False), got -1"},
  };
  for (const RuleCase& row : cases) {
    SCOPED_TRACE(row.message);
    std::int32_t target = row.refused;
    IntParameter parameter("N", "M:N", &logger, &target);
    row.rule(parameter);
    EXPECT_EQ(parameter.ValidateCurrent(), 6);
    EXPECT_THAT(journal.Take(), ElementsAre(std::string("log 0 NumericParameter<int>::Validate: "
                                                        "Invalid value for M:N") +
                                            row.message));
    EXPECT_EQ(parameter.Validate(row.accepted), 0);
    EXPECT_THAT(journal.Take(), ElementsAre());
  }
  // No number satisfies both rules.
  std::int32_t target = 0;
  IntParameter parameter("N", "M:N", &logger, &target);
  parameter.mustBeLess = parameter.mustBeGreater = true;
  EXPECT_EQ(parameter.Validate(0), 6);
  EXPECT_THAT(journal.Take(), ElementsAre(testing::HasSubstr("must be less than 0")));
}

TEST_F(ParameterTest, RefusedTextKeepsThePreviousOne) {
  BaseString<char> target = "before";
  StringParameter parameter("LogFileName", "FullPage:LogFileName", &logger, &target);
  parameter.required = true;
  EXPECT_EQ(parameter.SetValue("new"), 0);
  EXPECT_THAT(journal.Take(),
              ElementsAre("log 3 StringParameter::SetValue: FullPage:LogFileName = new"));
  for (const char* const missing : {"", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(parameter.SetValue(missing), 5);
    EXPECT_THAT(journal.Take(), ElementsAre("log 0 StringParameter::Validate: Invalid value for "
                                            "FullPage:LogFileName - parameter has no value"));
  }
  EXPECT_STREQ(target.buffer, "new");
  EXPECT_EQ(ValueText(parameter), "new");
  // The text that GetValue returns may be set again.
  const char* value = nullptr;
  parameter.GetValue(&value);
  EXPECT_EQ(parameter.SetValue(value), 0);
  EXPECT_EQ(ValueText(parameter), "new");
  target = "";
  EXPECT_EQ(parameter.ValidateCurrent(), 5);
}

struct TextCase {
  std::function<void(StringParameter&)> rule;
  const char* text;
  const char* message;  ///< null when the text is accepted
};

TEST_F(ParameterTest, EachTextRuleRefusesWithItsOwnMessage) {
  const auto start = [](StringParameter& p) { p.mustStartWith = true, p.startText = "AB"; };
  const auto anyStart = [](StringParameter& p) { p.mustStartWith = true; };
  const auto variable = [](StringParameter& p) { p.variableSyntax = true; };
  const auto exempt = [](StringParameter& p) { p.variableSyntax = p.variableSyntaxExempt = true; };
  const auto date = [](StringParameter& p) { p.dateTimeFormat = true; };
  const TextCase cases[] = {
      {start, "ABC", nullptr},
      {start, "XABC", " - parameter value \"XABC\" must start with the value \"AB\""},
      {start, "", " - parameter value \"\" must start with the value \"AB\""},
      {anyStart, "", nullptr},
      {variable, "$x", nullptr},
      {variable, "", nullptr},
      {variable, "x$", " - parameter value \"x$\" does not use variable name syntax"},
      {exempt, "x$", nullptr},
      {[=](auto& p) { start(p), variable(p), date(p); }, "%Q",
       " - parameter value \"%Q\" must start with the value \"AB\""},
      {[=](auto& p) { variable(p), date(p); }, "%Q",
       " - parameter value \"%Q\" does not use variable name syntax"},
      {date, "", nullptr},
      {date, "%Y%m%d", nullptr},
      {date, "%d 100%%", nullptr},
      {date, "%Q", " - parameter value \"%Q\" does failed date/time validation"},
      {date, "%Y %", " - parameter value \"%Y %\" does failed date/time validation"},
  };
  for (const TextCase& row : cases) {
    SCOPED_TRACE(row.text);
    BaseString<char> target;
    StringParameter parameter("N", "M:N", &logger, &target);
    row.rule(parameter);
    EXPECT_EQ(parameter.Validate(row.text), row.message != nullptr ? 6 : 0);
    if (row.message != nullptr) {
      EXPECT_THAT(
          journal.Take(),
          ElementsAre(std::string("log 0 StringParameter::Validate: Invalid value for M:N") +
                      row.message));
    }
  }
}

/// Inverts the rules of its base: accepts what the base refuses.
template <class Base, class Candidate>
class Contrary final : public Base {
 public:
  using Base::Base;
  std::int32_t Validate(Candidate candidate) override {
    return Base::Validate(candidate) == 0 ? 6 : 0;
  }
};

TEST_F(ParameterTest, DerivedClassOverridesTheRules) {
  BaseString<char> text = "before";
  Contrary<StringParameter, const BaseString<char>&> wanted("N", "M:N", nullptr, &text);
  wanted.required = true;
  EXPECT_EQ(wanted.SetValue("x"), 6);
  EXPECT_EQ(wanted.SetValue(""), 0);
  EXPECT_STREQ(text.buffer, "");
  std::int32_t number = 1;
  Contrary<IntParameter, std::int32_t> outside("N", "M:N", nullptr, &number);
  outside.mustBeInRange = true;
  EXPECT_EQ(outside.SetValue("0"), 6);
  EXPECT_EQ(outside.SetValue("9"), 0);
  EXPECT_EQ(number, 9);
}

}  // namespace
}  // namespace conduit
