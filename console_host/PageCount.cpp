#include "console_host/PageCount.h"

#include "hosting/EventNames.h"

namespace conduit {

void PageCount::OnEvent(const EventReceived& event) {
  if (IsEvent(event.name, ReaderEventCode::DocOnWindow)) {
    ++pages.all;
    gaveData = false;
    failed = false;
  } else if (IsEvent(event.name, ReaderEventCode::DocRemoved) && failed && !gaveData) {
    ++pages.unread;
  }
}

void PageCount::OnError(const ErrorReported& error) {
  failed = failed || !error.text.empty();
  missesReaderLines = missesReaderLines || error.losesReaderLines;
}

}  // namespace conduit
