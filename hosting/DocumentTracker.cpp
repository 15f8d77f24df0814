#include "hosting/DocumentTracker.h"

#include <utility>

namespace conduit {

DocumentTracker::DocumentTracker(Told began, Told ended)
    : began(std::move(began)), ended(std::move(ended)) {}

void DocumentTracker::Named(const std::string& source) {
  End();
  Begin(source);
}

void DocumentTracker::LaidDown() {
  ++pages.all;
  if (current && (current->laidDown || current->gaveItems)) {
    End();
  }
  BeginUnlessOpen();
  current->laidDown = true;
}

void DocumentTracker::DataBegan() {
  if (current && !current->laidDown && current->gaveItems) {
    End();
  }
  BeginUnlessOpen();
  current->number = ++numbers;
  current->dataOpen = true;
  current->gaveItems = true;
}

void DocumentTracker::DataEnded() {
  if (current) {
    current->dataOpen = false;
  }
}

void DocumentTracker::ItemCame() {
  BeginUnlessOpen();
  current->gaveItems = true;
}

void DocumentTracker::ErrorCame() {
  if (current && current->laidDown) {
    current->failed = true;
  }
}

void DocumentTracker::End() {
  if (!current) {
    return;
  }
  const Document document = *std::exchange(current, std::nullopt);
  if (document.Kind() == DocumentKind::Unread) {
    ++pages.unread;
  }
  ended(document);
}

void DocumentTracker::Begin(const std::string& source) {
  current.emplace().source = source;
  began(*current);
}

void DocumentTracker::BeginUnlessOpen() {
  if (!current) {
    Begin("");
  }
}

}  // namespace conduit
