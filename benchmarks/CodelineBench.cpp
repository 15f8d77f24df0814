// Measures accuracy and time of the codeline search on drawn pages with machine-readable
// zones (MRZ), by kind of distortion, in comparison with Tesseract on the located MRZ lines.
//
//   codeline_bench FOLDER    a folder written by draw-pages
#include <leptonica/allheaders.h>
#include <tesseract/baseapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "virtual_reader/images/ImageDecoding.h"
#include "virtual_reader/mrz/CodelineSearch.h"
#include "virtual_reader/mrz/LineStrip.h"
#include "virtual_reader/mrz/MrzCandidates.h"

namespace conduit {
namespace {

struct DrawnPage {
  std::string file;
  std::string kind;
  std::string lines;  ///< joined by spaces
};

struct Tally {
  int exact = 0;
  int refused = 0;
  int wrong = 0;
  double milliseconds = 0;

  void Count(const std::string& read, const std::string& drawn) {
    if (read == drawn) {
      ++exact;
    } else if (read.empty()) {
      ++refused;
    } else {
      ++wrong;
    }
  }
};

std::vector<DrawnPage> PagesOf(const std::filesystem::path& folder) {
  std::ifstream manifest(folder / "manifest.tsv");
  std::vector<DrawnPage> pages;
  for (std::string row; std::getline(manifest, row);) {
    std::istringstream columns(row);
    DrawnPage page;
    std::string format;
    std::string mayBeRefused;
    std::getline(columns, page.file, '\t');
    std::getline(columns, format, '\t');
    std::getline(columns, page.kind, '\t');
    std::getline(columns, mayBeRefused, '\t');
    std::getline(columns, page.lines);
    for (std::size_t at = 0; (at = page.lines.find("\\n", at)) != std::string::npos;) {
      page.lines.replace(at, 2, " ");
    }
    pages.push_back(std::move(page));
  }
  if (pages.empty()) {
    throw std::runtime_error(folder.string() + " has no manifest.tsv: draw-pages writes it");
  }
  return pages;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string joined;
  for (const std::string& line : lines) {
    joined += (joined.empty() ? "" : " ") + line;
  }
  return joined;
}

/// Runs an operation and adds its duration.
template <typename Operation>
auto Timed(double* milliseconds, const Operation& operation) {
  const auto start = std::chrono::steady_clock::now();
  auto result = operation();
  *milliseconds +=
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  return result;
}

/// Tesseract with its English model, restricted to the characters of an MRZ.
class Tesseract {
 public:
  Tesseract() {
    if (api.Init(nullptr, "eng") != 0) {
      throw std::runtime_error("Tesseract has no English model: scripts/setup bench");
    }
    api.SetVariable("tessedit_char_whitelist", "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789<");
    api.SetVariable("load_system_dawg", "0");
    api.SetVariable("load_freq_dawg", "0");
    api.SetPageSegMode(tesseract::PSM_SINGLE_BLOCK);
  }
  Tesseract(const Tesseract&) = delete;
  Tesseract& operator=(const Tesseract&) = delete;
  ~Tesseract() { api.End(); }

  /// Recognises the likeliest candidate after rectification, in both orientations; returns
  /// the result of higher confidence.
  std::string Read(const PageImage& page, double* milliseconds) {
    const std::vector<MrzCandidate> candidates = FindMrzCandidates(page);
    if (candidates.empty()) {
      return "";
    }
    PageImage upright = LinesOf(page, candidates.front());
    PageImage onItsHead = upright;
    std::reverse(onItsHead.luminance.begin(), onItsHead.luminance.end());
    double upTime = 0;
    double headTime = 0;
    int upSure = 0;
    int headSure = 0;
    const std::string up = Timed(&upTime, [&] { return ReadBlock(upright, &upSure); });
    const std::string head = Timed(&headTime, [&] { return ReadBlock(onItsHead, &headSure); });
    *milliseconds += upSure >= headSure ? upTime : headTime;
    return upSure >= headSure ? up : head;
  }

 private:
  static PageImage LinesOf(const PageImage& page, const MrzCandidate& candidate) {
    int columns = 0;
    for (const TextLine& line : candidate) {
      columns = std::max(columns, line.columns);
    }
    PageImage lines = {};
    for (const TextLine& line : candidate) {
      const PageImage strip = Rectify(page, line, columns, 0).image;
      lines.width = strip.width;
      lines.height += strip.height;
      lines.luminance.insert(lines.luminance.end(), strip.luminance.begin(), strip.luminance.end());
    }
    return lines;
  }

  std::string ReadBlock(const PageImage& image, int* sure) {
    api.SetImage(image.luminance.data(), image.width, image.height, 1, image.width);
    constexpr int dotsToTheInch = 240;  // ten characters per inch, 24 pixels each
    api.SetSourceResolution(dotsToTheInch);
    const std::unique_ptr<char[]> text(api.GetUTF8Text());
    *sure = api.MeanTextConf();
    std::istringstream words(text.get());
    std::vector<std::string> lines;
    std::string line;
    for (std::string row; std::getline(words, row);) {
      std::erase(row, ' ');
      if (!row.empty()) {
        lines.push_back(row);
      }
    }
    return Joined(lines);
  }

  tesseract::TessBaseAPI api;
};

void Run(const std::filesystem::path& folder) {
  std::map<std::string, Tally> ours;
  std::map<std::string, Tally> theirs;
  std::vector<std::string> kinds;
  Tesseract tesseract;
  const std::vector<DrawnPage> pages = PagesOf(folder);
  for (const DrawnPage& drawn : pages) {
    std::ifstream stream(folder / drawn.file, std::ios::binary);
    const PageImage page = DecodeImage(std::string(std::istreambuf_iterator<char>(stream), {}));
    if (std::find(kinds.begin(), kinds.end(), drawn.kind) == kinds.end()) {
      kinds.push_back(drawn.kind);
    }
    Tally& tally = ours[drawn.kind];
    const CodelineFindings found =
        Timed(&tally.milliseconds, [&page] { return SearchCodeline(page); });
    tally.Count(Joined(found.lines), drawn.lines);
    Tally& other = theirs[drawn.kind];
    other.Count(tesseract.Read(page, &other.milliseconds), drawn.lines);
  }
  std::printf(
      "| Distortion | exact | refused | wrong | ms | Tesseract: exact | wrong | ms |\n"
      "|---|---:|---:|---:|---:|---:|---:|---:|\n");
  Tally all;
  Tally allOfTheirs;
  const auto print = [](const std::string& kind, const Tally& own, const Tally& other) {
    const double own_count = own.exact + own.refused + own.wrong;
    std::printf("| %s | %d | %d | %d | %.0f | %d | %d | %.0f |\n", kind.c_str(), own.exact,
                own.refused, own.wrong, own.milliseconds / own_count, other.exact, other.wrong,
                other.milliseconds / own_count);
  };
  for (const std::string& kind : kinds) {
    print(kind, ours[kind], theirs[kind]);
    for (auto [sum, part] : {std::pair(&all, &ours[kind]), {&allOfTheirs, &theirs[kind]}}) {
      sum->exact += part->exact;
      sum->refused += part->refused;
      sum->wrong += part->wrong;
      sum->milliseconds += part->milliseconds;
    }
  }
  print("all of " + std::to_string(pages.size()), all, allOfTheirs);
}

}  // namespace
}  // namespace conduit

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: codeline_bench FOLDER\n");
    return 2;
  }
  try {
    conduit::Run(arguments[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "codeline_bench: %s\n", error.what());
    return 1;
  }
  return 0;
}
