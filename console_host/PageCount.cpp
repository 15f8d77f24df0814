#include "console_host/PageCount.h"

#include <cstddef>

#include "interfaces/ReaderEventCode.h"

namespace conduit {

namespace {

bool Is(const EventReceived& event, ReaderEventCode code) {
  return event.name == ReaderEventNames[static_cast<std::size_t>(code)];
}

}  // namespace

void PageCount::Receive(const Happening& happening) {
  if (const auto* event = std::get_if<EventReceived>(&happening)) {
    if (Is(*event, ReaderEventCode::DocOnWindow)) {
      ++pages.all;
      gaveData = false;
      failed = false;
    } else if (Is(*event, ReaderEventCode::DocRemoved) && failed && !gaveData) {
      ++pages.unread;
    }
  }
  gaveData = gaveData || std::holds_alternative<DataBegan>(happening);
  const auto* error = std::get_if<ErrorReported>(&happening);
  failed = failed || (error && !error->text.empty());
}

}  // namespace conduit
