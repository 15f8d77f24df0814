#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hosting/LoadedModule.h"
#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {

/// One implementation, started, with the way in that it gave the reader.
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

/// Something that a module is given to do, over and over.
struct Workload {
  const char* name;
  bool logged;
  /// The most that the module may take of the floor's time; 0 where only the
  /// plain implementation is the measure.
  double mostOfFloor;
  void (*prepare)(Subject& subject);
  void (*deliver)(Subject& subject);
};

const std::vector<Workload>& Workloads();

/// What an implementation makes of a workload: every call of host and logger, the
/// data pointers and the texts that it hands back, in order.
std::vector<std::string> OutputOf(const Workload& workload, const std::filesystem::path& file);

}  // namespace conduit
