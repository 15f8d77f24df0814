#include "console_host/ProgressLine.h"

#include <iomanip>
#include <sstream>

namespace conduit {

namespace {

constexpr const char* EmptyLine = "\r\x1b[2K";

std::string Counted(int count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

ProgressLine::ProgressLine(std::ostream& output, std::chrono::milliseconds after)
    : output(output), after(after) {}

void ProgressLine::Receive(const Happening& happening) {
  if (std::holds_alternative<TimePassed>(happening)) {
    const auto age = std::chrono::steady_clock::now() - began;
    if (age >= after) {
      Show(Text(std::chrono::duration_cast<std::chrono::seconds>(age)));
    }
    return;
  }
  Show("");
  documents += std::holds_alternative<DataBegan>(happening) ? 1 : 0;
  items += std::holds_alternative<ItemReceived>(happening) ? 1 : 0;
  const auto* error = std::get_if<ErrorReported>(&happening);
  errors += error && !error->text.empty() ? 1 : 0;
}

std::string ProgressLine::Text(std::chrono::seconds age) const {
  std::ostringstream text;
  text << "... " << age.count() / 60 << ':' << std::setw(2) << std::setfill('0') << age.count() % 60
       << "  " << Counted(documents, "document") << ", " << Counted(items, "item") << ", "
       << Counted(errors, "error");
  return text.str();
}

void ProgressLine::Show(const std::string& text) {
  if (text != shown) {
    output << EmptyLine << text << std::flush;
    shown = text;
  }
}

}  // namespace conduit
