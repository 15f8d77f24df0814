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
