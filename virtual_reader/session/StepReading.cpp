#include "virtual_reader/session/StepReading.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

#include "virtual_reader/records/RecordBytes.h"
#include "virtual_reader/session/DocumentBuilder.h"
#include <conduit/ReaderSwipeData.h>

namespace conduit {
namespace {

constexpr std::int32_t LongestPause = 60 * 60 * 1000;

template <std::size_t Size>
std::vector<std::string> NamesOf(const char* const (&table)[Size]) {
  return {std::begin(table), std::end(table)};
}

}  // namespace

const std::vector<FieldReader<StepReading>> StepReading::Fields = {
    {"event", &StepReading::ReadEvent},       {"error", &StepReading::ReadError},
    {"state", &StepReading::ReadState},       {"pause", &StepReading::ReadPause},
    {"document", &StepReading::ReadDocument}, {"swipe", &StepReading::ReadSwipe},
};

StepWork StepReading::ReadStep(const SessionField& step) {
  if (step.IsObject() && step.Size() != 1) {
    step.Refuse("a step has exactly one field, this one has " + std::to_string(step.Size()));
  }
  return [add = ReadFields(*this, step, Fields)] {
    StepBuilder builder;
    add(&builder);
    return builder.Take();
  };
}

// Those that need no member are called through the same table as the others.
// NOLINTBEGIN(readability-convert-member-functions-to-static)

StepPart StepReading::ReadEvent(const SessionField& field) {
  const auto event =
      static_cast<ReaderEventCode>(field.NameAmong("event", NamesOf(ReaderEventNames)));
  return [event](StepBuilder* step) { step->AddEvent(event); };
}

StepPart StepReading::ReadError(const SessionField& field) { return RaisingError(field); }

StepPart StepReading::ReadState(const SessionField& field) {
  const auto state = static_cast<ReaderState>(field.NameAmong("state", NamesOf(ReaderStateNames)));
  // A host asks for the state when it hears of an event, so there is one.
  return [state](StepBuilder* step) {
    step->Add(SendEvent{ReaderEventCode::AutomaticStateChange, state});
  };
}

StepPart StepReading::ReadPause(const SessionField& field) {
  const std::chrono::milliseconds time(field.Integer(0, LongestPause));
  return [time](StepBuilder* step) { step->Add(Pause{time}); };
}

StepPart StepReading::ReadDocument(const SessionField& field) {
  DocumentBuilder document(folder, field, readers);
  StepPart part = document.Build();
  hasImages = hasImages || document.HasImages();
  return part;
}

StepPart StepReading::ReadSwipe(const SessionField& field) {
  ReaderSwipeData record = {};
  char(*const tracks[])[sizeof record.track1] = {&record.track1, &record.track2, &record.track3};
  std::size_t next = 0;
  for (const SessionField& track : field.Elements(1, std::size(tracks))) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there are no more than the tracks
    track.Try([&] { PutText(*tracks[next++], track.Text(), "the track"); });
  }
  return [bytes = BytesOf(record)](StepBuilder* step) {
    step->AddEvent(ReaderEventCode::StartOfSwipeData);
    step->Add(SendItem{ReaderDataType::SwipeRecord, bytes});
    step->AddEvent(ReaderEventCode::EndOfSwipeData);
  };
}

// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace conduit
