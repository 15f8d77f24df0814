#pragma once

#include <map>
#include <string>

#include "hosting/RunListener.h"

namespace conduit {

/// Whose document it is, gathered from its items: what its codeline says, and what an
/// AAMVA record says where there is no codeline.
class DocumentSummary {
 public:
  void Take(const ItemReceived& item);
  void Clear() { values.clear(); }

  /// "PASSPORT: ERIKSSON, ANNA MARIA, number L898902C3, born ..., expires ...";
  /// the module's bytes; empty when the items name nobody.
  std::string Text() const;

 private:
  std::string ValueOf(const char* codelineItem, const char* licenceItem) const;

  std::map<std::string, std::string> values;  ///< of the items that it needs
};

}  // namespace conduit
