#include "virtual_reader/session/SessionField.h"

#include <algorithm>
#include <limits>

#include "virtual_reader/ReaderResult.h"
#include "virtual_reader/session/NearestName.h"

namespace conduit {

void SessionField::Refuse(const std::string& reason) const {
  throw SessionError(ReaderResult::SessionWrong, place.empty() ? reason : place + ": " + reason);
}

void SessionField::RequireType(bool matches, std::string_view wanted) const {
  if (!matches) {
    Refuse("this is " + std::string(value->type_name()) + ", not " + std::string(wanted));
  }
}

std::string SessionField::TextOrBytes() const {
  RequireType(value->is_string(), "a text");
  return value->get<std::string>();
}

std::string SessionField::Text() const {
  std::string text = TextOrBytes();
  if (text.find('\0') != std::string::npos) {
    Refuse("the text holds a NUL character, where it would be cut off");
  }
  return text;
}

std::int32_t SessionField::Integer(std::int32_t lowest, std::int32_t highest) const {
  RequireType(value->is_number_integer(), "a whole number");
  // Beyond 63 bits the library would wrap the number to a small one.
  const bool fits =
      !value->is_number_unsigned() ||
      value->get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<std::int32_t>::max()};
  const std::int64_t number = fits ? value->get<std::int64_t>() : 0;
  if (!fits || number < lowest || number > highest) {
    Refuse(value->dump() + " is not within " + std::to_string(lowest) + " to " +
           std::to_string(highest));
  }
  return static_cast<std::int32_t>(number);
}

std::size_t SessionField::NameAmong(std::string_view kind,
                                    const std::vector<std::string>& known) const {
  const std::string name = Text();
  const auto found = std::find(known.begin(), known.end(), name);
  if (found == known.end()) {
    Refuse(UnknownName(kind, name, known));
  }
  return static_cast<std::size_t>(found - known.begin());
}

std::vector<SessionField> SessionField::Elements(std::size_t fewest, std::size_t most) const {
  RequireType(value->is_array(), "a list");
  if (value->size() < fewest || value->size() > most) {
    Refuse("the list has " + std::to_string(value->size()) + " entries, it takes " +
           (value->size() < fewest ? "at least " + std::to_string(fewest)
                                   : "at most " + std::to_string(most)));
  }
  std::vector<SessionField> elements;
  for (const Json& element : *value) {
    elements.emplace_back(element, place + " #" + std::to_string(elements.size() + 1));
  }
  return elements;
}

std::vector<std::pair<std::string, SessionField>> SessionField::Fields(
    const std::vector<std::string>& known) const {
  RequireType(value->is_object(), "an object");
  std::vector<std::pair<std::string, SessionField>> fields;
  for (const auto& [name, child] : value->items()) {
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      Refuse(UnknownName("field", name, known));
    }
    fields.emplace_back(name, Child(name, child));
  }
  return fields;
}

std::optional<SessionField> SessionField::Find(const std::string& name) const {
  const auto found = value->find(name);
  return found == value->end() ? std::nullopt : std::optional(Child(name, *found));
}

SessionField SessionField::Require(const std::string& name) const {
  const std::optional<SessionField> field = Find(name);
  if (!field) {
    Refuse("the field \"" + name + "\" is missing");
  }
  return *field;
}

SessionField SessionField::Child(const std::string& name, const Json& child) const {
  if (place.empty()) {
    return {child, name};
  }
  const bool isStep = place.find(',') == std::string::npos;
  return {child, place + (isStep ? ", " : ".") + name};
}

}  // namespace conduit
