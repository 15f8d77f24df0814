#include "console_host/report/ReportPage.h"

#include <cstdio>
#include <iomanip>
#include <sstream>
#include <vector>

#include "console_host/TextParts.h"
#include "console_host/report/Html.h"
#include "console_host/report/ReportStyle.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include <conduit/Version.h>

namespace conduit {
namespace {

/// The policy lets nothing run and nothing be fetched, should a text ever get
/// past the escaping.
constexpr const char* Head = R"(
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
)";

std::string UtcTime(std::chrono::system_clock::time_point time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
  char text[64];
  std::snprintf(text, sizeof text, "%d-%02u-%02u %02d:%02d:%02d UTC", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

std::string Seconds(std::chrono::milliseconds duration) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(1) << static_cast<double>(duration.count()) / 1000
       << " s";
  return text.str();
}

std::string Fact(const char* name, const std::string& text) {
  return Element("div", "", Element("dt", "", name) + Element("dd", "", HtmlText(text)));
}

std::string Table(const char* kind, const std::vector<const char*>& columns,
                  const std::string& rows) {
  if (rows.empty()) {
    return "";
  }
  std::string head;
  for (const char* column : columns) {
    head += Element("th", "scope=\"col\"", column);
  }
  return Element("table", std::string("class=\"") + kind + "\"",
                 Element("thead", "", Element("tr", "", head)) + "\n" +
                     Element("tbody", "", "\n" + rows)) +
         "\n";
}

std::string Counts(const ReportSection& section) {
  std::string counts = section.itemCount == 0 ? "" : Counted(section.itemCount, "item");
  if (section.problemCount > 0) {
    counts += (counts.empty() ? "" : " ") +
              Element("strong", "", Counted(section.problemCount, "problem"));
  }
  return counts.empty() ? "" : " " + Element("small", "", counts);
}

std::string Part(const char* title, const std::string& markup) {
  return markup.empty() ? "" : Element("h3", "", title) + "\n" + markup;
}

/// What came at what time is of interest to few: closed, it costs the browser little.
std::string Timeline(const std::string& rows, bool open) {
  if (rows.empty()) {
    return "";
  }
  return Element("details", open ? "open" : "",
                 Element("summary", "", "Timeline") + "\n" +
                     Table("timeline", {"Seconds", "What", "", "Log lines"}, rows));
}

std::string Facts(const ReportSummary& run, const std::string& more) {
  std::string facts;
  if (!run.session.empty()) {
    facts += Fact("Session", run.session);
  }
  facts += Fact("Module", run.module);
  facts += Fact("Began", UtcTime(run.began));
  facts += more;
  facts += Fact("Host", "conduit " CONDUIT_VERSION);
  return Element("dl", "", facts);
}

std::string Header(const std::string& attributes, const std::string& outcome,
                   const std::string& facts) {
  return Element("header", attributes,
                 Element("h1", "", "Run of a module") + "\n" + outcome + "\n" + facts) +
         "\n";
}

}  // namespace

std::string ReportHead(const ReportSummary& run) {
  const std::string subject = run.session.empty() ? run.module : run.session;
  std::string head = std::string(ReportStart) + Head;
  head +=
      Element("title", "", "Run of " + HtmlText(Utf8FromPath(PathFromUtf8(subject).filename())));
  head += "\n" + Element("style", "", ReportStyle) + "\n</head>\n<body>\n";
  head +=
      Header("class=\"unfinished\"",
             Element("p", "class=\"outcome problem\"", "The run has not ended."), Facts(run, ""));
  return head + "<main>\n";
}

std::string ReportSectionMarkup(const ReportSection& section) {
  const std::string pictures =
      section.pictures.empty() ? "" : Element("div", "class=\"pictures\"", section.pictures) + "\n";
  const std::string summary =
      section.summary.empty() ? "" : Element("p", "class=\"person\"", section.summary) + "\n";
  const bool onlyTimeline = section.itemCount == 0;
  return Element("section", "id=\"" + section.id + "\"",
                 Element("h2", "", HtmlText(section.title) + Counts(section)) + "\n" + summary +
                     Part("Pictures", pictures) +
                     Part("Barcodes",
                          Table("barcodes", {"Name", "Value", "Position", "Last", "Type", "Bytes"},
                                section.barcodes)) +
                     Part("Items", Table("items", {"Name", "Value"}, section.items)) +
                     Timeline(section.timeline, onlyTimeline || section.problemCount > 0)) +
         "\n";
}

std::string ReportOverviewEntry(const ReportSection& section) {
  return Element(
      "li", section.problemCount > 0 ? "class=\"problem\"" : "",
      Element("a", "href=\"#" + section.id + "\"", HtmlText(section.title)) + Counts(section));
}

std::string ReportEnd(const ReportSummary& run) {
  const std::string problems =
      run.problemCount == 0 ? "No problems. " : Counted(run.problemCount, "problem") + ". ";
  const bool good = run.problemCount == 0 && !run.failed;
  std::string end = "</main>\n" + Element("style", "", ".unfinished { display: none; }") + "\n";
  end += Header("",
                Element("p", good ? "class=\"outcome\"" : "class=\"outcome problem\"",
                        problems + HtmlText(run.outcome)),
                Facts(run, Fact("Took", Seconds(run.duration)) +
                               Fact("Received", Counted(run.documents, "document"))));
  if (!run.problems.empty()) {
    end += Element("div", "class=\"problems\"",
                   Element("h2", "", "Problems") + Element("ol", "", run.problems)) +
           "\n";
  }
  return end + Element("nav", "", Element("ul", "", run.overview)) + "\n</body>\n</html>\n";
}

}  // namespace conduit
