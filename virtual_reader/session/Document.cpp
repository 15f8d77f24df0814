#include "virtual_reader/session/Document.h"

#include <utility>

namespace conduit {

std::optional<Document> TakeFirst(std::deque<Document>* documents) {
  if (documents->empty()) {
    return {};
  }
  std::optional<Document> first = std::move(documents->front());
  documents->pop_front();
  return first;
}

Step* LastActions(Document* document) {
  if (document->parts.empty() || !std::holds_alternative<Step>(document->parts.back())) {
    document->parts.emplace_back(std::in_place_type<Step>);
  }
  return &std::get<Step>(document->parts.back());
}

}  // namespace conduit
