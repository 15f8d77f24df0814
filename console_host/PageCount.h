#pragma once

#include "hosting/RunListener.h"

namespace conduit {

/// Counts the documents that were laid down, and those of them that an error kept
/// from giving anything. Notices also that the reader could not write its log.
class PageCount final : public RunListener {
 public:
  void OnEvent(const EventReceived& event) override;
  void OnDataBegan() override { gaveData = true; }
  void OnError(const ErrorReported& error) override;

  /// [after the run]
  PagesCounted Pages() const { return pages; }
  bool MissesReaderLines() const { return missesReaderLines; }

 private:
  PagesCounted pages = {0, 0};
  bool gaveData = false;
  bool failed = false;
  bool missesReaderLines = false;
};

}  // namespace conduit
