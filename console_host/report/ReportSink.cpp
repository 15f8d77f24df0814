#include "console_host/report/ReportSink.h"

#include <cstdio>
#include <utility>

#include "console_host/ItemDescription.h"
#include "console_host/TextParts.h"
#include "console_host/report/Html.h"
#include "hosting/DataFormat.h"
#include "platform/Digest.h"
#include <conduit/MessageLevel.h>
#include <conduit/ReaderItem.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

constexpr const char* Continued = ", continued";

/// What a picture is, for who does not see it.
struct PictureName {
  ReaderDataType type;
  const char* text;
};

constexpr PictureName PictureNames[] = {
    {ReaderDataType::ImageVis, "Page in visible light"},
    {ReaderDataType::ImageVisRear, "Back of the page in visible light"},
    {ReaderDataType::ImageIr, "Page in near infrared"},
    {ReaderDataType::ImageUv, "Page in ultraviolet light"},
    {ReaderDataType::ImageCoaxVis, "Page in coaxial visible light"},
    {ReaderDataType::ImageCoaxIr, "Page in coaxial near infrared"},
    {ReaderDataType::ImagePhoto, "Portrait on the page"},
    {ReaderDataType::ImageBarcode, "Barcode on the page"},
    {ReaderDataType::ChipDataGroup2Photo, "Portrait in the chip"},
};

std::string Alternative(const ItemReceived& item) {
  for (const PictureName& name : PictureNames) {
    if (item.name == FindReaderItem(name.type)->name) {
      return name.text;
    }
  }
  return item.name.empty() ? "Picture" : item.name;
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

}  // namespace

ReportSink::ReportSink(const std::filesystem::path& path, const ReportLimits& limits)
    : limits(limits), file("report", path, ReportStart) {
  run.began = std::chrono::system_clock::now();
  OpenSection("Start");
}

void ReportSink::OnRunBegan(const RunBegan& began) {
  run.module = began.module;
  run.session = began.session;
  file.Write(ReportHead(run));
}

void ReportSink::OnCallReturned(const CallReturned& call) {
  if (call.result == ResultSuccess) {
    AddStep("call", call.name);
    return;
  }
  std::string text = call.name + " answered " + std::to_string(call.result) + ": " + call.failure;
  if (!call.reasons.empty()) {
    text += " (" + Joined(call.reasons, "; ") + ")";
  }
  AddStep("call", text, true);
}

void ReportSink::OnWarning(const Warned& warning) { AddStep("warning", warning.message, true); }

void ReportSink::OnLogLine(const LogLine& line) {
  const bool failure = line.level <= MessageFailure;
  if (failure && line.again == SaidAgain::Nowhere) {
    // Of the step that is to come.
    ++steps;
    AddProblem(line.message);
    --steps;
  }
  pendingLog += Element("div", failure ? "class=\"problem\"" : "",
                        Element("b", "", std::to_string(line.level)) + " " +
                            Element("span", "class=\"tag\"", HtmlText(line.tag)) + " " +
                            HtmlText(line.message));
  // What logs without doing anything has its lines shown all the same.
  if (constexpr std::size_t enough = 65536; pendingLog.size() > enough) {
    AddStep("log", "");
  }
}

/// One that the reader names has its section from here on, also when it gives nothing.
void ReportSink::OnDocumentBegan(const Document& document) {
  source = document.source;
  if (!source.empty()) {
    CloseSection();
    OpenSection(source);
  }
}

void ReportSink::OnDocumentEnded(const Document& /*document*/) { source.clear(); }

void ReportSink::OnReaderLine(const ReaderLine& line) { AddStep("reader", line.text); }

void ReportSink::OnItem(const ItemReceived& item) {
  ++section.itemCount;
  person.Take(item);
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

void ReportSink::OnEvent(const EventReceived& event) { AddStep("event", event.name); }

void ReportSink::OnDataBegan(const Document& document) {
  run.documents = document.number;
  const std::string title = "Document " + std::to_string(document.number);
  const std::string named = source.empty() ? title : title + ": " + source;
  if (source.empty() || section.itemCount > 0) {
    CloseSection();
    OpenSection(named);
  } else {
    section.title = named;
  }
  AddStep("begin", "");
}

void ReportSink::OnDataEnded(const Document& /*document*/) {
  AddStep("end", "");
  if (source.empty()) {
    CloseSection();
    OpenSection("After document " + std::to_string(run.documents));
  }
}

void ReportSink::OnScript(const ScriptActivated& script) { AddStep("script", script.name); }

void ReportSink::OnState(const StateReported& state) {
  AddStep("state", state.text.empty() ? "(without a name)" : state.text);
}

void ReportSink::OnError(const ErrorReported& error) {
  if (error.routine) {
    return;
  }
  if (error.text.empty()) {
    AddStep("error", "(none stands any more)");
  } else {
    AddStep("error", error.text, error.again == SaidAgain::Nowhere);
  }
}

void ReportSink::OnPagesCounted(const PagesCounted& pages) { AddStep("pages", pages.Text()); }

void ReportSink::OnRunEnded(const RunEnded& end) {
  run.failed = end.reason == EndReason::Failed;
  switch (end.reason) {
    case EndReason::ReaderTerminated:
      run.outcome = "The reader has terminated.";
      break;
    case EndReason::Interrupted:
      run.outcome = "The run was interrupted.";
      break;
    case EndReason::Failed:
      run.outcome = end.message.empty() ? "The run failed." : "The run failed: " + end.message;
      break;
  }
  AddStep("stop", run.outcome, run.failed && !end.message.empty());
  CloseSection();
  run.duration = Age();
  if (sections > limits.entries) {
    run.overview +=
        Element("li", "", "and " + std::to_string(sections - limits.entries) + " more below");
  }
  if (run.problemCount > limits.entries) {
    run.problems += Element(
        "li", "", "and " + std::to_string(run.problemCount - limits.entries) + " more below");
  }
  file.Write(ReportEnd(run));
  file.Complete();
}

void ReportSink::AddStep(const char* what, const std::string& text, bool problem) {
  char time[32];
  std::snprintf(time, sizeof time, "%.3f", static_cast<double>(Age().count()) / 1000);
  ++steps;
  if (problem) {
    AddProblem(text);
  }
  section.timeline +=
      Row("id=\"step-" + std::to_string(steps) + (problem ? "\" class=\"problem\"" : "\""),
          Cell("time", time) + Cell("what", what) + Cell("text", HtmlText(text)) +
              Cell("log", std::exchange(pendingLog, "")));
  if (section.timeline.size() + section.items.size() + section.barcodes.size() > limits.section) {
    const std::string title = section.title;
    CloseSection();
    OpenSection(title.ends_with(Continued) ? title : title + Continued);
  }
}

void ReportSink::AddProblem(const std::string& text) {
  ++section.problemCount;
  if (++run.problemCount > limits.entries) {
    return;
  }
  // A reader that names the page in its error names what the section is named after.
  const std::string named = source + ": ";
  const std::string shown =
      !source.empty() && text.starts_with(named) ? text.substr(named.size()) : text;
  run.problems += Element(
      "li", "",
      Element("a", "href=\"#step-" + std::to_string(steps) + "\"", HtmlText(section.title)) + ": " +
          HtmlText(shown));
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
  const std::string id = "picture-" + std::to_string(++pictures);
  if (picture.empty()) {
    pictureBytes += size;
    std::string image =
        "<img alt=\"" + HtmlText(Alternative(item) + ", " + section.title) + "\" src=\"data:";
    image.append(mediaType).append(";base64,").append(Base64(*item.data)).append("\">");
    // Without a script: the address names what is shown large, and what to go back to.
    picture = Element("a", "class=\"open\" href=\"#" + id + "\" title=\"Enlarge\"", image) +
              Element("a", "class=\"close\" href=\"#" + section.id + "\"", "Close");
  } else {
    picture = Element("p", "class=\"note\"", picture);
  }
  section.pictures += Element("figure", "id=\"" + id + "\"",
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
  section.title = title;
  // It is written only when there is something in it, and has its number then.
  section.id = "section-" + std::to_string(sections + 1);
  person.Clear();
}

/// Between two documents there may be nothing.
void ReportSink::CloseSection() {
  if (section.timeline.empty()) {
    return;
  }
  ++sections;
  section.summary = HtmlText(person.Text());
  if (sections > limits.timelines && section.problemCount == 0 && section.itemCount > 0) {
    section.timeline.clear();
  }
  if (sections <= limits.entries) {
    run.overview += ReportOverviewEntry(section);
  }
  file.Write(ReportSectionMarkup(section));
}

std::chrono::milliseconds ReportSink::Age() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start);
}

}  // namespace conduit
