#include "virtual_reader/session/SessionJson.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "virtual_reader/ReaderResult.h"

namespace conduit {
namespace {

using Json = nlohmann::ordered_json;

/// Deeper than the date of a codeline, the deepest field; each level costs memory.
constexpr std::size_t DeepestField = 16;

/// More than any object of a session has. An ordered object searches its names one by one, so the
/// limit also bounds the time.
constexpr std::size_t MostFields = 64;

/// The library's message without its own error number: "line 3, column 5: ...".
std::string ReasonOf(const Json::exception& error) {
  const std::string text = error.what();
  const std::size_t line = text.find("line ");
  return "this is not JSON: " + text.substr(line != std::string::npos ? line : text.find("] ") + 2);
}

/// Builds the JSON document from the parser's events. The library's own parser with a callback is
/// quadratic: after each entry it searches the list so far for entries that the callback discards.
class JsonBuilder : public nlohmann::json_sax<Json> {
 public:
  explicit JsonBuilder(Json* root) : root(root) {}

  bool null() override { return Put(nullptr); }
  bool boolean(bool value) override { return Put(value); }
  bool number_integer(number_integer_t value) override { return Put(value); }
  bool number_unsigned(number_unsigned_t value) override { return Put(value); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return Put(value); }
  bool string(string_t& value) override { return Put(std::move(value)); }
  bool binary(binary_t& value) override { return Put(std::move(value)); }

  bool start_object(std::size_t /*size*/) override {
    constexpr std::size_t depthOfSteps = 2;  // in the list that stands in the file's one object
    step += open.size() == depthOfSteps ? 1 : 0;
    return Open(Json::object());
  }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t /*size*/) override { return Open(Json::array()); }
  bool end_array() override { return Close(); }

  bool key(string_t& name) override {
    Json& object = *open.back();
    if (object.contains(name)) {
      Refuse("the field \"" + name + "\" stands twice in one object");
    }
    if (object.size() == MostFields) {
      Refuse("an object has more than " + std::to_string(MostFields) + " fields");
    }
    field = &object[name];
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const Json::exception& error) override {
    throw SessionError(ReaderResult::SessionMalformed, ReasonOf(error));
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw SessionError(ReaderResult::SessionWrong,
                       step > 0 ? "step " + std::to_string(step) + ": " + reason : reason);
  }

  template <typename Value>
  bool Put(Value&& value) {
    Place() = std::forward<Value>(value);
    return true;
  }

  bool Open(Json structure) {
    Json& placed = Place();
    placed = std::move(structure);
    open.push_back(&placed);
    return true;
  }

  bool Close() {
    open.pop_back();
    return true;
  }

  /// Returns where the value that begins is stored.
  Json& Place() {
    if (open.size() > DeepestField) {
      throw SessionError(
          ReaderResult::SessionMalformed,
          "lists and objects stand in each other deeper than any field of a session");
    }
    if (open.empty()) {
      return *root;
    }
    return open.back()->is_array() ? open.back()->emplace_back() : *field;
  }

  Json* const root;
  std::vector<Json*> open;  ///< lists and objects that have not ended, each within the one before
  Json* field = nullptr;    ///< of the innermost object, whose value follows
  int step = 0;             ///< that is being parsed, from 1
};

}  // namespace

Json ParseSessionJson(const std::string& text) {
  Json root;
  JsonBuilder builder(&root);
  Json::sax_parse(text, &builder);
  return root;
}

}  // namespace conduit
