#pragma once

#include "hosting/Happening.h"

namespace conduit {

/// Counts the documents that were laid down, and those of them that an error kept
/// from giving anything.
class PageCount final : public ISink {
 public:
  void Receive(const Happening& happening) override;

  /// [after the run]
  PagesCounted Pages() const { return pages; }

 private:
  PagesCounted pages = {0, 0};
  bool gaveData = false;
  bool failed = false;
};

}  // namespace conduit
