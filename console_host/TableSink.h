#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "console_host/ReplacedFile.h"
#include "hosting/RunListener.h"

namespace conduit {

/// The values of one document, a list for each column; most have one value at most.
using TableRow = std::vector<std::vector<std::string>>;

/// Tells a run as a table: a row for each page, whether or not it gave anything, and for each
/// swipe that has something to tell. The columns are the same for every
/// run: the file that the document comes from, the fields of its codeline, those of its
/// licence, its barcodes by symbology, and what the reader warned of. A run that fails
/// before its first row leaves an earlier table as it is.
class TableSink final : public RunListener {
 public:
  /// As CSV after RFC 4180, in UTF-8 and with a head, or as JSON Lines, by the file's
  /// name; see IsTableName. Throws a std::runtime_error that names the file and the
  /// reason when it cannot be written.
  explicit TableSink(const std::filesystem::path& path);

  // They throw a std::runtime_error when the table cannot be written.
  void OnReaderLine(const ReaderLine& line) override;
  void OnItem(const ItemReceived& item) override;
  void OnDocumentBegan(const Document& document) override;
  void OnDocumentEnded(const Document& document) override;
  void OnError(const ErrorReported& error) override;
  void OnRunEnded(const RunEnded& end) override;

 private:
  void Add(std::size_t column, const std::string& value);

  const bool csv;  ///< rather than JSON Lines
  ReplacedFile file;
  bool hasRows = false;
  TableRow row;  ///< of the document that is open
};

/// Whether a file's name ends in .csv or .jsonl.
bool IsTableName(const std::filesystem::path& file);

}  // namespace conduit
