#include <gmock/gmock.h>

#include <future>
#include <stdexcept>
#include <thread>

#include "virtual_reader/pages/PageReaders.h"

namespace conduit {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// Some systems take as long as that to start a process.
constexpr std::chrono::milliseconds Time(1500);
constexpr PageBudget Short = {
    .decoding = Time, .searching = Time, .searchingMegapixel = std::chrono::milliseconds(0)};

PageRequest Page(const std::string& bytes) {
  PageRequest request;
  request.bytes = bytes;
  return request;
}

TEST(PageReaders, TellWhatAPageDoesToItsProcessAndKeepWhatWasFound) {
  PageReaders readers(FAKE_PAGE_READER, Short);
  const struct {
    std::string page;
    std::string reason;
  } cases[] = {
      {"crash", "the process that reads pages has ended: "},
      {"hang", "it takes longer than its budget of 1.5 s"},
      {"babble", "the process that reads pages is not understood: "},
      {"sound", ""},
  };
  for (const auto& [page, reason] : cases) {
    const PageReading undecoded = readers.Read(Page(page));
    EXPECT_THAT(undecoded.error, StartsWith(reason)) << page;
    EXPECT_THAT(undecoded.codeline.lines, IsEmpty()) << page;

    const PageReading searched = readers.Read(Page("search and " + page));
    EXPECT_THAT(searched.shortened, StartsWith(reason)) << page;
    EXPECT_THAT(searched.error, IsEmpty()) << page;
    EXPECT_THAT(searched.codeline.lines, ElementsAre("LINE")) << page;
    EXPECT_THAT(searched.barcodes.barcodes,
                ElementsAre(PageBarcode{ReaderDataType::BarcodeQr, "found"}))
        << page;
  }
}

TEST(PageReaders, TakeAnImageThatHoldsTheCheckForOne) {
  PageReaders readers(FAKE_PAGE_READER);
  const auto isReadable = [&readers](const std::string& bytes) {
    return readers.IsReadable(Page(bytes), std::chrono::steady_clock::now() + Time);
  };
  EXPECT_FALSE(isReadable("crash"));
  EXPECT_TRUE(isReadable("hang"));
  EXPECT_TRUE(isReadable("search and hang"));
}

TEST(PageReaders, StopWhateverTheirProcessesDo) {
  PageReaders readers(FAKE_PAGE_READER, {});
  std::promise<void> working;
  std::thread other([&] {
    readers.Read(Page("sound"));
    working.set_value();
    readers.Read(Page("hang"));
  });
  working.get_future().wait();
  readers.Stop();
  other.join();
  EXPECT_THAT(readers.Read(Page("sound")).error, HasSubstr("stopped"));
}

TEST(PageReaders, SayThatTheirProgramIsMissing) {
  PageReaders readers(std::filesystem::absolute("no-such-reader"));
  EXPECT_THAT([&] { readers.Limits(); },
              testing::ThrowsMessage<std::runtime_error>(
                  AllOf(StartsWith("page images cannot be read: "), HasSubstr("no-such-reader"))));
  EXPECT_THAT(readers.Read(Page("sound")).error, HasSubstr("no-such-reader"));
}

}  // namespace
}  // namespace conduit
