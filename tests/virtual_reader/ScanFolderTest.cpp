#include <gmock/gmock.h>

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
  EXPECT_THAT(items, ElementsAre(jpeg, std::string(Line1) + "\n" + Line2, none, none, none));
  EXPECT_THAT(session.Read("log"), HasSubstr("warning: lost.txt: there is no image"));
}

TEST(ScanFolder, IsRefusedWithTheFileAndTheReason) {
  const std::string png = "\x89PNG\r\n\x1A\n";
  const struct {
    std::string file;
    std::string bytes;
    std::string reason;
  } cases[] = {
      {"a.txt", "", "a.txt: the file is empty"},
      {"a.txt", "\r\n\n", "a.txt: there is no text in the file"},
      {"a.txt", std::string(Line1) + "\n" + (Line2 + 1), "a.txt: line 2 has 43 characters, a TD3"},
      {"a.txt", "1\n2\n3\n4\n", "a.txt: 4 lines of 1, 1, 1, 1 characters fit no codeline format"},
      {"a.txt", std::string(5000, '<'), "a.txt: the file has 5000 bytes, at most 4096"},
      {"b.png", "text", "b.png: it is neither a PNG, a JPEG, a TIFF nor a BMP"},
      {"b.png", png, "b.png: the file ends early"},
      {"b.jpg", "\xFF\xD8\xFF\xD9 \xFF\xDA", "b.jpg: the file ends early"},
  };
  for (const auto& [file, bytes, reason] : cases) {
    ImageFolder session;
    session.CopyPage("none.png", "a.png");
    session.Write(file, bytes);
    EXPECT_EQ(session.Start(), Code(ReaderResult::SessionWrong)) << reason;
    EXPECT_THAT(session.Calls(),
                ElementsAre(HasSubstr(session.folder.filename().string() + ": " + reason)));
  }
}

/// A few bytes that claim to be a huge image.
TEST(ScanFolder, TakesNoImageOfMorePixelsThanAPage) {
  ImageFolder session;
  session.CopyPage("none.png", "a.png");
  std::fstream image(session.PathOf("a.png"), std::ios::in | std::ios::out | std::ios::binary);
  constexpr std::streamoff sizeInHeader = 16;
  image.seekp(sizeInHeader).write("\0\0\x40\0\0\0\x40\0", 8);
  image.close();
  EXPECT_EQ(session.Start(), Code(ReaderResult::SessionWrong));
  EXPECT_THAT(session.Calls(), ElementsAre(HasSubstr("a.png: the image has 16384 x 16384 pixels")));
}

TEST(ScanFolder, HasAnImage) {
  ImageFolder session;
  session.Write("a.txt", "x");
  EXPECT_EQ(session.Start(), Code(ReaderResult::SessionUnreadable));
  EXPECT_THAT(session.Calls(), ElementsAre(HasSubstr(": the folder has no image (.png, .jpg")));
}

}  // namespace
}  // namespace conduit
