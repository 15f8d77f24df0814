#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/ImageLimits.h"
#include "virtual_reader/images/PngWriting.h"
#include "virtual_reader/images/TiffPages.h"

namespace conduit {

namespace {

/// Maximum pages of a file: far above a stack of paper, below a file made of directories.
constexpr std::uint32_t MostPages = 5'000;

/// Maximum size of one allocation by libtiff, for a directory's tables or a compressed strip.
constexpr tmsize_t LargestPiece = tmsize_t{256} << 20;

/// Maximum pixels of a strip or a row of tiles, which is decompressed as a whole.
constexpr std::uint64_t MostPixelsAtOnce = 16'000'000;

/// The compressions that scanners use. libtiff's other codecs are for graphics and
/// scientific data, each with another library.
constexpr std::uint16_t Packings[] = {
    COMPRESSION_NONE,      COMPRESSION_CCITTRLE,     COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4,
    COMPRESSION_LZW,       COMPRESSION_JPEG,         COMPRESSION_PACKBITS,  COMPRESSION_DEFLATE,
    COMPRESSION_CCITTRLEW, COMPRESSION_ADOBE_DEFLATE};

/// An open file. Stores libtiff's messages instead of printing them.
class OpenTiff {
 public:
  explicit OpenTiff(const std::filesystem::path& file, std::string_view bytes)
      : file(file), bytes(bytes), size(bytes.size()) {
    if (!file.empty()) {
      // Opening a pipe would block, and a pipe is not seekable.
      std::error_code error;
      const bool regular = std::filesystem::is_regular_file(file, error);
      size = regular ? std::filesystem::file_size(file, error) : 0;
      if (!regular || error) {
        RefuseUnread();
      }
    }
    Open();
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(
        TIFFOpenOptionsAlloc(), &TIFFOpenOptionsFree);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), LargestPiece);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), OnError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), OnWarning, this);
    // "h": header only; "m": no memory mapping, so that every read calls OnRead.
    tiff = TIFFClientOpenExt("", "rhm", this, OnRead, OnWrite, OnSeek, OnClose, OnSize, nullptr,
                             nullptr, options.get());
    if (tiff == nullptr) {
      Refuse();
    }
  }
  ~OpenTiff() { TIFFClose(tiff); }
  OpenTiff(const OpenTiff&) = delete;
  OpenTiff& operator=(const OpenTiff&) = delete;

  TIFF* Get() const { return tiff; }

  /// libtiff follows the directories once and remembers them while the file is closed.
  void Open() {
    endsEarly = false;
    Forget();
    if (!file.empty()) {
      stream.open(file, std::ios::binary);
      if (!stream) {
        RefuseUnread();
      }
    }
  }
  /// Lets others replace or remove the file, which some systems refuse while it is open.
  void Close() { stream.close(); }

  /// Returns whether libtiff reported anything since the last Forget.
  bool HasComplained() const { return message[0] != '\0'; }
  void Forget() {
    failed = false;
    message[0] = '\0';
  }

  bool EndsEarly() const { return endsEarly; }
  std::uint64_t Size() const { return size; }

  [[noreturn]] void Refuse() const {
    if (endsEarly) {
      RefuseShortFile();
    }
    RefuseDamaged(ImageFormat::Tiff, HasComplained() ? message : "it has no such page");
  }

 private:
  [[noreturn]] static void RefuseUnread() {
    throw std::invalid_argument("the file cannot be read");
  }

  static OpenTiff& Of(thandle_t handle) { return *static_cast<OpenTiff*>(handle); }

  static tmsize_t OnRead(thandle_t handle, void* to, tmsize_t length) {
    OpenTiff& self = Of(handle);
    const std::uint64_t there = self.size - std::min(self.at, self.size);
    const auto count = std::min(there, static_cast<std::uint64_t>(length));
    self.endsEarly = self.endsEarly || count < static_cast<std::uint64_t>(length);
    if (self.file.empty()) {
      std::memcpy(to, self.bytes.data() + (count > 0 ? self.at : 0), count);
    } else {
      // A stream throws nothing by default; no exception may pass through libtiff.
      self.stream.clear();
      self.stream.seekg(static_cast<std::streamoff>(self.at));
      if (!self.stream.read(static_cast<char*>(to), static_cast<std::streamsize>(count))) {
        return 0;
      }
    }
    self.at += count;
    return static_cast<tmsize_t>(count);
  }

  static tmsize_t OnWrite(thandle_t /*handle*/, void* /*from*/, tmsize_t /*length*/) { return 0; }

  static toff_t OnSeek(thandle_t handle, toff_t to, int whence) {
    OpenTiff& self = Of(handle);
    const toff_t from = whence == SEEK_CUR ? self.at : whence == SEEK_END ? self.size : 0;
    return self.at = from + to;
  }

  static int OnClose(thandle_t /*handle*/) { return 0; }

  static toff_t OnSize(thandle_t handle) { return Of(handle).size; }

  /// Stores the first error only: it is the cause of the others.
  static int OnError(TIFF* /*tiff*/, void* handle, const char* /*module*/, const char* format,
                     va_list values) {
    OpenTiff& self = Of(handle);
    if (!std::exchange(self.failed, true)) {
      std::vsnprintf(self.message, sizeof self.message, format, values);
    }
    return 1;  // handled
  }

  static int OnWarning(TIFF* /*tiff*/, void* handle, const char* /*module*/, const char* format,
                       va_list values) {
    OpenTiff& self = Of(handle);
    if (!self.HasComplained()) {
      std::vsnprintf(self.message, sizeof self.message, format, values);
    }
    return 1;
  }

  const std::filesystem::path file;  ///< empty: the bytes are in memory
  const std::string_view bytes;
  std::ifstream stream;
  std::uint64_t size = 0;
  std::uint64_t at = 0;
  TIFF* tiff = nullptr;
  bool endsEarly = false;
  bool failed = false;
  char message[200] = {};
};

template <typename Value>
Value Tag(TIFF* tiff, std::uint32_t tag) {
  Value value = {};
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

/// Decodes one page. Uses libtiff's RGBA conversion, which supports every colour space, and
/// stores the samples of a PNG: grey, or red, green, blue.
class Decoding {
 public:
  Decoding(OpenTiff& file, std::uint64_t directory) : file(file), tiff(file.Get()) {
    if (TIFFSetSubDirectory(tiff, directory) == 0) {
      file.Refuse();
    }
    file.Forget();
    const auto across = Tag<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
    const auto down = Tag<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
    CheckSize(across, down);
    width = static_cast<int>(across);
    height = static_cast<int>(down);
    packing = Tag<std::uint16_t>(tiff, TIFFTAG_COMPRESSION);
    if (std::find(std::begin(Packings), std::end(Packings), packing) == std::end(Packings)) {
      throw std::invalid_argument("this TIFF is packed in a way that is not read (compression " +
                                  std::to_string(packing) + ")");
    }
    walk = WalkUpright(width, height, Tag<std::uint16_t>(tiff, TIFFTAG_ORIENTATION));
    ReadResolution();
    ReadSamples();
  }

  std::string Png() const {
    return WritePng({walk, channels, blackAndWhite, samples, perMetre[0], perMetre[1]});
  }

  /// Returns the luminance. Moves the samples out when they already are the luminance.
  PageImage Light() {
    if (channels == 1 && walk.Stays()) {
      return {width, height, std::move(samples)};
    }
    PageImage image = {walk.width, walk.height, {}};
    image.luminance.resize(samples.size() / static_cast<std::size_t>(channels));
    std::uint8_t* to = image.luminance.data();
    for (int y = 0; y < walk.height; ++y) {
      const std::uint8_t* from = samples.data() + (walk.start + y * walk.down) * channels;
      for (int x = 0; x < walk.width; ++x, from += walk.right * channels) {
        *to++ = channels == 1 ? from[0] : LuminanceOf(from[0], from[1], from[2]);
      }
    }
    return image;
  }

 private:
  /// Owns libtiff's conversion of the current page.
  struct Conversion {
    Conversion(OpenTiff& file, TIFF* tiff) {
      // libtiff writes up to 1024 bytes.
      std::array<char, 1024> reason = {};
      constexpr int stopAtErrors = 1;
      if (TIFFRGBAImageBegin(&image, tiff, stopAtErrors, reason.data()) == 0) {
        if (file.EndsEarly() || reason[0] == '\0') {
          file.Refuse();
        }
        RefuseDamaged(ImageFormat::Tiff, reason.data());
      }
      // Gets rows in stored order; the orientation is applied to the whole page later.
      image.orientation = ORIENTATION_TOPLEFT;
      image.req_orientation = ORIENTATION_TOPLEFT;
    }
    ~Conversion() { TIFFRGBAImageEnd(&image); }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    TIFFRGBAImage image = {};
  };

  void ReadResolution() {
    const auto unit = Tag<std::uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT);
    const float metre = unit == RESUNIT_INCH         ? 1 / 0.0254F
                        : unit == RESUNIT_CENTIMETER ? 100.0F
                                                     : 0.0F;
    const auto perMetreOf = [&](std::uint32_t tag) {
      const float value = Tag<float>(tiff, tag) * metre;
      return value >= 1 && value < 1e6F ? static_cast<std::uint32_t>(std::lround(value)) : 0;
    };
    perMetre = {perMetreOf(TIFFTAG_XRESOLUTION), perMetreOf(TIFFTAG_YRESOLUTION)};
    if (walk.onItsSide) {
      std::swap(perMetre[0], perMetre[1]);
    }
  }

  void ReadSamples() {
    Conversion conversion(file, tiff);
    TIFFRGBAImage& image = conversion.image;
    const bool tiled = TIFFIsTiled(tiff) != 0;
    // libtiff's photometric interpretation, which has a default where the file has no tag.
    const bool grey =
        image.photometric == PHOTOMETRIC_MINISWHITE || image.photometric == PHOTOMETRIC_MINISBLACK;
    channels = grey ? 1 : 3;
    blackAndWhite = grey && image.bitspersample == 1 && image.samplesperpixel == 1;
    const bool sharedColours = image.photometric == PHOTOMETRIC_YCBCR;
    file.Forget();
    if (!tiled && image.isContig != 0 && !sharedColours) {
      ReadRows(image);
    } else {
      ReadBands(image, RowsAtOnce(tiled));
    }
  }

  /// Reads row by row, so that a page in one strip, as fax machines write it, needs no more
  /// memory than one in many.
  void ReadRows(TIFFRGBAImage& image) {
    const tmsize_t packed = TIFFScanlineSize(tiff);
    CheckPiece(1, static_cast<std::uint64_t>(packed));
    std::vector<std::uint8_t> row(static_cast<std::size_t>(packed));
    std::vector<std::uint32_t> colours(static_cast<std::size_t>(width));
    TakeMemory();
    for (int y = 0; y < height; ++y) {
      if (TIFFReadScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) != 1) {
        file.Refuse();
      }
      CheckComplaints();
      image.put.contig(&image, colours.data(), 0, 0, static_cast<std::uint32_t>(width), 1, 0, 0,
                       row.data());
      Append(colours);
    }
  }

  /// Reads as many rows at once as a strip or a row of tiles has, so that each is
  /// decompressed once.
  void ReadBands(TIFFRGBAImage& image, std::uint32_t rows) {
    std::vector<std::uint32_t> colours(std::size_t{rows} * static_cast<std::size_t>(width));
    TakeMemory();
    const auto all = static_cast<std::uint32_t>(height);
    for (std::uint32_t y = 0; y < all; y += rows) {
      const std::uint32_t count = std::min(rows, all - y);
      colours.resize(std::size_t{count} * static_cast<std::size_t>(width));
      image.row_offset = static_cast<int>(y);
      if (TIFFRGBAImageGet(&image, colours.data(), static_cast<std::uint32_t>(width), count) == 0) {
        file.Refuse();
      }
      CheckComplaints();
      Append(colours);
    }
  }

  std::uint32_t RowsAtOnce(bool tiled) const {
    auto rows = Tag<std::uint32_t>(tiff, tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP);
    rows = tiled ? rows : std::min(rows, static_cast<std::uint32_t>(height));
    CheckPiece(rows, tiled ? TIFFTileSize64(tiff) : TIFFStripSize64(tiff));
    return std::min(rows, static_cast<std::uint32_t>(height));
  }

  void CheckPiece(std::uint64_t rows, std::uint64_t bytes) const {
    if (rows == 0 || bytes == 0) {
      RefuseDamaged(ImageFormat::Tiff, "its strips or tiles are empty");
    }
    if (rows * static_cast<std::uint64_t>(width) > MostPixelsAtOnce ||
        bytes > 8 * MostPixelsAtOnce) {
      RefuseDamaged(ImageFormat::Tiff, "its strips or tiles are larger than " +
                                           std::to_string(MostPixelsAtOnce / 1'000'000) +
                                           " million pixels");
    }
  }

  /// Throws when libtiff reported that it invented pixels for data that it could not
  /// decompress. Only fax compressions for noisy lines are expected to have such rows.
  void CheckComplaints() const {
    const bool noisy = packing == COMPRESSION_CCITTFAX3 || packing == COMPRESSION_CCITTRLE ||
                       packing == COMPRESSION_CCITTRLEW;
    if (file.EndsEarly() || (file.HasComplained() && !noisy)) {
      file.Refuse();
    }
  }

  void TakeMemory() {
    samples.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                    static_cast<std::size_t>(channels));
  }

  void Append(const std::vector<std::uint32_t>& colours) {
    for (const std::uint32_t colour : colours) {
      // Colours are premultiplied by alpha; a white background fills the rest.
      const std::uint32_t below = 255 - TIFFGetA(colour);
      const auto add = [&](std::uint32_t sample) {
        samples.push_back(static_cast<std::uint8_t>(std::min(sample + below, 255U)));
      };
      add(TIFFGetR(colour));
      if (channels == 3) {
        add(TIFFGetG(colour));
        add(TIFFGetB(colour));
      }
    }
  }

  OpenTiff& file;
  TIFF* tiff;
  int width = 0;
  int height = 0;
  std::uint16_t packing = 0;
  int channels = 1;
  bool blackAndWhite = false;
  UprightWalk walk = {};
  std::array<std::uint32_t, 2> perMetre = {};
  std::vector<std::uint8_t> samples;
};

std::vector<std::uint64_t> ListPages(OpenTiff& file) {
  const std::uint32_t count = TIFFNumberOfDirectories(file.Get());
  if (file.EndsEarly()) {
    RefuseShortFile();
  }
  if (count > MostPages) {
    throw std::invalid_argument("this TIFF has " + std::to_string(count) +
                                " directories, at most " + std::to_string(MostPages) +
                                " are taken");
  }
  std::vector<std::uint64_t> pages;
  TIFF* const tiff = file.Get();
  for (std::uint32_t directory = 0; directory < count; ++directory) {
    // Steps to the next directory: TIFFSetDirectory would follow all before it each time.
    const int read = directory == 0 ? TIFFSetDirectory(tiff, 0) : TIFFReadDirectory(tiff);
    // An unreadable directory counts as a page, so that its failure is reported.
    if (read == 0 || (Tag<std::uint32_t>(tiff, TIFFTAG_SUBFILETYPE) &
                      (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) == 0) {
      pages.push_back(TIFFCurrentDirOffset(tiff));
    }
  }
  if (pages.empty()) {
    RefuseDamaged(ImageFormat::Tiff, "it has no page");
  }
  return pages;
}

}  // namespace

struct TiffPages::Source {
  /// Takes the time of the file first, so that whatever is written later counts as a change.
  explicit Source(const std::filesystem::path& file, std::string_view bytes = {})
      : file(file), written(TimeOf(file)), tiff(file, bytes), pages(ListPages(tiff)) {
    tiff.Close();
  }

  static std::filesystem::file_time_type TimeOf(const std::filesystem::path& file) {
    std::error_code noFile;
    return std::filesystem::last_write_time(file, noFile);
  }

  /// Does `operation` with the decoded page.
  template <typename Operation>
  auto Decode(std::size_t index, const Operation& operation) {
    const std::lock_guard lock(reading);
    tiff.Open();
    const std::unique_ptr<OpenTiff, void (*)(OpenTiff*)> closing(
        &tiff, [](OpenTiff* open) { open->Close(); });
    if (index >= pages.size()) {
      throw std::invalid_argument("the file has changed: it has " + std::to_string(pages.size()) +
                                  (pages.size() == 1 ? " page now" : " pages now"));
    }
    return operation(Decoding(tiff, pages[index]));
  }

  const std::filesystem::path file;
  const std::filesystem::file_time_type written;
  std::mutex reading;
  OpenTiff tiff;                           ///< guarded by reading, and open only meanwhile
  const std::vector<std::uint64_t> pages;  ///< where their directories begin in the file
};

TiffPages::TiffPages(std::unique_ptr<Source> given) : source(std::move(given)) {}

TiffPages::TiffPages(const std::filesystem::path& file)
    : TiffPages(std::make_unique<Source>(file)) {}

TiffPages TiffPages::OfBytes(std::string_view bytes) {
  return TiffPages(std::make_unique<Source>(std::filesystem::path(), bytes));
}

TiffPages::TiffPages(TiffPages&& other) noexcept = default;
TiffPages& TiffPages::operator=(TiffPages&& other) noexcept = default;
TiffPages::~TiffPages() = default;

bool TiffPages::AreOf(const std::filesystem::path& file) const {
  std::error_code noFile;
  return source->file == file && source->tiff.Size() == std::filesystem::file_size(file, noFile) &&
         source->written == Source::TimeOf(file);
}

std::size_t TiffPages::Count() const { return source->pages.size(); }

TiffPage TiffPages::Read(std::size_t index) const {
  return source->Decode(index, [](Decoding decoding) {
    std::string png = decoding.Png();
    return TiffPage{decoding.Light(), std::move(png)};
  });
}

PageImage TiffPages::ReadImage(std::size_t index) const {
  return source->Decode(index, [](Decoding decoding) { return decoding.Light(); });
}

PageImage DecodeTiff(std::string_view bytes) { return TiffPages::OfBytes(bytes).ReadImage(0); }

}  // namespace conduit
