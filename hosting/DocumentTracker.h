#pragma once

#include <functional>
#include <optional>
#include <string>

#include "hosting/Document.h"

namespace conduit {

/// Where a document begins and ends, for every host: the signs that a module and its reader
/// give, and what each means.
///
/// | Sign | ends the document before it | begins one |
/// |---|---|---|
/// | the reader's log names the next one | always | yes |
/// | event DOC_ON_WINDOW | when that was laid down, or gave items | unless one is open |
/// | BeginData | when that gave items without being laid down | unless one is open |
/// | an item | no | unless one is open |
/// | event DOC_REMOVED, the run's end | once listeners were told of it | no |
///
/// A reader names a document before it lays it down, and a real one names none. Data need
/// not come from the window: each BeginData outside of a page is a swipe, which lasts until
/// the next document begins.
class DocumentTracker {
 public:
  using Told = std::function<void(const Document&)>;

  /// @param began  called as soon as a document is open
  /// @param ended  called when a document is over, which is open no longer
  DocumentTracker(Told began, Told ended);

  void Named(const std::string& source);
  void LaidDown();
  void DataBegan();
  void DataEnded();
  void ItemCame();
  void ErrorCame();
  /// It was taken off the window, or the run ends.
  void End();

  /// The one that is open; none between documents.
  const std::optional<Document>& Current() const { return current; }
  const PagesCounted& Pages() const { return pages; }

 private:
  void Begin(const std::string& source);
  void BeginUnlessOpen();

  const Told began;
  const Told ended;
  std::optional<Document> current;
  int numbers = 0;
  PagesCounted pages;
};

}  // namespace conduit
