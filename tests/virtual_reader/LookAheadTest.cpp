#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <new>
#include <stdexcept>
#include <string>

#include "virtual_reader/LookAhead.h"

namespace conduit {
namespace {

/// Documents that are named by their number.
class NumberedDocuments : public DocumentSource {
 public:
  explicit NumberedDocuments(int count) : count(count) {}

  std::deque<Document> Next() override {
    std::deque<Document> documents;
    for (int i = 0; i < 7 && next < count; ++i) {
      documents.push_back({.name = std::to_string(next++)});
    }
    return documents;
  }

 private:
  const int count;
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
  // In unequal times.
  const auto make = [&made](const Document& document) {
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(document.name) * 7 % 5));
    ++made;
    if (document.name == "3") {
      throw std::runtime_error("three");
    }
    Step step;
    Add(&step, WriteLine{document.name});
    return step;
  };
  LookAhead steps(std::make_unique<NumberedDocuments>(count), make, workers);
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
  class Exhausted : public DocumentSource {
   public:
    std::deque<Document> Next() override {
      if (asked++ > 0) {
        throw std::bad_alloc();
      }
      return {Document()};
    }

   private:
    int asked = 0;
  };
  const auto make = [](const Document& /*document*/) -> Step { throw std::bad_alloc(); };
  LookAhead steps(std::make_unique<Exhausted>(), make, 2);
  const std::optional<MadeStep> unmade = steps.Take();
  ASSERT_TRUE(unmade);
  EXPECT_STREQ(unmade->lost, "the system has no memory left for a step of the session");
  const std::optional<MadeStep> end = steps.Take();
  ASSERT_TRUE(end);
  EXPECT_STREQ(end->lost, "the session ends early: the system has no memory left");
  EXPECT_FALSE(steps.Take());
}

TEST(LookAhead, StopsWhileItWaitsForMoreSteps) {
  class Never : public DocumentSource {
   public:
    std::deque<Document> Next() override { return {}; }
    bool CanGrow() const override { return true; }
  };
  LookAhead steps(
      std::make_unique<Never>(), [](const Document& /*document*/) { return Step(); }, 2);
  std::thread other([&] { steps.RequestStop(); });
  EXPECT_FALSE(steps.Take());
  other.join();
}

}  // namespace
}  // namespace conduit
