#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <new>
#include <stdexcept>
#include <string>

#include "virtual_reader/LookAhead.h"

namespace conduit {
namespace {

Step StepWith(const std::string& text) {
  Step step;
  step.emplace_back(std::in_place_type<WriteLine>, WriteLine{text});
  return step;
}

/// Steps that say their number, made in unequal times.
class NumberedSteps : public StepSource {
 public:
  NumberedSteps(int count, std::atomic<int>* made) : count(count), made(made) {}

  std::optional<StepWork> Next() override {
    if (next == count) {
      return {};
    }
    return [number = next++, made = made] {
      std::this_thread::sleep_for(std::chrono::milliseconds(number * 7 % 5));
      ++*made;
      if (number == 3) {
        throw std::runtime_error("three");
      }
      return StepWith(std::to_string(number));
    };
  }

 private:
  const int count;
  std::atomic<int>* const made;
  int next = 0;
};

std::string TextOf(const Step& step) {
  const auto* const line = std::get_if<WriteLine>(&step.front());
  return line != nullptr ? line->text : std::get<RaiseError>(step.front()).text;
}

TEST(LookAhead, HandsStepsOutInTheirOrderAndStaysAFewAhead) {
  constexpr int count = 60;
  constexpr int workers = 4;
  std::atomic<int> made = 0;
  LookAhead steps(std::make_unique<NumberedSteps>(count, &made), workers);
  for (int i = 0; i < count; ++i) {
    const std::optional<MadeStep> taken = steps.Take();
    ASSERT_TRUE(taken);
    EXPECT_EQ(TextOf(taken->step),
              i == 3 ? "a step of the session cannot be played: three" : std::to_string(i));
    EXPECT_LE(made, i + 1 + 3 * workers);
  }
  EXPECT_FALSE(steps.Take());
}

TEST(LookAhead, TellsOfWhatIsLostWithoutMemory) {
  class Exhausted : public StepSource {
   public:
    std::optional<StepWork> Next() override {
      if (asked++ > 0) {
        throw std::bad_alloc();
      }
      return []() -> Step { throw std::bad_alloc(); };
    }

   private:
    int asked = 0;
  };
  LookAhead steps(std::make_unique<Exhausted>(), 2);
  const std::optional<MadeStep> unmade = steps.Take();
  ASSERT_TRUE(unmade);
  EXPECT_STREQ(unmade->lost, "the system has no memory left for a step of the session");
  const std::optional<MadeStep> end = steps.Take();
  ASSERT_TRUE(end);
  EXPECT_STREQ(end->lost, "the session ends early: the system has no memory left");
  EXPECT_FALSE(steps.Take());
}

TEST(LookAhead, StopsWhileItWaitsForMoreSteps) {
  class Never : public StepSource {
   public:
    std::optional<StepWork> Next() override { return StepWork(); }
  };
  LookAhead steps(std::make_unique<Never>(), 2);
  std::thread other([&] { steps.RequestStop(); });
  EXPECT_FALSE(steps.Take());
  other.join();
}

}  // namespace
}  // namespace conduit
