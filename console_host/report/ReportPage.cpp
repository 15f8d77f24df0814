#include "console_host/report/ReportPage.h"

#include <iomanip>
#include <sstream>

#include "console_host/report/Html.h"
#include "console_host/report/ReportStyle.h"
#include "platform/FilePath.h"

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
  std::ostringstream text;
  text << std::setfill('0') << static_cast<int>(date.year());
  text << '-' << std::setw(2) << static_cast<unsigned>(date.month());
  text << '-' << std::setw(2) << static_cast<unsigned>(date.day());
  text << ' ' << std::setw(2) << clock.hours().count();
  text << ':' << std::setw(2) << clock.minutes().count();
  text << ':' << std::setw(2) << clock.seconds().count() << " UTC";
  return text.str();
}

std::string Seconds(std::chrono::milliseconds duration) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(1) << static_cast<double>(duration.count()) / 1000
       << " s";
  return text.str();
}

std::string Counted(int count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
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

std::string Summary(const ReportSection& section) {
  std::string summary = section.itemCount == 0 ? "" : Counted(section.itemCount, "item");
  if (section.problemCount > 0) {
    summary += (summary.empty() ? "" : " ") +
               Element("strong", "", Counted(section.problemCount, "problem"));
  }
  return summary.empty() ? "" : " " + Element("small", "", summary);
}

std::string Part(const char* title, const std::string& markup) {
  return markup.empty() ? "" : Element("h3", "", title) + "\n" + markup;
}

std::string Markup(const ReportSection& section) {
  const std::string pictures =
      section.pictures.empty() ? "" : Element("div", "class=\"pictures\"", section.pictures) + "\n";
  return Element("section", "id=\"" + section.id + "\"",
                 Element("h2", "", HtmlText(section.title) + Summary(section)) + "\n" +
                     Part("Pictures", pictures) +
                     Part("Barcodes",
                          Table("barcodes", {"Name", "Value", "Position", "Last", "Type", "Bytes"},
                                section.barcodes)) +
                     Part("Items", Table("items", {"Name", "Value"}, section.items)) +
                     Part("Timeline", Table("timeline", {"Seconds", "What", "", "Log lines"},
                                            section.timeline))) +
         "\n";
}

std::string Header(const ReportContents& contents) {
  std::string facts;
  if (!contents.session.empty()) {
    facts += Fact("Session", contents.session);
  }
  facts += Fact("Module", contents.module);
  facts += Fact("Began", UtcTime(contents.began));
  facts += Fact("Took", Seconds(contents.duration));
  facts += Fact("Received", Counted(contents.documents, "document"));
  facts += Fact("Host", "conduit " CONDUIT_VERSION);
  const char* const outcome = contents.failed ? "class=\"outcome problem\"" : "class=\"outcome\"";
  return Element("header", "",
                 Element("h1", "", "Run of a module") + "\n" +
                     Element("p", outcome, HtmlText(contents.outcome)) + "\n" +
                     Element("dl", "", facts)) +
         "\n";
}

std::string Overview(const ReportContents& contents) {
  std::string list;
  for (const ReportSection& section : contents.sections) {
    list += Element(
        "li", section.problemCount > 0 ? "class=\"problem\"" : "",
        Element("a", "href=\"#" + section.id + "\"", HtmlText(section.title)) + Summary(section));
  }
  std::string problems;
  for (const std::string& problem : contents.problems) {
    problems += problem;
  }
  if (!problems.empty()) {
    problems = Element("div", "class=\"problems\"",
                       Element("h2", "", "Problems") + Element("ol", "", problems)) +
               "\n";
  }
  return problems + Element("nav", "", Element("ul", "", list)) + "\n";
}

}  // namespace

std::string ReportPage(const ReportContents& contents) {
  const std::string subject = contents.session.empty() ? contents.module : contents.session;
  std::string page = std::string(ReportStart) + Head;
  page +=
      Element("title", "", "Run of " + HtmlText(Utf8FromPath(PathFromUtf8(subject).filename())));
  page += "\n" + Element("style", "", ReportStyle) + "\n</head>\n<body>\n";
  page += Header(contents) + Overview(contents) + "<main>\n";
  for (const ReportSection& section : contents.sections) {
    page += Markup(section);
  }
  return page + "</main>\n</body>\n</html>\n";
}

}  // namespace conduit
