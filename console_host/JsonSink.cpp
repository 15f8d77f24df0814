#include "console_host/JsonSink.h"

#include <new>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "console_host/TextParts.h"
#include "console_host/WriteOut.h"
#include "hosting/DataFormat.h"
#include "hosting/Utf8.h"
#include "platform/Digest.h"
#include <conduit/ResultCode.h>
#include <conduit/Version.h>

namespace conduit {
namespace {

using Json = nlohmann::ordered_json;

/// Raised when an existing field changes its meaning or goes; fields and kinds
/// may be added without.
constexpr int Schema = 1;

constexpr const char* EndReasons[] = {"terminated", "interrupted", "failed"};

/// JSON cannot hold bytes that are not UTF-8: they become U+FFFD in the text,
/// and a second field keeps all of the bytes.
void AddText(Json& object, const std::string& key, const std::string& text) {
  object[key] = text;
  if (!IsUtf8(text)) {
    object[key + "Hex"] = Hexadecimal(text);
  }
}

Json Kind(const char* kind) { return Json{{"kind", kind}}; }

Json Kind(const char* kind, const std::string& key, const std::string& text) {
  Json object = Kind(kind);
  AddText(object, key, text);
  return object;
}

void Write(std::ostream& output, const Json& object) { WriteOut(output, JsonLine(object)); }

}  // namespace

JsonSink::JsonSink(std::ostream& output, JsonSinkOptions options)
    : output(output), options(options) {}

void JsonSink::OnRunBegan(const RunBegan& run) {
  Json object{{"kind", "run"}, {"schema", Schema}, {"conduit", CONDUIT_VERSION}};
  AddText(object, "module", run.module);
  if (!run.session.empty()) {
    AddText(object, "session", run.session);
  }
  Write(output, object);
}

void JsonSink::OnCallReturned(const CallReturned& call) {
  if (call.result == ResultSuccess) {
    return;
  }
  Json object = Kind("failure", "message", call.failure);
  object["result"] = call.result;
  object["reasons"] = Json::array();
  for (const std::string& reason : call.reasons) {
    object["reasons"].push_back(IsUtf8(reason) ? reason : Escaped(reason));
  }
  Write(output, object);
}

void JsonSink::OnWarning(const Warned& warning) {
  Write(output, Kind("warning", "message", warning.message));
}

void JsonSink::OnLogLine(const LogLine& line) {
  if (line.level > options.logLevel) {
    return;
  }
  Json object{{"kind", "log"}, {"level", line.level}};
  AddText(object, "tag", line.tag);
  AddText(object, "message", line.message);
  Write(output, object);
}

void JsonSink::OnReaderLine(const ReaderLine& line) {
  Json object = Kind("reader");
  if (line.level) {
    object["level"] = *line.level;
  }
  AddText(object, "text", line.text);
  if (!line.document.empty()) {
    AddText(object, "document", line.document);
  }
  if (!line.warning.empty()) {
    AddText(object, "warning", line.warning);
  }
  Write(output, object);
}

void JsonSink::OnItem(const ItemReceived& item) {
  Json object = Kind("item", "name", item.name);
  object["itemType"] = item.type;
  object["length"] = item.length;
  if (!item.data) {
    object["missing"] = true;
  } else if (ReadsAsText(item.type, *item.data)) {
    AddText(object, "value", *item.data);
  } else {
    const std::string_view format = DataFormat(*item.data);
    object["format"] = format.empty() ? Json("binary") : Json(format);
    object["sha256"] = Hexadecimal(Sha256(*item.data));
    if (options.data) {
      object["base64"] = Base64(*item.data);
    }
  }
  if (item.feature) {
    AddText(object, "feature", *item.feature);
  }
  object["last"] = item.last;
  if (item.answer != 0) {
    object["answer"] = item.answer;
  }
  Write(output, object);
}

void JsonSink::OnEvent(const EventReceived& event) {
  Write(output, Kind("event", "name", event.name));
}

void JsonSink::OnDataBegan(const Document& document) {
  Json object = Kind("begin");
  if (!document.source.empty()) {
    AddText(object, "document", document.source);
  }
  Write(output, object);
}

void JsonSink::OnDataEnded(const Document& /*document*/) { Write(output, Kind("end")); }

void JsonSink::OnScript(const ScriptActivated& script) {
  Write(output, Kind("script", "name", script.name));
}

void JsonSink::OnState(const StateReported& state) {
  Write(output, Kind("state", "text", state.text));
}

void JsonSink::OnError(const ErrorReported& error) {
  if (error.routine) {
    return;
  }
  Write(output, Kind("error", "text", error.text));
}

void JsonSink::OnPagesCounted(const PagesCounted& pages) {
  Json object = Kind("pages");
  object["unread"] = pages.unread;
  object["all"] = pages.all;
  Write(output, object);
}

void JsonSink::OnRunEnded(const RunEnded& end) {
  const char* const reason = EndReasons[static_cast<std::size_t>(end.reason)];
  try {
    Json object{{"kind", "stop"}, {"reason", reason}};
    if (!end.message.empty()) {
      AddText(object, "message", end.message);
    }
    Write(output, object);
  } catch (const std::bad_alloc&) {
    const bool failed = end.reason == EndReason::Failed;
    output << R"({"kind":"stop","reason":")" << reason
           << (failed ? R"(","message":"out of memory"})" : R"("})") << std::endl;
  }
}

}  // namespace conduit
