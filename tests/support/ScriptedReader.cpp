#include "tests/support/ScriptedReader.h"

namespace conduit {

ScriptedReader& TheScriptedReader() {
  static ScriptedReader reader;
  return reader;
}

}  // namespace conduit

using conduit::ScriptedReader;
using conduit::TheScriptedReader;

std::int32_t HaldenReader_EnableLogging(bool enable, std::int32_t level, std::int32_t mask,
                                        const char* file) {
  TheScriptedReader().onCall("EnableLogging " + std::to_string(enable) + " " +
                             std::to_string(level) + " " + std::to_string(mask) + " " + file);
  return 1;
}

std::int32_t HaldenReader_Initialise(ReaderDataCallback dataCallback,
                                     ReaderEventCallback eventCallback,
                                     ReaderErrorCallback errorCallback, void* reserved4,
                                     bool reserved5, bool reserved6, void* context) {
  ScriptedReader& reader = TheScriptedReader();
  reader.dataCallback = dataCallback;
  reader.eventCallback = eventCallback;
  reader.errorCallback = errorCallback;
  reader.context = context;
  const bool asAgreed = reserved4 == nullptr && !reserved5 && !reserved6;
  reader.onCall(asAgreed ? "Initialise" : "Initialise with unknown arguments");
  return reader.startCode;
}

std::int32_t HaldenReader_GetState() { return TheScriptedReader().state; }

std::int32_t HaldenReader_Shutdown() {
  TheScriptedReader().onCall("Shutdown");
  return 1;
}
