#pragma once  // self-contained; C++17

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace conduit {

/// A line of the virtual reader's log: "TIME LEVEL KIND TEXT".
///
///     2024-05-01T09:30:00.120Z 1 document 05-passport.png
///     2024-05-01T09:30:00.120Z 1 note 05-passport.png: no barcode found on the page
///
/// A host reads from it the source of a document and the warnings about it. The kind is
/// mandatory and the text is escaped, so a file name or other free text cannot imitate a
/// line of another kind, or a second line. A line of any other form comes from another
/// reader library and has no structure.
enum class ReaderLogKind : std::int32_t {
  Note = 0,      ///< anything else
  Document = 1,  ///< the text names the source of the document whose lines follow
  Warning = 2,   ///< the text says why a result is doubtful
};

/// The word of each kind, indexed by its number.
inline constexpr std::string_view ReaderLogKindNames[] = {"note", "document", "warning"};

/// The form of a line's time: UTC, ISO 8601; each d is a digit.
inline constexpr std::string_view ReaderLogTimeForm = "dddd-dd-ddTdd:dd:dd.dddZ";

struct ReaderLogLine {
  std::int32_t level;  ///< 0 to 9
  ReaderLogKind kind;
  std::string text;  ///< unescaped
};

/// Writes one line with its line end. Does not allocate.
///
/// Escapes every control character of the text, and an x after a backslash, as \xHH; all
/// other bytes stay unchanged. So a Windows path remains readable, and ParseReaderLogLine
/// restores the exact bytes.
/// @param output  receives the pieces of the line by append(const char*, std::size_t)
/// @param time    of the form ReaderLogTimeForm
/// @param level   0 to 9
/// @param texts   the text, in pieces
template <typename Output>
void WriteReaderLogLine(Output& output, std::string_view time, std::int32_t level,
                        ReaderLogKind kind, std::initializer_list<std::string_view> texts) {
  const auto put = [&output](std::string_view text) { output.append(text.data(), text.size()); };
  const char levelField[] = {' ', static_cast<char>('0' + level), ' '};
  put(time);
  put({levelField, sizeof levelField});
  put(ReaderLogKindNames[static_cast<std::size_t>(kind)]);
  put(" ");
  bool afterBackslash = false;
  for (const std::string_view text : texts) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      const bool control = byte < 0x20 || byte == 0x7f;
      if (control || (afterBackslash && byte == 'x')) {
        constexpr char digits[] = "0123456789abcdef";
        const char escape[] = {'\\', 'x', digits[byte >> 4U], digits[byte & 0xfU]};
        put(text.substr(start, i - start));
        put({escape, sizeof escape});
        start = i + 1;
      }
      afterBackslash = byte == '\\';
    }
    put(text.substr(start));
  }
  put("\n");
}

/// Parses a line that WriteReaderLogLine wrote.
/// @param line  without its line end
/// @returns std::nullopt for a line of another form or of an unknown kind.
inline std::optional<ReaderLogLine> ParseReaderLogLine(std::string_view line) {
  const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  const auto valueOf = [&isDigit](char digit) {
    return isDigit(digit) ? digit - '0' : digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
  };
  const std::size_t timeLength = ReaderLogTimeForm.size();
  if (line.size() < timeLength + 3 || line[timeLength] != ' ' || !isDigit(line[timeLength + 1]) ||
      line[timeLength + 2] != ' ') {
    return std::nullopt;
  }
  for (std::size_t i = 0; i < timeLength; ++i) {
    const char form = ReaderLogTimeForm[i];
    if (form == 'd' ? !isDigit(line[i]) : line[i] != form) {
      return std::nullopt;
    }
  }
  const std::int32_t level = line[timeLength + 1] - '0';
  line.remove_prefix(timeLength + 3);

  const std::string_view word = line.substr(0, line.find(' '));
  std::size_t kind = 0;
  while (kind < std::size(ReaderLogKindNames) && ReaderLogKindNames[kind] != word) {
    ++kind;
  }
  if (kind == std::size(ReaderLogKindNames) || word.size() == line.size()) {
    return std::nullopt;
  }
  line.remove_prefix(word.size() + 1);

  std::string text;
  text.reserve(line.size());
  while (!line.empty()) {
    const bool escaped = line.size() >= 4 && line[0] == '\\' && line[1] == 'x' &&
                         valueOf(line[2]) >= 0 && valueOf(line[3]) >= 0;
    text += escaped ? static_cast<char>(valueOf(line[2]) * 16 + valueOf(line[3])) : line[0];
    line.remove_prefix(escaped ? 4 : 1);
  }
  return ReaderLogLine{level, static_cast<ReaderLogKind>(kind), std::move(text)};
}

/// A reader library reports a log that it cannot write as the error: start, the log file's
/// name, middle, the reason.
inline constexpr std::string_view ReaderLogErrorStart = "the log file \"";
inline constexpr std::string_view ReaderLogErrorMiddle = "\" cannot be written: ";

/// Returns whether the error reports that the reader library cannot write this log. A host
/// that follows the log has then missed lines.
///
/// An error may begin with a page's file name, which an outsider can choose. A file name
/// contains no path, so a log named by a path cannot be imitated.
/// @param log  the log file's name, as the host passed it to the reader library
inline bool IsReaderLogError(std::string_view error, std::string_view log) {
  for (const std::string_view part : {ReaderLogErrorStart, log, ReaderLogErrorMiddle}) {
    if (error.substr(0, part.size()) != part) {
      return false;
    }
    error.remove_prefix(part.size());
  }
  return true;
}

}  // namespace conduit
