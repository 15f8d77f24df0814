#include "console_host/ProgressLine.h"

#include <iomanip>
#include <sstream>

#include "console_host/TextParts.h"

namespace conduit {
namespace {

constexpr const char* EmptyLine = "\r\x1b[2K";

}  // namespace

ProgressLine::ProgressLine(std::ostream& output, std::chrono::milliseconds after)
    : output(output), after(after) {}

void ProgressLine::OnTimePassed() {
  const auto age = std::chrono::steady_clock::now() - began;
  if (age >= after) {
    Show(Text(std::chrono::duration_cast<std::chrono::seconds>(age)));
  }
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
