#include "console_host/report/Html.h"

#include "hosting/Utf8.h"

namespace conduit {
namespace {

struct Entity {
  char character;
  std::string_view markup;
};

constexpr Entity Entities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"},
};

std::string_view EntityOf(char character) {
  for (const Entity& entity : Entities) {
    if (entity.character == character) {
      return entity.markup;
    }
  }
  return "";
}

}  // namespace

std::string PrintableHtml(std::string_view printable) {
  std::string markup;
  for (const char character : printable) {
    const std::string_view entity = EntityOf(character);
    if (entity.empty()) {
      markup += character;
    } else {
      markup += entity;
    }
  }
  return markup;
}

std::string HtmlText(std::string_view bytes) { return PrintableHtml(EscapedPaths(bytes)); }

std::string Element(std::string_view name, std::string_view attributes, std::string_view contents) {
  std::string element = "<";
  element.append(name);
  if (!attributes.empty()) {
    element.append(" ").append(attributes);
  }
  return element.append(">").append(contents).append("</").append(name).append(">");
}

}  // namespace conduit
