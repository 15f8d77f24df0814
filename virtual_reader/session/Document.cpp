#include "virtual_reader/session/Document.h"

namespace conduit {

Step* LastActions(Document* document) {
  if (document->parts.empty() || !std::holds_alternative<Step>(document->parts.back())) {
    document->parts.emplace_back(std::in_place_type<Step>);
  }
  return &std::get<Step>(document->parts.back());
}

}  // namespace conduit
