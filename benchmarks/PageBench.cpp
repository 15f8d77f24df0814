// Makes the decoder's texts UTF-8.
#define ZX_USE_UTF8 1
#include <ZXing/BitMatrix.h>
#include <ZXing/MultiFormatWriter.h>
#include <ZXing/ReadBarcode.h>
#if __has_include(<ZXing/ReaderOptions.h>)
#include <ZXing/ReaderOptions.h>
#else
namespace ZXing {
using ReaderOptions = DecodeHints;
}
#endif

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include "virtual_reader/InputFile.h"
#include "virtual_reader/barcodes/PageSearch.h"
#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/images/ImageFormat.h"

namespace conduit {
namespace {

using ZXing::BarcodeFormat;

constexpr struct {
  BarcodeFormat format;
  const char* name;
  bool square;  ///< a matrix symbol, drawn at its own proportions
} Formats[] = {
    {BarcodeFormat::Code39, "BARCODE_1D_3_OF_9", false},
    {BarcodeFormat::Code128, "BARCODE_1D_128", false},
    {BarcodeFormat::ITF, "BARCODE_1D_INTERLEAVED_2_OF_5", false},
    {BarcodeFormat::PDF417, "BARCODE_PDF417", false},
    {BarcodeFormat::Aztec, "BARCODE_AZTECCODE", true},
    {BarcodeFormat::QRCode, "BARCODE_QRCODE", true},
    {BarcodeFormat::DataMatrix, "BARCODE_DATAMATRIX", true},
};

std::string NameOf(BarcodeFormat format) {
  return std::find_if(std::begin(Formats), std::end(Formats),
                      [format](const auto& row) { return row.format == format; })
      ->name;
}

/// A page and the name and content of each symbol on it.
struct Page {
  PageImage image;
  std::vector<std::string> texts;
};

std::string Line(const std::string& name, const std::string& bytes) {
  std::string line = name + " ";
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    char code[8];
    std::snprintf(code, sizeof code, byte < 32 || byte > 126 || byte == '\\' ? "\\x%02X" : "%c",
                  byte);
    line += code;
  }
  return line;
}

std::vector<std::string> Searched(const Page& page) {
  std::vector<std::string> lines;
  for (const PageBarcode& barcode : SearchPage(page.image).barcodes) {
    lines.push_back(Line(BarcodeName(barcode.type), barcode.data));
  }
  return lines;
}

/// Runs the decoder alone: one call with its best options.
std::vector<std::string> Alone(const Page& page, ZXing::BarcodeFormats formats) {
  const PageImage& image = page.image;
  const ZXing::ImageView view(image.luminance.data(), image.width, image.height,
                              ZXing::ImageFormat::Lum);
  const auto hints = ZXing::ReaderOptions()
                         .setFormats(formats)
                         .setTryHarder(true)
                         .setTryRotate(true)
                         .setTryDownscale(false);  // with it, linear formats crash
  std::vector<std::string> lines;
  for (const ZXing::Result& result : ZXing::ReadBarcodes(view, hints)) {
    if (result.isValid()) {
      lines.push_back(
          Line(NameOf(result.format()), {result.bytes().begin(), result.bytes().end()}));
    }
  }
  return lines;
}

/// Counts pages by comparing found symbols with drawn ones.
struct Count {
  int exact = 0;
  int missed = 0;
  int wrong = 0;

  void Add(std::vector<std::string> wanted, std::vector<std::string> got) {
    std::sort(wanted.begin(), wanted.end());
    std::sort(got.begin(), got.end());
    exact += wanted == got ? 1 : 0;
    missed += std::includes(got.begin(), got.end(), wanted.begin(), wanted.end()) ? 0 : 1;
    wrong += std::includes(wanted.begin(), wanted.end(), got.begin(), got.end()) ? 0 : 1;
  }
};

class Drawing {
 public:
  Drawing(int width, int height, unsigned seed)
      : random(seed),
        page{{width, height, std::vector<std::uint8_t>(Area(width, height), 235)}, {}} {}

  /// Draws lines of strokes that resemble letters.
  void DrawText() {
    for (int y = 40; y + 40 < page.image.height; y += 48) {
      for (int x = 40; x + 24 < page.image.width; x += 22) {
        const int shape = Number(0, 8);
        if (shape == 0) {
          continue;  // between words
        }
        if (shape % 3 != 0) {
          Fill(x, y, 4, 28);
        }
        const int slant = Number(-1, 1);
        for (int step = 0; step < 14; ++step) {
          Fill(x + 7 + slant * (step - 7) / 2, y + 2 * step, 4, 2);
        }
        Fill(x, y + 4 * shape - 4, 14, 4);
      }
    }
  }

  void DrawSymbol(BarcodeFormat format, bool inverted) {
    constexpr int module = 3;
    std::string text;
    const bool digits = format == BarcodeFormat::ITF;
    for (int i = digits ? 14 : 18; i > 0; --i) {
      text.push_back(static_cast<char>(digits ? '0' + Number(0, 9) : 'A' + Number(0, 25)));
    }
    const bool square = std::any_of(std::begin(Formats), std::end(Formats), [&](const auto& row) {
      return row.format == format && row.square;
    });
    const ZXing::BitMatrix symbol = ZXing::MultiFormatWriter(format).setMargin(0).encode(
        text, square ? 0 : 1, square || format == BarcodeFormat::PDF417 ? 0 : 30);
    const int width = symbol.width() * module;
    const int height = symbol.height() * module;
    const int margin = 12 * module;
    const int left = Number(margin, page.image.width - width - margin);
    const int top = Number(margin, page.image.height - height - margin);
    Fill(left - margin, top - margin, width + 2 * margin, height + 2 * margin, inverted ? 30 : 235);
    for (int y = 0; y < symbol.height(); ++y) {
      for (int x = 0; x < symbol.width(); ++x) {
        Fill(left + x * module, top + y * module, module, module,
             symbol.get(x, y) != inverted ? 30 : 235);
      }
    }
    page.texts.push_back(Line(NameOf(format), text));
  }

  Page Take() {
    std::normal_distribution<float> grain(0, 6);
    for (std::uint8_t& light : page.image.luminance) {
      light = static_cast<std::uint8_t>(
          std::clamp(static_cast<float>(light) + grain(random), 0.0F, 255.0F));
    }
    return std::move(page);
  }

 private:
  static std::size_t Area(int width, int height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  }
  int Number(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random);
  }
  void Fill(int left, int top, int width, int height, std::uint8_t light = 30) {
    for (int y = top; y < top + height; ++y) {
      std::fill_n(
          page.image.luminance.begin() + static_cast<std::ptrdiff_t>(y) * page.image.width + left,
          width, light);
    }
  }

  std::mt19937 random;
  Page page;
};

constexpr struct {
  const char* name;
  BarcodeFormat format;
  bool text;
  bool inverted;
} Kinds[] = {
    {"blank", BarcodeFormat::None, false, false},
    {"text", BarcodeFormat::None, true, false},
    {"PDF417", BarcodeFormat::PDF417, true, false},
    {"QR", BarcodeFormat::QRCode, true, false},
    {"Aztec", BarcodeFormat::Aztec, true, false},
    {"Data Matrix", BarcodeFormat::DataMatrix, true, false},
    {"Code 128", BarcodeFormat::Code128, true, false},
    {"Code 39", BarcodeFormat::Code39, true, false},
    {"Interleaved 2 of 5", BarcodeFormat::ITF, true, false},
    {"QR, light on dark", BarcodeFormat::QRCode, true, true},
};

constexpr struct {
  const char* name;
  int width;
  int height;
} Sizes[] = {{"ID-1", 1012, 638}, {"A4", 2480, 3508}};

ZXing::BarcodeFormats AllFormats() {
  ZXing::BarcodeFormats all;
  for (const auto& row : Formats) {
    all |= row.format;
  }
  return all;
}

template <typename Work>
double Milliseconds(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

/// Does the work for every index below `count` on several threads.
template <typename Work>
void ForEach(std::size_t count, unsigned threads, Work&& work) {
  std::atomic<std::size_t> next = 0;
  std::vector<std::thread> workers;
  for (unsigned thread = 0; thread < threads; ++thread) {
    workers.emplace_back([&] {
      for (std::size_t index; (index = next++) < count;) {
        work(index);
      }
    });
  }
  for (std::thread& worker : workers) {
    worker.join();
  }
}

std::string SpeedTable(bool quick) {
  const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
  std::ostringstream table;
  table
      << "| page at 300 dpi | decoder alone | search | search ÷ decoder | exact: decoder | search "
         "| pages, "
      << cores << " threads ÷ one |\n|---|---:|---:|---:|---:|---:|---:|\n";
  for (const auto& size : Sizes) {
    const bool large = size.width > Sizes[0].width;
    const int count = quick ? (large ? 1 : 2) : large ? 8 : 24;
    for (const auto& kind : Kinds) {
      std::vector<Page> pages;
      for (int number = 0; number < count; ++number) {
        Drawing drawing(size.width, size.height, static_cast<unsigned>(number));
        if (kind.text) {
          drawing.DrawText();
        }
        if (kind.format != BarcodeFormat::None) {
          drawing.DrawSymbol(kind.format, kind.inverted);
        }
        pages.push_back(drawing.Take());
      }
      // Alternates page by page, so that both get the quiet moments of the machine.
      double alone = 0;
      double searched = 0;
      Count countAlone;
      Count countSearched;
      for (const Page& page : pages) {
        std::vector<std::string> got;
        alone += Milliseconds([&] { got = Alone(page, AllFormats()); });
        countAlone.Add(page.texts, got);
        searched += Milliseconds([&] { got = Searched(page); });
        countSearched.Add(page.texts, got);
      }
      const double together = Milliseconds([&] {
        ForEach(pages.size(), cores, [&](std::size_t index) { SearchPage(pages[index].image); });
      });
      char row[256];
      std::snprintf(row, sizeof row,
                    "| %s, %s | %.1f ms | %.1f ms | %.2f | %d of %d | %d of %d | %.2f |\n",
                    size.name, kind.name, alone / count, searched / count, searched / alone,
                    countAlone.exact, count, countSearched.exact, count, searched / together);
      table << row;
    }
  }
  return table.str();
}

/// Counts the symbols found on the pages of a folder, NAME-07.png, whose expected symbols are
/// in NAME-07.txt.
std::string FolderTable(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (IsImageName(entry.path())) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  std::map<std::string, std::pair<Count, Count>> kinds;
  std::map<std::string, int> pages;
  for (const auto& file : files) {
    Page page = {DecodeImage(ReadInputFile(file, std::uintmax_t{1} << 30)), {}};
    ZXing::BarcodeFormats formats;
    std::ifstream texts(std::filesystem::path(file).replace_extension(".txt"));
    for (std::string line; std::getline(texts, line);) {
      page.texts.push_back(line);
      for (const auto& row : Formats) {
        if (line.starts_with(std::string(row.name) + " ")) {
          formats |= row.format;
        }
      }
    }
    const std::string name = file.stem().string();
    const std::string kind = name.substr(0, name.rfind('-'));
    ++pages[kind];
    kinds[kind].first.Add(page.texts, Searched(page));
    kinds[kind].second.Add(page.texts, Alone(page, formats.empty() ? AllFormats() : formats));
  }
  std::ostringstream table;
  table << "| kind | pages | search: exact | missed | wrong | decoder: exact | missed | wrong |\n"
           "|---|---:|---:|---:|---:|---:|---:|---:|\n";
  for (const auto& [kind, counts] : kinds) {
    const auto& [search, alone] = counts;
    table << "| " << kind << " | " << pages[kind] << " | " << search.exact << " | " << search.missed
          << " | " << search.wrong << " | " << alone.exact << " | " << alone.missed << " | "
          << alone.wrong << " |\n";
  }
  return table.str();
}

int Start(int count, char** arguments) {
  CLI::App app(
      "Measures the search for barcodes on pages against the decoder alone on the same pages.\n\n"
      "Examples:\n  page_bench\n  page_bench --quick\n  page_bench --output pages.md\n"
      "  page_bench --pages FOLDER   counts what is found on drawn pages\n"
      "                              (tests/virtual_reader/pages/draw-pages)");
  bool quick = false;
  std::string output;
  std::string folder;
  app.add_flag("--quick", quick, "Few pages: the ratios are rough");
  app.add_option("--output", output, "Also write the table to this file");
  app.add_option("--pages", folder, "A folder of pages with their texts")
      ->check(CLI::ExistingDirectory);
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  const std::string table = folder.empty() ? SpeedTable(quick) : FolderTable(folder);
  std::cout << table;
  if (!output.empty() && !(std::ofstream(output) << table)) {
    throw std::runtime_error("cannot write " + output);
  }
  return 0;
}

}  // namespace
}  // namespace conduit

int main(int count, char** arguments) {
  try {
    return conduit::Start(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "page_bench: %s\n", error.what());
    return 1;
  }
}
