#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "platform/Environment.h"
#include "virtual_reader/ReaderResult.h"
#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {

inline std::int32_t Code(ReaderResult result) { return static_cast<std::int32_t>(result); }

inline std::string StateName() {
  return ReaderStateNames[static_cast<std::size_t>(HaldenReader_GetState())];
}

/// A folder with a session file in it, which the reader is told to play and
/// whose calls are recorded: "START_OF_DOCUMENT_DATA Reading", "item 6 abc",
/// "error: text Error".
class ReaderSession {
 public:
  explicit ReaderSession(const std::string& json = "") {
    do {
      folder = std::filesystem::temp_directory_path() /
               ("reader-" + std::to_string(std::random_device()()));
    } while (!std::filesystem::create_directory(folder));
    Write("session.json", json);
    Name(folder / "session.json");
  }

  ~ReaderSession() {
    HaldenReader_Shutdown();
    std::error_code stillOpen;
    std::filesystem::remove_all(folder, stillOpen);
  }

  ReaderSession(const ReaderSession&) = delete;
  ReaderSession& operator=(const ReaderSession&) = delete;

  static void Name(const std::filesystem::path& file) {
    SetEnvironment("HALDEN_READER_SESSION", file);
  }

  /// A file of the folder, by a name in UTF-8.
  std::filesystem::path PathOf(const std::string& file) const {
    return folder / std::u8string(file.begin(), file.end());
  }

  /// The same in UTF-8, as the reader takes it.
  std::string NameOf(const std::string& file) const {
    const std::u8string name = PathOf(file).u8string();
    return {name.begin(), name.end()};
  }

  void Write(const std::string& file, const std::string& bytes) const {
    std::ofstream(PathOf(file), std::ios::binary) << bytes;
  }

  std::string Read(const std::string& file) const {
    std::ifstream stream(PathOf(file));
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::int32_t Start() {
    return HaldenReader_Initialise(OnData, OnEvent, OnError, nullptr, false, false, this);
  }

  /// Starts, and waits for a call that was recorded so.
  std::vector<std::string> PlayUntil(const std::string& last = "DEVICE_DISCONNECTED Terminated") {
    Forget();
    const std::int32_t result = Start();
    if (result != 0) {
      return {"refused: " + std::to_string(result)};
    }
    WaitFor(last);
    return Calls();
  }

  void Forget() {
    const std::lock_guard lock(mutex);
    calls.clear();
  }

  void WaitFor(const std::string& call) {
    std::unique_lock lock(mutex);
    recorded.wait(lock, [&] { return !calls.empty() && calls.back() == call; });
  }

  std::vector<std::string> Calls() {
    const std::lock_guard lock(mutex);
    return calls;
  }

  /// Done within every event callback, after it is recorded.
  std::function<void(ReaderEventCode)> onEvent;
  /// Done within every data callback, in place of recording it.
  std::function<void(ReaderDataType, std::int32_t, const void*)> onData;

  std::filesystem::path folder;

 private:
  void Record(const std::string& call) {
    const std::lock_guard lock(mutex);
    calls.push_back(call);
    recorded.notify_all();
  }

  static void OnData(void* context, ReaderDataType type, std::int32_t length, void* data) {
    auto& self = *static_cast<ReaderSession*>(context);
    if (self.onData) {
      self.onData(type, length, data);
    } else {
      const std::string bytes(static_cast<const char*>(data), static_cast<std::size_t>(length));
      self.Record("item " + std::to_string(static_cast<std::int32_t>(type)) + " " +
                  (bytes.size() < 100 ? bytes : std::to_string(length) + " bytes"));
    }
  }

  static void OnEvent(void* context, ReaderEventCode code) {
    auto& self = *static_cast<ReaderSession*>(context);
    self.Record(std::string(ReaderEventNames[static_cast<std::size_t>(code)]) + " " + StateName());
    if (self.onEvent) {
      self.onEvent(code);
    }
  }

  static void OnError(void* /*first*/, const ReaderErrorInfo* error, void* context) {
    static_cast<ReaderSession*>(context)->Record("error: " + std::string(error->description) + " " +
                                                 StateName());
  }

  std::mutex mutex;
  std::condition_variable recorded;
  std::vector<std::string> calls;
};

}  // namespace conduit
