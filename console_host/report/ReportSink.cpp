#include "console_host/report/ReportSink.h"

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "console_host/ItemDescription.h"
#include "console_host/report/Html.h"
#include "hosting/DataFormat.h"
#include "interfaces/ResultCode.h"
#include "platform/Digest.h"
#include "platform/FilePath.h"

namespace conduit {

namespace {

constexpr std::int32_t FailureLevel = 0;

[[noreturn]] void Refuse(const std::filesystem::path& file, const std::string& reason) {
  throw std::runtime_error("cannot write report " + Utf8FromPath(file) + ": " + reason);
}

/// A page may be replaced, but not the session that a forgotten file name leaves
/// in its place.
void RequireReplaceable(const std::filesystem::path& file) {
  std::error_code problem;
  if (std::filesystem::is_directory(file, problem)) {
    Refuse(file, "it is a folder");
  }
  if (!std::filesystem::is_regular_file(file, problem)) {
    return;
  }
  std::string start;
  std::ifstream input(file, std::ios::binary);
  if (std::getline(input, start) && start != ReportStart) {
    Refuse(file, "the file exists and is no report");
  }
}

/// A device or a pipe has no place to take.
std::filesystem::path Unfinished(std::filesystem::path file) {
  std::error_code noneYet;
  const std::filesystem::file_type type = std::filesystem::status(file, noneYet).type();
  const bool hasPlace =
      type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::regular;
  return hasPlace ? file += ".part" : file;
}

std::string SizeNote(std::size_t limit) { return std::to_string(limit >> 20) + " MiB"; }

bool IsPicture(const ItemReceived& item) {
  return item.data && !item.feature && !ReadsAsText(item.type, *item.data) &&
         !DataFormat(*item.data).empty();
}

std::string Name(const ItemReceived& item) {
  return item.name.empty() ? Element("em", "", "(unnamed)") : HtmlText(item.name);
}

std::string Cell(const char* kind, const std::string& markup) {
  return Element("td", std::string("class=\"") + kind + "\"", markup);
}

/// A narrow page has no table head: there the label stands before the value.
std::string Property(const std::string& label, const std::string& markup) {
  return Element("td", "class=\"number\" data-label=\"" + label + "\"", markup);
}

std::string Row(const std::string& attributes, const std::string& cells) {
  return Element("tr", attributes, cells) + "\n";
}

/// As much of valid UTF-8 as fits without cutting a character.
std::string StartOf(const std::string& text, std::size_t length) {
  const auto continues = [&] { return (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80; };
  while (length > 0 && continues()) {
    --length;
  }
  return text.substr(0, length);
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    joined += (joined.empty() ? "" : "; ") + text;
  }
  return joined;
}

}  // namespace

ReportSink::ReportSink(const std::filesystem::path& file, const ReportLimits& limits)
    : file(file), unfinished(Unfinished(file)), limits(limits) {
  RequireReplaceable(file);
  output.open(unfinished, std::ios::binary);
  if (!output) {
    Refuse(file, std::generic_category().message(errno));
  }
  contents.began = std::chrono::system_clock::now();
  OpenSection("Start");
}

void ReportSink::Receive(const Happening& happening) {
  std::visit([this](const auto& one) { Take(one); }, happening);
}

void ReportSink::Take(const RunBegan& run) {
  contents.module = run.module;
  contents.session = run.session;
}

void ReportSink::Take(const CallBegan& call) { callUnderWay = call.name; }

void ReportSink::Take(const CallReturned& call) {
  if (call.result == ResultSuccess) {
    AddStep("call", callUnderWay);
    return;
  }
  std::string text =
      callUnderWay + " answered " + std::to_string(call.result) + ": " + call.failure;
  if (!call.reasons.empty()) {
    text += " (" + Joined(call.reasons) + ")";
  }
  AddStep("call", text, true);
}

void ReportSink::Take(const Warned& warning) { AddStep("warning", warning.message, true); }

void ReportSink::Take(const LogLine& line) { pending.push_back(line); }

void ReportSink::Take(const ReaderLine& line) {
  document = line.document.empty() ? document : line.document;
  AddStep("reader", line.text);
}

void ReportSink::Take(const ItemReceived& item) {
  ++section.itemCount;
  if (IsPicture(item)) {
    AddPicture(item);
  } else if (item.feature) {
    AddBarcode(item);
  } else {
    section.items += Row(item.data ? "" : "class=\"problem\"",
                         Cell("name", Name(item)) + Cell("value", Value(item)));
  }
  const std::string missing = item.data ? "" : " " + Described(item);
  const std::string refused = item.answer == 0 ? "" : " (refused)";
  AddStep("item", item.name + missing + refused, !item.data);
}

void ReportSink::Take(const EventReceived& event) { AddStep("event", event.name); }

void ReportSink::Take(const DataBegan& /*data*/) {
  CloseSection();
  OpenSection("Document " + std::to_string(++contents.documents) +
              (document.empty() ? "" : ": " + document));
  document.clear();
  AddStep("begin", "");
}

void ReportSink::Take(const DataEnded& /*data*/) {
  AddStep("end", "");
  CloseSection();
  OpenSection("After document " + std::to_string(contents.documents));
}

void ReportSink::Take(const ScriptActivated& script) { AddStep("script", script.name); }

void ReportSink::Take(const StateReported& state) {
  AddStep("state", state.text.empty() ? "(without a name)" : state.text);
}

void ReportSink::Take(const ErrorReported& error) {
  if (error.routine) {
    return;
  }
  if (error.text.empty()) {
    AddStep("error", "(none stands any more)");
  } else {
    AddStep("error", error.text, true);
  }
}

void ReportSink::Take(const PagesCounted& pages) {
  AddStep("pages",
          std::to_string(pages.unread) + " of " + std::to_string(pages.all) + " could not be read");
}

void ReportSink::Take(const TimePassed& /*time*/) {}

void ReportSink::Take(const RunEnded& end) {
  contents.failed = end.reason == EndReason::Failed;
  switch (end.reason) {
    case EndReason::ReaderTerminated:
      contents.outcome = "The reader has terminated.";
      break;
    case EndReason::Interrupted:
      contents.outcome = "The run was interrupted.";
      break;
    case EndReason::Failed:
      contents.outcome = end.message.empty() ? "The run failed." : "The run failed: " + end.message;
      break;
  }
  AddStep("stop", contents.outcome, contents.failed && !end.message.empty());
  CloseSection();
  contents.duration = Age();

  output << ReportPage(contents);
  output.close();
  if (!output) {
    Refuse(file, std::generic_category().message(errno));
  }
  if (unfinished != file) {
    std::filesystem::rename(unfinished, file);
  }
}

void ReportSink::AddStep(const char* what, const std::string& text, bool problem) {
  char time[32];
  std::snprintf(time, sizeof time, "%.3f", static_cast<double>(Age().count()) / 1000);
  ++steps;
  const std::string log = TakeLog(text);
  if (problem) {
    AddProblem(text);
  }
  section.timeline += Row(
      "id=\"step-" + std::to_string(steps) + (problem ? "\" class=\"problem\"" : "\""),
      Cell("time", time) + Cell("what", what) + Cell("text", HtmlText(text)) + Cell("log", log));
}

/// The markup of the log lines that wait. A failure among them is a problem of
/// its own unless the step, whose text is given, says the same.
std::string ReportSink::TakeLog(const std::string& text) {
  std::string markup;
  for (const LogLine& line : pending) {
    const bool failure = line.level <= FailureLevel;
    if (failure && (text.empty() || line.message.find(text) == std::string::npos) &&
        text.find(line.message) == std::string::npos) {
      AddProblem(line.message);
    }
    markup += Element("div", failure ? "class=\"problem\"" : "",
                      Element("b", "", std::to_string(line.level)) + " " +
                          Element("span", "class=\"tag\"", HtmlText(line.tag)) + " " +
                          HtmlText(line.message));
  }
  pending.clear();
  return markup;
}

void ReportSink::AddProblem(const std::string& text) {
  ++section.problemCount;
  contents.problems.push_back(Element(
      "li", "",
      Element("a", "href=\"#step-" + std::to_string(steps) + "\"", HtmlText(section.title)) + ": " +
          HtmlText(text)));
}

void ReportSink::AddPicture(const ItemReceived& item) {
  const std::string_view mediaType = BrowserMediaType(*item.data);
  const std::size_t size = item.data->size();
  std::string picture;
  if (mediaType.empty()) {
    picture = "Browsers do not show this format.";
  } else if (size > limits.picture) {
    picture = "Left out: larger than " + SizeNote(limits.picture) + ". --save has it.";
  } else if (pictureBytes + size > limits.pictures) {
    picture =
        "Left out: the page has its " + SizeNote(limits.pictures) + " of pictures. --save has it.";
  }
  if (picture.empty()) {
    pictureBytes += size;
    picture = "<img alt=\"The browser cannot show this picture.\" src=\"data:";
    picture.append(mediaType).append(";base64,").append(Base64(*item.data)).append("\">");
  } else {
    picture = Element("p", "class=\"note\"", picture);
  }
  section.pictures += Element("figure", "",
                              picture + Element("figcaption", "",
                                                Element("b", "", Name(item)) + " " + Value(item))) +
                      "\n";
}

void ReportSink::AddBarcode(const ItemReceived& item) {
  section.barcodes += Row(item.data ? "" : "class=\"problem\"",
                          Cell("name", Name(item)) + Cell("value", Value(item)) +
                              Property("Position", HtmlText(*item.feature)) +
                              Property("Last", item.last ? "yes" : "no") +
                              Property("Type", std::to_string(item.type)) +
                              Property("Bytes", std::to_string(item.length)));
}

std::string ReportSink::Value(const ItemReceived& item) const {
  std::string refused = item.answer == 0 ? "" : " " + Element("strong", "", "refused");
  const std::string text = Described(item);
  if (text.size() <= limits.text) {
    return PrintableHtml(text) + refused;
  }
  return PrintableHtml(StartOf(text, limits.text)) +
         Element("em", "",
                 " ... cut here: the item has " + std::to_string(item.length) +
                     " bytes. --save has it.") +
         refused;
}

void ReportSink::OpenSection(const std::string& title) {
  section = {};
  section.id = "section-" + std::to_string(contents.sections.size() + 1);
  section.title = title;
}

/// Between two documents there may be nothing.
void ReportSink::CloseSection() {
  if (!section.timeline.empty()) {
    contents.sections.push_back(std::move(section));
  }
}

std::chrono::milliseconds ReportSink::Age() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start);
}

}  // namespace conduit
