#include "console_host/JsonSink.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "hosting/DataFormat.h"
#include "hosting/Utf8.h"
#include "interfaces/ResultCode.h"
#include "platform/Digest.h"

namespace conduit {

namespace {

using Json = nlohmann::ordered_json;

/// Raised when an existing field changes its meaning or goes; fields and kinds
/// may be added without.
constexpr int Schema = 1;

constexpr const char* EndReasons[] = {"terminated", "interrupted", "failed"};

std::string Hexadecimal(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
    text += digits;
  }
  return text;
}

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

/// One object for each happening; none for what only the host itself needs.
struct ToJson {
  std::optional<Json> operator()(const RunBegan& run) const {
    Json object{{"kind", "run"}, {"schema", Schema}, {"conduit", CONDUIT_VERSION}};
    AddText(object, "module", run.module);
    if (!run.session.empty()) {
      AddText(object, "session", run.session);
    }
    return object;
  }

  std::optional<Json> operator()(const CallBegan& /*call*/) const { return std::nullopt; }

  std::optional<Json> operator()(const CallReturned& call) const {
    if (call.result == ResultSuccess) {
      return std::nullopt;
    }
    Json object = Kind("failure", "message", call.failure);
    object["result"] = call.result;
    object["reasons"] = Json::array();
    for (const std::string& reason : call.reasons) {
      object["reasons"].push_back(IsUtf8(reason) ? reason : Escaped(reason));
    }
    return object;
  }

  std::optional<Json> operator()(const Warned& warning) const {
    return Kind("warning", "message", warning.message);
  }

  std::optional<Json> operator()(const LogLine& line) const {
    if (line.level > options.logLevel) {
      return std::nullopt;
    }
    Json object{{"kind", "log"}, {"level", line.level}};
    AddText(object, "tag", line.tag);
    AddText(object, "message", line.message);
    return object;
  }

  std::optional<Json> operator()(const ReaderLine& line) const {
    Json object = Kind("reader");
    if (line.level) {
      object["level"] = *line.level;
    }
    AddText(object, "text", line.text);
    if (!line.document.empty()) {
      AddText(object, "document", line.document);
    }
    return object;
  }

  std::optional<Json> operator()(const ItemReceived& item) const {
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
    return object;
  }

  std::optional<Json> operator()(const EventReceived& event) const {
    return Kind("event", "name", event.name);
  }

  std::optional<Json> operator()(const DataBegan& /*data*/) const { return Kind("begin"); }

  std::optional<Json> operator()(const DataEnded& /*data*/) const { return Kind("end"); }

  std::optional<Json> operator()(const ScriptActivated& script) const {
    return Kind("script", "name", script.name);
  }

  std::optional<Json> operator()(const StateReported& state) const {
    return Kind("state", "text", state.text);
  }

  std::optional<Json> operator()(const ErrorReported& error) const {
    if (error.routine) {
      return std::nullopt;
    }
    return Kind("error", "text", error.text);
  }

  std::optional<Json> operator()(const PagesCounted& pages) const {
    Json object = Kind("pages");
    object["unread"] = pages.unread;
    object["all"] = pages.all;
    return object;
  }

  std::optional<Json> operator()(const TimePassed& /*time*/) const { return std::nullopt; }

  std::optional<Json> operator()(const RunEnded& run) const {
    Json object{{"kind", "stop"}, {"reason", EndReasons[static_cast<std::size_t>(run.reason)]}};
    if (!run.message.empty()) {
      AddText(object, "message", run.message);
    }
    return object;
  }

  JsonSinkOptions options;
};

}  // namespace

JsonSink::JsonSink(std::ostream& output, JsonSinkOptions options)
    : output(output), options(options) {}

void JsonSink::Receive(const Happening& happening) {
  const std::optional<Json> object = std::visit(ToJson{options}, happening);
  if (!object) {
    return;
  }
  output << object->dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  if (!output.flush()) {
    throw std::runtime_error("cannot write to standard output");
  }
}

}  // namespace conduit
