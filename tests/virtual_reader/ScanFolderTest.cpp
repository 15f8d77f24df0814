#include <gmock/gmock.h>

#include <future>

#include "tests/virtual_reader/ReaderSession.h"

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr char Line1[] = "P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<";
constexpr char Line2[] = "L898902C36UTO7408122F1204159ZE184226B<<<<<10";

/// A folder that the reader is to play, without a session file in it.
class ImageFolder : public ReaderSession {
 public:
  ImageFolder() {
    std::filesystem::remove(folder / "session.json");
    Name(folder);
  }

  void CopyPage(const std::string& page, const std::string& name) const {
    std::filesystem::copy_file(std::filesystem::path(PAGES_FOLDER) / page, PathOf(name));
  }
};

TEST(ScanFolder, LaysItsImagesOnTheWindowByName) {
  ImageFolder session;
  session.CopyPage("none.png", "b.PNG");
  session.CopyPage("none.png", "\xC3\xA9.png");
  session.CopyPage("none.png", "a b.png");
  session.CopyPage("qr.jpg", "C.Jpeg");
  // From Windows: with a byte order mark, carriage returns and a line at the end.
  session.Write("a b.TXT", std::string("\xEF\xBB\xBF") + Line1 + "\r\n" + Line2 + "\r\n\r\n");
  session.Write("b.txt.bak", "x");
  session.Write("._b.png", "a system's own note");
  session.Write("lost.txt", "x");
  session.Write("letter.pdf", "x");
  std::filesystem::create_directory(session.PathOf("folder.png"));
  std::vector<std::string> items;
  session.onData = [&](ReaderDataType type, std::int32_t length, const void* data) {
    if (type == ReaderDataType::Codeline) {
      items.emplace_back(static_cast<const char*>(data), static_cast<std::size_t>(length));
    } else if (type == ReaderDataType::ImageVis) {
      items.push_back("image of " + std::to_string(length));
    }
  };
  HaldenReader_EnableLogging(true, 1, -1, session.NameOf("log").c_str());
  session.PlayUntil();
  HaldenReader_EnableLogging(false, 0, 0, nullptr);
  const std::string none =
      "image of " + std::to_string(std::filesystem::file_size(session.PathOf("b.PNG")));
  const std::string jpeg =
      "image of " + std::to_string(std::filesystem::file_size(session.PathOf("C.Jpeg")));
  EXPECT_THAT(session.Read("log"),
              HasSubstr("1 note letter.pdf: not read: its name is not that of"));
  EXPECT_THAT(session.Read("log"), HasSubstr("1 note folder.png: not read: it is a folder"));
  EXPECT_THAT(session.Read("log"), testing::Not(HasSubstr("._b.png")));
  EXPECT_THAT(items, ElementsAre(jpeg, std::string(Line1) + "\n" + Line2, none, none, none));
  EXPECT_THAT(session.Read("log"),
              HasSubstr("1 note lost.txt: not read: there is no image of this name"));
}

/// What the reader says and does of a page, between two that are as they should be.
TEST(ScanFolder, GoesOnAfterABadPage) {
  const std::string png = "\x89PNG\r\n\x1A\n";
  std::ifstream file(PAGES_FOLDER "/none.png", std::ios::binary);
  const std::string page(std::istreambuf_iterator<char>(file), {});
  // A few bytes that claim to be a huge image.
  std::string huge = page;
  huge.replace(16, 8, std::string("\0\0\xEA\x60\0\0\xEA\x60", 8));
  const struct {
    std::string file;
    std::string bytes;
    std::string reason;
  } cases[] = {
      {"b.png", "", "the file is empty"},
      {"b.png", "text", "it is neither a PNG, a JPEG, a TIFF nor a BMP image"},
      {"b.png", png, "the file ends early"},
      {"b.png", page.substr(0, page.size() / 2), "the file ends early"},
      {"b.jpg", "\xFF\xD8\xFF\xD9 \xFF\xDA", ""},
      {"b.tif", std::string("II*\0\xFF\xFF\xFF\xFF", 8), ""},
      {"b.bmp", "BM", ""},
      {"b.png", huge, "the image has 60000 x 60000 pixels"},
  };
  for (const auto& [name, bytes, reason] : cases) {
    ImageFolder session;
    session.CopyPage("none.png", "a.png");
    session.CopyPage("none.png", "c.png");
    session.Write(name, bytes);
    session.onData = [](ReaderDataType, std::int32_t, const void*) {};
    const std::vector<std::string> calls = session.PlayUntil();
    ASSERT_EQ(calls.size(), 14U) << name << ": " << reason;
    EXPECT_THAT(std::vector(calls.begin() + 5, calls.begin() + 9),
                ElementsAre("DOC_ON_WINDOW Enabled",
                            testing::AllOf(testing::StartsWith("error: " + name + ": " + reason),
                                           testing::EndsWith(" Error")),
                            "READER_ERROR_RESOLVED Enabled", "DOC_REMOVED Enabled"));
  }
}

TEST(ScanFolder, DeliversAPageWhoseTextIsWrong) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "the file is empty"},
      {"\r\n\n", "there is no text in the file"},
      {std::string(Line1) + "\n" + (Line2 + 1), "line 2 has 43 characters, a TD3"},
      {"1\n2\n3\n4\n", "4 lines of 1, 1, 1, 1 characters fit no codeline format"},
      {std::string(5000, '<'), "the file has 5000 bytes, at most 4096"},
  };
  for (const auto& [text, reason] : cases) {
    ImageFolder session;
    session.CopyPage("none.png", "a.png");
    session.Write("a.txt", text);
    EXPECT_THAT(
        session.PlayUntil(),
        ElementsAre("DEVICE_CONNECTED Enabled", "DOC_ON_WINDOW Enabled",
                    "START_OF_DOCUMENT_DATA Reading",
                    testing::StartsWith("error: a.txt: " + reason), "READER_ERROR_RESOLVED Reading",
                    testing::StartsWith("item 6 "), "END_OF_DOCUMENT_DATA Enabled",
                    "DOC_REMOVED Enabled", "DEVICE_DISCONNECTED Terminated"));
  }
}

TEST(ScanFolder, HasAReadableImage) {
  for (const char* name : {"a.txt", "a.png"}) {
    ImageFolder session;
    session.Write(name, "x");
    EXPECT_EQ(session.Start(), Code(ReaderResult::SessionUnreadable));
    EXPECT_THAT(session.Calls(),
                ElementsAre(HasSubstr(": the folder has no readable image (.png, .jpg")));
  }
}

/// Whatever has been read ahead by then, and whoever stops it.
TEST(ScanFolder, IsStoppedWhilePagesAreReadAhead) {
  ImageFolder session;
  for (int i = 0; i < 30; ++i) {
    session.CopyPage("rows.png", std::to_string(i) + ".png");
  }
  for (const std::size_t calls : {1U, 2U, 3U, 20U}) {
    for (const bool fromCallback : {false, true}) {
      session.Forget();
      std::promise<void> reached;
      std::size_t events = 0;
      session.onData = [](ReaderDataType, std::int32_t, const void*) {};
      session.onEvent = [&](ReaderEventCode) {
        if (++events == calls) {
          if (fromCallback) {
            HaldenReader_Shutdown();
          }
          reached.set_value();
        }
      };
      ASSERT_EQ(session.Start(), 0);
      reached.get_future().wait();
      HaldenReader_Shutdown();
      EXPECT_THAT(session.Calls(), testing::Not(testing::Contains(HasSubstr("Terminated"))));
      EXPECT_EQ(StateName(), "Not Initialised");
    }
  }
}

/// The decoder compares every three of their ten thousand patterns: it takes hours.
TEST(ScanFolder, IsStoppedWhileAPageHoldsTheDecoder) {
  ImageFolder session;
  session.CopyPage("finder-patterns.png", "a.png");
  session.CopyPage("finder-patterns.png", "b.png");
  ASSERT_EQ(session.Start(), 0);
  session.WaitFor("DEVICE_CONNECTED Enabled");
  HaldenReader_Shutdown();
  EXPECT_THAT(session.Calls(), ElementsAre("DEVICE_CONNECTED Enabled"));
}

}  // namespace
}  // namespace conduit
