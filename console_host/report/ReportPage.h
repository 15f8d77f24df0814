#pragma once

#include <chrono>
#include <string>

namespace conduit {

/// A document, or what happened before, between and after documents. Every text
/// but the title is markup.
struct ReportSection {
  std::string id;       ///< "section-3"
  std::string title;    ///< "Document 1: passport.png"
  std::string summary;  ///< whose document it is
  std::string pictures;
  std::string barcodes;  ///< rows of a table
  std::string items;     ///< rows of a table
  std::string timeline;  ///< rows of a table
  int itemCount = 0;
  int problemCount = 0;
};

/// What the page says of the whole run.
struct ReportSummary {
  std::string module;   ///< the library's file
  std::string session;  ///< the session's file; empty when none was named
  std::chrono::system_clock::time_point began;
  std::chrono::milliseconds duration{};
  std::string outcome;  ///< "The reader has terminated."
  bool failed = false;
  int documents = 0;
  int problemCount = 0;
  std::string problems;  ///< list items, markup
  std::string overview;  ///< list items, markup
};

/// The first line of every page.
inline constexpr const char* ReportStart = "<!DOCTYPE html>";

// A page in the order in which it is written. What is known of a run only at its end
// stands last and is shown first, so that a page that breaks off shows what it has.

std::string ReportHead(const ReportSummary& run);
std::string ReportSectionMarkup(const ReportSection& section);
/// The section's entry in the overview, a list item.
std::string ReportOverviewEntry(const ReportSection& section);
std::string ReportEnd(const ReportSummary& run);

}  // namespace conduit
