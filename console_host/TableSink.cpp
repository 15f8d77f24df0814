#include "console_host/TableSink.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>

#include "console_host/TextParts.h"
#include "console_host/WriteOut.h"
#include "hosting/DataFormat.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include <conduit/ItemName.h>
#include <conduit/ReaderItem.h>

namespace conduit {
namespace {

constexpr const char* FileColumn = "file";
constexpr const char* WarningsColumn = "warnings";

/// Between several values of one cell.
constexpr const char* LineEnd = "\n";

struct Column {
  std::string name;
  bool isList;  ///< of any number of values
};

const std::vector<Column>& Columns() {
  static const std::vector<Column> columns = [] {
    std::vector<Column> all = {{FileColumn, false}};
    // What it says before how it is written.
    for (std::size_t i = 0; i < std::size(CodelineItems); ++i) {
      all.push_back({CodelineItems[(i + CodelineTextCount) % std::size(CodelineItems)], false});
    }
    for (const char* const item : LicenceItems) {
      all.push_back({item, false});
    }
    for (const ReaderItem& item : ReaderItems) {
      if (item.kind == ReaderItemKind::Barcode) {
        all.push_back({item.name, true});
      }
    }
    all.push_back({WarningsColumn, true});
    return all;
  }();
  return columns;
}

/// @returns the number of columns for a name that is none.
std::size_t ColumnOf(std::string_view name) {
  const auto found = std::ranges::find(Columns(), name, &Column::name);
  return static_cast<std::size_t>(found - Columns().begin());
}

std::size_t FirstColumn() { return 0; }

std::size_t LastColumn() { return Columns().size() - 1; }

/// Bytes that are no text, as a barcode may hold, in hexadecimal digits.
std::string ValueOf(const ItemReceived& item) {
  if (!item.data || ReadsAsText(item.type, *item.data)) {
    return item.data.value_or("");
  }
  return "0x" + Hexadecimal(*item.data);
}

/// The text in UTF-8, fit for a terminal: what is no character becomes U+FFFD, and what
/// would move the cursor, reorder or hide text is written out as on the console. Line ends
/// stay, for CSV has them, and so do backslashes, for paths have them.
std::string Printable(std::string_view text) {
  std::string printable;
  while (!text.empty()) {
    const Utf8Character character = FirstCharacter(text);
    const std::string_view bytes = text.substr(0, character.length);
    const bool stays = bytes == "\\" || bytes == "\n" || text.starts_with("\r\n");
    if (!character.valid) {
      printable += "\xEF\xBF\xBD";
    } else if (stays) {
      printable += bytes;
    } else {
      printable += Escaped(bytes);
    }
    text.remove_prefix(character.length);
  }
  return printable;
}

std::string CsvCell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  std::string quoted = "\"";
  for (const char character : text) {
    quoted.append(character == '"' ? 2 : 1, character);
  }
  return quoted + '"';
}

std::string CsvLine(const TableRow& row) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    line += (i == 0 ? "" : ",") + CsvCell(Printable(Joined(row[i], LineEnd)));
  }
  return line + "\r\n";
}

std::string JsonRow(const TableRow& row) {
  nlohmann::ordered_json object;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Column& column = Columns()[i];
    if (column.isList) {
      object[column.name] = row[i];
    } else {
      object[column.name] = Joined(row[i], LineEnd);
    }
  }
  return JsonLine(object);
}

bool IsCsv(const std::filesystem::path& file) { return Utf8FromPath(file).ends_with(".csv"); }

/// Stands before the rows.
std::string HeadOf(bool csv) { return csv ? Joined(Columns(), ",", &Column::name) + "\r\n" : ""; }

/// What an earlier table begins with.
std::string StartOf(bool csv) { return csv ? HeadOf(csv) : "{\"" + Columns().front().name + "\":"; }

}  // namespace

bool IsTableName(const std::filesystem::path& file) {
  return IsCsv(file) || Utf8FromPath(file).ends_with(".jsonl");
}

TableSink::TableSink(const std::filesystem::path& path)
    : csv(IsCsv(path)), file("table", path, StartOf(csv)) {}

void TableSink::OnDocumentBegan(const Document& document) {
  row.assign(Columns().size(), {});
  Add(FirstColumn(), document.source);
}

void TableSink::OnDocumentEnded(const Document& document) {
  const bool saysAnything =
      std::ranges::any_of(row, [](const auto& values) { return !values.empty(); });
  if (document.Kind() != DocumentKind::Swipe || saysAnything) {
    file.Write((hasRows ? "" : HeadOf(csv)) + (csv ? CsvLine(row) : JsonRow(row)));
    hasRows = true;
  }
}

void TableSink::OnReaderLine(const ReaderLine& line) {
  if (line.belongsTo) {
    Add(LastColumn(), line.warning);
  }
}

void TableSink::OnItem(const ItemReceived& item) {
  const std::size_t column = ColumnOf(item.name);
  if (item.answer != 0) {
    Add(LastColumn(), item.name + " refused");
  } else if (column < Columns().size()) {
    Add(column, ValueOf(item));
  } else if (item.name == Signal::UnknownDocument || item.name == Signal::BadChars) {
    Add(LastColumn(), item.name);
  }
}

void TableSink::OnError(const ErrorReported& error) {
  if (error.belongsTo) {
    Add(LastColumn(), error.text);
  }
}

void TableSink::OnRunEnded(const RunEnded& end) {
  if (!hasRows) {
    if (end.reason == EndReason::Failed) {
      return;
    }
    file.Write(HeadOf(csv));
  }
  file.Complete();
}

void TableSink::Add(std::size_t column, const std::string& value) {
  std::vector<std::string>& values = row[column];
  // The codeline of a chip says again what the page says.
  if (!value.empty() &&
      (Columns()[column].isList || std::ranges::find(values, value) == values.end())) {
    values.push_back(value);
  }
}

}  // namespace conduit
