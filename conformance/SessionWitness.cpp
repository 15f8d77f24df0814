#include "conformance/SessionWitness.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "hosting/DataFormat.h"
#include "hosting/EventNames.h"
#include "platform/Environment.h"
#include "platform/ProcessResources.h"
#include "platform/SessionLocation.h"
#include <conduit/ItemName.h>
#include <conduit/MessageLevel.h>
#include <conduit/ReaderItem.h>

namespace conduit {
namespace {

void KeepFirst(std::string& fault, const std::string& found) {
  if (fault.empty()) {
    fault = found;
  }
}

bool IsUpperCase(std::string_view name) {
  return std::ranges::all_of(
      name, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; });
}

/// The last chunk of a PNG image: a length that is off by one loses it.
constexpr std::string_view EndOfPng("IEND\xAE\x42\x60\x82", 8);

/// What the barcodes of the built-in session hold begins with this and ends in 7.
constexpr std::string_view MarkOfBarcode = "CONDUIT-VALIDATE-";

std::string LengthIs(std::int32_t length) { return "has the length " + std::to_string(length); }

/// What is wrong with an item's length; empty when nothing is.
std::string LengthFault(ItemType type, std::int32_t length, const void* data, bool isBarcode) {
  if (length < 0) {
    return LengthIs(length);
  }
  const bool isText = type == ItemTypeText && !isBarcode;
  if (data == nullptr) {
    return isText ? "is a text without data" : "";
  }
  const auto size = static_cast<std::size_t>(length);
  if (!IsReadable(data, size)) {
    return LengthIs(length) + ", which is beyond its data";
  }
  const std::string_view bytes(static_cast<const char*>(data), size);
  if (isText) {
    const std::size_t actual = bytes.find('\0');
    if (actual != std::string_view::npos) {
      return LengthIs(length) + " but " + std::to_string(actual) + " bytes up to its NUL";
    }
    return IsReadable(bytes.data(), size + 1) && static_cast<const char*>(data)[size] == '\0'
               ? ""
               : LengthIs(length) + ", which is not where its NUL is";
  }
  if (DataFormat(bytes) == "PNG" && !bytes.ends_with(EndOfPng)) {
    return LengthIs(length) + ", which is not where its image ends";
  }
  if (isBarcode && bytes.starts_with(MarkOfBarcode) && bytes.find('7') != bytes.size() - 1) {
    return LengthIs(length) + ", which is not where its text ends";
  }
  return "";
}

/// What is wrong with an item's type; empty when nothing is.
std::string TypeFault(const std::string& name, ItemType type, bool isBarcode) {
  if (type < ItemTypeUnknown || type > ItemTypeImage) {
    return "has the type " + std::to_string(type) + ", which does not exist";
  }
  const auto* const known = std::ranges::find_if(ReaderItems, [&](const ReaderItem& item) {
    return item.kind != ReaderItemKind::Record && name == item.name;
  });
  if (known != std::end(ReaderItems)) {
    const bool mustBeBarcode = known->kind == ReaderItemKind::Barcode;
    if (mustBeBarcode != isBarcode) {
      return mustBeBarcode ? "is a barcode without properties"
                           : "has properties, though it is no barcode";
    }
    const ItemType expected = known->kind == ReaderItemKind::Text ? ItemTypeText : ItemTypeImage;
    if (!isBarcode && type != expected) {
      return "has the type " + std::to_string(type) + " instead of " + std::to_string(expected);
    }
  }
  if (!isBarcode && type != ItemTypeText && type != ItemTypeImage) {
    return "has the type " + std::to_string(type) + ", which only barcodes have";
  }
  return "";
}

}  // namespace

std::int32_t SessionWitness::Start(const LoadedModule& module, const std::filesystem::path& session,
                                   const std::vector<Setting>& settings) {
  SetEnvironment(SessionVariable, session);
  module->SetHost(this);
  for (const Setting& setting : settings) {
    module->SetParameter(setting.name.c_str(), setting.value.c_str());
  }
  return module->Initialise();
}

bool SessionWitness::WaitForEnd(std::chrono::milliseconds time) { return end.WaitFor(time); }

void SessionWitness::WaitForDelivery(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex);
  delivered.wait_for(lock, time, [this] { return heard.documents > 0 || !heard.events.empty(); });
}

void SessionWitness::Close() {
  const std::lock_guard lock(mutex);
  closed = true;
}

void SessionWitness::RefuseScripts() {
  const std::lock_guard lock(mutex);
  scriptAnswer = 1;
}

void SessionWitness::ActWithin(const std::string& operation, std::function<void()> newAction) {
  const std::lock_guard lock(mutex);
  actWithin = operation;
  action = std::move(newAction);
}

/// Without the lock: the action may call the module.
void SessionWitness::Act(const std::string& operation) {
  std::function<void()> now;
  {
    const std::lock_guard lock(mutex);
    if (operation == actWithin) {
      now.swap(action);
    }
  }
  if (now) {
    now();
  }
}

Testimony SessionWitness::Heard(bool complete) const {
  const std::lock_guard lock(mutex);
  Testimony testimony = heard;
  testimony.bracketFault = BracketFault(complete);
  return testimony;
}

/// The events that a module passes on say which brackets the reader asked for, a
/// stray one included. One that passes on none of them is held to alternating ones.
std::string SessionWitness::BracketFault(bool complete) const {
  const bool judgedByEvents = std::ranges::any_of(
      threads, [](const auto& thread) { return !thread.second.wanted.empty(); });
  const auto nameOf = [](Bracket bracket) {
    return std::string(bracket == Bracket::Begin ? "BeginData" : "EndData");
  };
  for (const auto& [id, thread] : threads) {
    const std::vector<Bracket>& given = thread.given;
    if (!thread.itemOutside.empty() && (judgedByEvents || heard.documents > 0)) {
      return "item \"" + thread.itemOutside + "\" came outside of BeginData and EndData";
    }
    if (!judgedByEvents) {
      for (std::size_t i = 0; i < given.size(); ++i) {
        if (given[i] != (i % 2 == 0 ? Bracket::Begin : Bracket::End)) {
          return given[i] == Bracket::Begin
                     ? "BeginData came before the EndData of the document before"
                     : "EndData came without a BeginData before it";
        }
      }
      if (complete && given.size() % 2 != 0) {
        return "the session ended without the EndData of its last document";
      }
      continue;
    }
    const auto [more, wanted] = std::ranges::mismatch(given, thread.wanted);
    const bool both = more != given.end() && wanted != thread.wanted.end();
    const bool underWay =
        std::max(given.end() - more, thread.wanted.end() - wanted) == 1 && !complete;
    if (both) {
      return nameOf(*more) + " came where the event asks for " + nameOf(*wanted);
    }
    if (more != given.end() && !underWay) {
      return nameOf(*more) + " came without the event that asks for it";
    }
    if (wanted != thread.wanted.end() && !underWay) {
      return "the event that asks for " + nameOf(*wanted) + " came without it";
    }
  }
  return "";
}

SessionWitness::ReaderThread& SessionWitness::Note(const char* operation, const char* text) {
  if (closed) {
    KeepFirst(heard.lateCall, operation);
  }
  if (text == nullptr) {
    KeepFirst(heard.itemFault, std::string(operation) + " was given a null text");
  }
  return threads[std::this_thread::get_id()];
}

void SessionWitness::NoteReserved() {
  const std::lock_guard lock(mutex);
  KeepFirst(heard.callFault, "a reserved operation was called");
}

void SessionWitness::Reserved1() { NoteReserved(); }
void SessionWitness::Reserved2() { NoteReserved(); }
void SessionWitness::Reserved3() { NoteReserved(); }
void SessionWitness::Reserved4() { NoteReserved(); }

void SessionWitness::Log(std::int32_t level, const char* tag, const char* message) {
  const std::lock_guard lock(mutex);
  if (closed) {
    KeepFirst(heard.lateCall, "Log");
  }
  if (tag == nullptr || message == nullptr) {
    KeepFirst(heard.callFault, "Log was given a null text");
  } else if (level < MessageFailure || level > MessageConfiguration) {
    KeepFirst(heard.callFault, "Log was given the level " + std::to_string(level));
  } else if (*message != '\0' && std::string_view(message).back() == '\n') {
    KeepFirst(heard.callFault, "Log was given a text with a line end");
  }
}

std::int32_t SessionWitness::SendData(const char* name, ItemType itemType, std::int32_t length,
                                      const void* data, IStringMap* properties, bool last) {
  Act("SendData");
  const std::lock_guard lock(mutex);
  ReaderThread& thread = Note("SendData", name);
  ++heard.items;
  delivered.notify_all();
  if (name == nullptr) {
    return 0;
  }
  const bool isOpen = !thread.given.empty() && thread.given.back() == Bracket::Begin;
  const bool isWanted = thread.wanted.empty() || thread.wanted.back() == Bracket::Begin;
  if (!isOpen && isWanted) {
    KeepFirst(thread.itemOutside, name);
  }

  const std::string item = "item \"" + std::string(name) + "\" ";
  if (*name == '\0' || !IsUpperCase(name)) {
    KeepFirst(heard.itemFault, item + "has a name that is not in upper case");
  }
  for (const std::string& fault : {TypeFault(name, itemType, properties != nullptr),
                                   LengthFault(itemType, length, data, properties != nullptr)}) {
    if (!fault.empty()) {
      KeepFirst(heard.itemFault, item + fault);
    }
  }
  if (properties != nullptr) {
    NoteBarcode(thread, item, properties->Get(ItemProperty::Feature), last);
  } else if (!last) {
    KeepFirst(heard.itemFault, item + "is no barcode, but not marked as the last of its read");
  }
  return 0;
}

void SessionWitness::NoteBarcode(ReaderThread& thread, const std::string& item, const char* feature,
                                 bool last) {
  const int expected = thread.unfinishedBarcode ? *thread.unfinishedBarcode + 1 : 0;
  if (feature == nullptr) {
    KeepFirst(heard.itemFault, item + "has no property \"feature\"");
  } else if (feature != std::to_string(expected)) {
    KeepFirst(heard.itemFault, item + "has the feature \"" + feature + "\" instead of \"" +
                                   std::to_string(expected) + "\"");
  }
  thread.unfinishedBarcode = last ? std::nullopt : std::optional<int>(expected);
}

void SessionWitness::RequireStateBefore(ReaderThread& thread) {
  if (!thread.unfinishedEvent.empty()) {
    KeepFirst(heard.eventFault, "no ReportState came after the event " + thread.unfinishedEvent);
  }
  thread.unfinishedEvent.clear();
}

void SessionWitness::SendEvent(const char* name) {
  Act("SendEvent");
  const std::lock_guard lock(mutex);
  ReaderThread& thread = Note("SendEvent", name);
  const std::string event = name != nullptr ? name : "";
  if (event.empty() || !IsUpperCase(event)) {
    KeepFirst(heard.itemFault, "event \"" + event + "\" has a name that is not in upper case");
  }
  RequireStateBefore(thread);
  if (!thread.errorCleared) {
    KeepFirst(heard.eventFault, "no ReportError of the empty text came before the event " + event);
  }
  thread.errorCleared = false;
  thread.unfinishedEvent = event;

  using enum ReaderEventCode;
  if (IsEvent(event, StartOfDocumentData) || IsEvent(event, StartOfSwipeData)) {
    thread.wanted.push_back(Bracket::Begin);
  }
  if (IsEvent(event, EndOfDocumentData) || IsEvent(event, EndOfSwipeData)) {
    thread.wanted.push_back(Bracket::End);
  }
  heard.events.push_back(event);
  delivered.notify_all();
  end.OnEvent({event});
}

void SessionWitness::BeginData() {
  const std::lock_guard lock(mutex);
  Note("BeginData", "").given.push_back(Bracket::Begin);
  ++heard.documents;
  delivered.notify_all();
}

void SessionWitness::EndData() {
  const std::lock_guard lock(mutex);
  ReaderThread& thread = Note("EndData", "");
  thread.given.push_back(Bracket::End);
  if (thread.unfinishedBarcode) {
    KeepFirst(heard.itemFault, "no barcode is marked as the last of its read");
    thread.unfinishedBarcode.reset();
  }
}

std::int32_t SessionWitness::SetActiveScript(const char* name) {
  const std::lock_guard lock(mutex);
  Note("SetActiveScript", name);
  heard.scripts.emplace_back(name != nullptr ? name : "");
  return scriptAnswer;
}

void SessionWitness::ReportState(const char* text) {
  const std::lock_guard lock(mutex);
  ReaderThread& thread = Note("ReportState", text);
  thread.unfinishedEvent.clear();
  thread.errorCleared = false;
  ++heard.states;
  end.OnState({text != nullptr ? text : "", false});
}

void SessionWitness::ReportError(const char* text) {
  const std::lock_guard lock(mutex);
  ReaderThread& thread = Note("ReportError", text);
  RequireStateBefore(thread);
  thread.errorCleared = text != nullptr && *text == '\0';
  heard.errors += text != nullptr && *text != '\0' ? 1 : 0;
}

}  // namespace conduit
