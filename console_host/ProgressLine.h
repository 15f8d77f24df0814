#pragma once

#include <chrono>
#include <ostream>
#include <string>

#include "hosting/RunListener.h"

namespace conduit {

/// The last line of a terminal, which says how far a long run has come. It makes
/// way for whatever else is to be written, and comes back when the host waits.
///
/// REQUIRES: is the first of the listeners, so that the others find their line empty.
class ProgressLine final : public RunListener {
 public:
  /// REQUIRES: `output` is a terminal and outlives this.
  /// @param after  the age of a run that counts as long
  ProgressLine(std::ostream& output, std::chrono::milliseconds after);

  void OnAnything() override { Show(""); }
  void OnDataBegan(const Document& document) override { documents = document.number; }
  void OnItem(const ItemReceived& /*item*/) override { ++items; }
  void OnError(const ErrorReported& error) override { errors += error.text.empty() ? 0 : 1; }
  void OnTimePassed() override;

 private:
  std::string Text(std::chrono::seconds age) const;
  void Show(const std::string& text);

  std::ostream& output;
  const std::chrono::milliseconds after;
  const std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
  std::string shown;
  int documents = 0;
  int items = 0;
  int errors = 0;
};

}  // namespace conduit
