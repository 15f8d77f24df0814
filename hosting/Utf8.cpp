#include "hosting/Utf8.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace conduit {
namespace {

/// Characters by the number of their bytes.
struct SequenceForm {
  std::uint8_t mask;
  std::uint8_t lead;
  std::size_t length;
  char32_t lowest;  ///< anything below has a shorter form, which is the only valid one
};

constexpr SequenceForm SequenceForms[] = {
    {0x80, 0x00, 1, 0x0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

struct Range {
  char32_t first;
  char32_t last;
};

/// Characters that a terminal acts on or that leave no trace.
constexpr Range HarmfulRanges[] = {
    {0x00, 0x1F},        // C0 controls
    {0x7F, 0x9F},        // DEL and C1 controls: terminals take 9B for an escape sequence
    {0xAD, 0xAD},        // soft hyphen
    {0x61C, 0x61C},      // Arabic letter mark
    {0x200B, 0x200F},    // zero-width characters and direction marks
    {0x2028, 0x202E},    // line separators, direction embeddings and overrides
    {0x2060, 0x206F},    // invisible operators, direction isolates
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFF9, 0xFFFB},    // interlinear annotations
    {0xE0000, 0xE007F},  // tags
};

struct ShortEscape {
  char32_t character;
  const char* text;
};

constexpr ShortEscape ShortEscapes[] = {
    {'\\', "\\\\"},
    {'\n', "\\n"},
    {'\r', "\\r"},
    {'\t', "\\t"},
};

bool IsSurrogate(char32_t codePoint) { return codePoint >= 0xD800 && codePoint <= 0xDFFF; }

std::string Hexadecimal(const char* before, char32_t value, const char* after) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%s%02lx%s", before, static_cast<unsigned long>(value),
                after);
  return buffer;
}

std::string Escaped(const Utf8Character& character, std::string_view bytes) {
  if (!character.valid) {
    return Hexadecimal("\\x", character.codePoint, "");
  }
  for (const ShortEscape& escape : ShortEscapes) {
    if (escape.character == character.codePoint) {
      return escape.text;
    }
  }
  for (const Range& range : HarmfulRanges) {
    if (character.codePoint < range.first || character.codePoint > range.last) {
      continue;
    }
    return character.length == 1 ? Hexadecimal("\\x", character.codePoint, "")
                                 : Hexadecimal("\\u{", character.codePoint, "}");
  }
  return std::string(bytes);
}

}  // namespace

Utf8Character FirstCharacter(std::string_view text) {
  const auto byteAt = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const Utf8Character invalid{byteAt(0), 1, false};

  for (const SequenceForm& form : SequenceForms) {
    if ((byteAt(0) & form.mask) != form.lead) {
      continue;
    }
    if (text.size() < form.length) {
      return invalid;
    }
    char32_t codePoint = byteAt(0) & static_cast<std::uint8_t>(~form.mask);
    for (std::size_t i = 1; i < form.length; ++i) {
      if ((byteAt(i) & 0xC0) != 0x80) {
        return invalid;
      }
      codePoint = (codePoint << 6) | (byteAt(i) & 0x3FU);
    }
    if (codePoint < form.lowest || codePoint > 0x10FFFF || IsSurrogate(codePoint)) {
      return invalid;
    }
    return {codePoint, form.length, true};
  }
  return invalid;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const Utf8Character character = FirstCharacter(text);
    if (!character.valid) {
      return false;
    }
    text.remove_prefix(character.length);
  }
  return true;
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const Utf8Character character = FirstCharacter(text);
    escaped += Escaped(character, text.substr(0, character.length));
    text.remove_prefix(character.length);
  }
  return escaped;
}

std::string EscapedPaths(std::string_view text) {
  std::string escaped = Escaped(text);
  if constexpr (std::filesystem::path::preferred_separator == '\\') {
    for (std::size_t at = 0; (at = escaped.find("\\\\", at)) != std::string::npos; ++at) {
      escaped.erase(at, 1);
    }
  }
  return escaped;
}

}  // namespace conduit
