#include "console_host/WriteOut.h"

#include <cerrno>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>

#include "hosting/Utf8.h"

namespace conduit {
namespace {

/// As JSON escapes it: in UTF-16.
std::string JsonEscape(char32_t character) {
  char text[16];
  if (character < 0x10000) {
    std::snprintf(text, sizeof text, "\\u%04lx", static_cast<unsigned long>(character));
  } else {
    const unsigned long rest = character - 0x10000;
    std::snprintf(text, sizeof text, "\\u%04lx\\u%04lx", 0xD800 + (rest >> 10),
                  0xDC00 + (rest & 0x3FF));
  }
  return text;
}

}  // namespace

void WriteOut(std::ostream& output, std::string_view text) {
  errno = 0;
  if (!(output << text << std::flush)) {
    const int problem = errno;
    throw std::runtime_error("cannot write to standard output" +
                             (problem == 0 ? "" : ": " + std::generic_category().message(problem)));
  }
}

std::string JsonLine(const nlohmann::ordered_json& object) {
  const std::string dumped =
      object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  std::string line;
  // All of ASCII but DEL is fit for a terminal: JSON escapes the other controls itself.
  for (std::string_view rest = dumped; !rest.empty();) {
    const Utf8Character character = FirstCharacter(rest);
    const std::string_view bytes = rest.substr(0, character.length);
    const bool plain = character.codePoint < 0x7F || Escaped(bytes) == bytes;
    line += plain ? std::string(bytes) : JsonEscape(character.codePoint);
    rest.remove_prefix(bytes.size());
  }
  return line + "\n";
}

}  // namespace conduit
