#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hosting/LoadedModule.h"
#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {

/// One started implementation, with the callbacks that it gave the reader.
struct Subject {
  Subject(const std::filesystem::path& file, IModuleLogger* logger, IInputModuleHost* host);

  std::filesystem::path file;
  IModuleLogger* logger;
  IInputModuleHost* host;
  LoadedModule module;
  ReaderDataCallback data;
  ReaderEventCallback event;
  void* context;
};

/// A task that a module repeats.
struct Workload {
  const char* name;
  bool logged;
  /// The target: maximum time of the module divided by the floor's time; 0 where the target
  /// is the plain implementation's time.
  double mostOfFloor;
  void (*prepare)(Subject& subject);
  void (*deliver)(Subject& subject);
};

const std::vector<Workload>& Workloads();

/// Returns the output of an implementation for a workload: every call of host and logger, data
/// pointers and returned texts, in order.
std::vector<std::string> OutputOf(const Workload& workload, const std::filesystem::path& file);

}  // namespace conduit
