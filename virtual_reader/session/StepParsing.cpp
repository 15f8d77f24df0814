#include "virtual_reader/session/StepParsing.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "virtual_reader/records/RecordBytes.h"
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

constexpr std::int32_t LongestPause = 60 * 60 * 1000;

template <std::size_t Size>
std::vector<std::string> NamesOf(const char* const (&table)[Size]) {
  return {std::begin(table), std::end(table)};
}

void ParseSwipe(const SessionField& field, Step* step) {
  ReaderSwipeData record = {};
  char(*const tracks[])[sizeof record.track1] = {&record.track1, &record.track2, &record.track3};
  std::size_t next = 0;
  for (const SessionField& track : field.Elements(1, std::size(tracks))) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there are no more than the tracks
    track.Try([&] { PutText(*tracks[next++], track.Text(), "the track"); });
  }
  Add(step, SendEvent{ReaderEventCode::StartOfSwipeData});
  Add(step, SendItem{ReaderDataType::SwipeRecord, BytesOf(record)});
  Add(step, SendEvent{ReaderEventCode::EndOfSwipeData});
}

}  // namespace

Document ParseStep(const SessionField& step, const std::filesystem::path& folder) {
  if (step.IsObject() && step.Size() != 1) {
    step.Refuse("a step has exactly one field, this one has " + std::to_string(step.Size()));
  }
  const auto fields = step.Fields({"event", "error", "state", "pause", "document", "swipe"});
  const auto& [name, field] = fields.front();
  if (name == "document") {
    return ParseDocument(field, folder);
  }
  Document document;
  Step* const actions = LastActions(&document);
  if (name == "event") {
    const std::size_t event = field.NameAmong("event", NamesOf(ReaderEventNames));
    Add(actions, SendEvent{static_cast<ReaderEventCode>(event)});
  } else if (name == "error") {
    Add(actions, RaiseError{field.Text()});
  } else if (name == "state") {
    // A host asks for the state when it hears of an event, so there is one.
    const std::size_t state = field.NameAmong("state", NamesOf(ReaderStateNames));
    Add(actions, SendEvent{ReaderEventCode::AutomaticStateChange, static_cast<ReaderState>(state)});
  } else if (name == "pause") {
    Add(actions, Pause{std::chrono::milliseconds(field.Integer(0, LongestPause))});
  } else {
    ParseSwipe(field, actions);
  }
  return document;
}

}  // namespace conduit
