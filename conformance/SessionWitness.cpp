#include "conformance/SessionWitness.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "hosting/DataFormat.h"
#include "platform/Process.h"
#include "platform/SessionLocation.h"

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

/// What is wrong with an item's length; empty when nothing is.
std::string LengthFault(ItemType type, std::int32_t length, const void* data, bool isBarcode) {
  if (length < 0) {
    return "has the length " + std::to_string(length);
  }
  if (!data) {
    return type == ItemTypeText && !isBarcode ? "is a text without data" : "";
  }
  const auto size = static_cast<std::size_t>(length);
  const std::string_view bytes(static_cast<const char*>(data), size);
  if (type == ItemTypeText && !isBarcode) {
    const std::size_t actual = std::strlen(bytes.data());
    return actual == size ? ""
                          : "has the length " + std::to_string(length) + " but " +
                                std::to_string(actual) + " bytes up to its NUL";
  }
  if (DataFormat(bytes) == "PNG" && !bytes.ends_with(EndOfPng)) {
    return "has the length " + std::to_string(length) + ", which is not where its image ends";
  }
  return "";
}

}  // namespace

std::int32_t SessionWitness::Start(const LoadedModule& module,
                                   const std::filesystem::path& session) {
  SetEnvironment(SessionVariable, session);
  module->SetHost(this);
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

Testimony SessionWitness::Heard() const {
  const std::lock_guard lock(mutex);
  return heard;
}

void SessionWitness::Note(const char* operation, const char* text) {
  if (closed) {
    KeepFirst(heard.lateCall, operation);
  }
  if (!text) {
    KeepFirst(heard.itemFault, std::string(operation) + " was given a null text");
  }
}

void SessionWitness::Log(std::int32_t /*level*/, const char* tag, const char* message) {
  const std::lock_guard lock(mutex);
  if (!tag || !message) {
    KeepFirst(heard.itemFault, "Log was given a null text");
  }
}

std::int32_t SessionWitness::SendData(const char* name, ItemType itemType, std::int32_t length,
                                      const void* data, IStringMap* properties, bool last) {
  const std::lock_guard lock(mutex);
  Note("SendData", name);
  ++heard.items;
  if (!name) {
    return 0;
  }
  const std::string item = "item \"" + std::string(name) + "\" ";
  if (*name == '\0' || !IsUpperCase(name)) {
    KeepFirst(heard.itemFault, item + "has a name that is not in upper case");
  }
  if (const std::string fault = LengthFault(itemType, length, data, properties != nullptr);
      !fault.empty()) {
    KeepFirst(heard.itemFault, item + fault);
  }
  if (!last && !properties) {
    KeepFirst(heard.itemFault, item + "is no barcode, but not marked as the last of its read");
  }
  return 0;
}

void SessionWitness::SendEvent(const char* name) {
  const std::lock_guard lock(mutex);
  Note("SendEvent", name);
  const std::string event = name ? name : "";
  if (!IsUpperCase(event)) {
    KeepFirst(heard.itemFault, "event \"" + event + "\" has a name that is not in upper case");
  }
  heard.events.push_back(event);
  delivered.notify_all();
  end.OnEvent({event});
}

void SessionWitness::BeginData() {
  const std::lock_guard lock(mutex);
  Note("BeginData", "");
  if (heard.documentOpen) {
    KeepFirst(heard.bracketFault, "BeginData came before the EndData of the document before");
  }
  heard.documentOpen = true;
  ++heard.documents;
  delivered.notify_all();
}

void SessionWitness::EndData() {
  const std::lock_guard lock(mutex);
  Note("EndData", "");
  if (!heard.documentOpen) {
    KeepFirst(heard.bracketFault, "EndData came without a BeginData before it");
  }
  heard.documentOpen = false;
}

std::int32_t SessionWitness::SetActiveScript(const char* name) {
  const std::lock_guard lock(mutex);
  Note("SetActiveScript", name);
  heard.scripts.emplace_back(name ? name : "");
  return 0;
}

void SessionWitness::ReportState(const char* text) {
  const std::lock_guard lock(mutex);
  Note("ReportState", text);
  end.OnState({text ? text : "", false});
}

void SessionWitness::ReportError(const char* text) {
  const std::lock_guard lock(mutex);
  Note("ReportError", text);
}

}  // namespace conduit
