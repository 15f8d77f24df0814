#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace conduit {

/// A value of the session file together with the place where it stands, so that
/// whoever finds fault with it can say where. Borrows the parsed file.
class SessionField {
 public:
  using Json = nlohmann::ordered_json;

  SessionField(const Json& value, std::string place) : value(&value), place(std::move(place)) {}

  /// Throws a SessionError that names the place.
  [[noreturn]] void Refuse(const std::string& reason) const;

  /// Does what may throw std::invalid_argument, and refuses for its reason.
  template <typename Operation>
  void Try(const Operation& operation) const {
    try {
      operation();
    } catch (const std::invalid_argument& reason) {
      Refuse(reason.what());
    }
  }

  std::size_t Size() const { return value->size(); }
  bool IsObject() const { return value->is_object(); }
  bool IsArray() const { return value->is_array(); }

  /// A text without NUL: records and error texts would end at it.
  std::string Text() const;
  std::string TextOrBytes() const;
  std::int32_t Integer(std::int32_t lowest, std::int32_t highest) const;

  /// The position of this text among the known names.
  std::size_t NameAmong(std::string_view kind, const std::vector<std::string>& known) const;

  std::vector<SessionField> Elements(std::size_t fewest, std::size_t most) const;

  /// The fields of an object in the order of the file; refuses names that are
  /// not known.
  std::vector<std::pair<std::string, SessionField>> Fields(
      const std::vector<std::string>& known) const;

  std::optional<SessionField> Find(const std::string& name) const;
  SessionField Require(const std::string& name) const;

  const std::string& Place() const { return place; }

  /// The same value under a name of its own for the place.
  SessionField At(std::string otherPlace) const { return {*value, std::move(otherPlace)}; }

 private:
  void RequireType(bool matches, std::string_view wanted) const;
  SessionField Child(const std::string& name, const Json& child) const;

  const Json* value;
  std::string place;
};

}  // namespace conduit
