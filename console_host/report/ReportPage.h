#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace conduit {

/// A document, or what happened before, between and after documents. Every text
/// but the title and the summary is markup.
struct ReportSection {
  std::string id;     ///< "section-3"
  std::string title;  ///< "Document 1"
  std::string pictures;
  std::string barcodes;  ///< rows of a table
  std::string items;     ///< rows of a table
  std::string timeline;  ///< rows of a table
  int itemCount = 0;
  int problemCount = 0;
};

/// Everything that the page of a run holds.
struct ReportContents {
  std::string module;   ///< the library's file
  std::string session;  ///< the session's file; empty when none was named
  std::chrono::system_clock::time_point began;
  std::chrono::milliseconds duration{};
  std::string outcome;  ///< "The reader has terminated."
  bool failed = false;
  int documents = 0;
  std::vector<std::string> problems;  ///< list items, markup
  std::vector<ReportSection> sections;
};

/// The first line of every page.
inline constexpr const char* ReportStart = "<!DOCTYPE html>";

/// The whole page.
std::string ReportPage(const ReportContents& contents);

}  // namespace conduit
