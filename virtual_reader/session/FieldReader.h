#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "virtual_reader/session/SessionField.h"
#include "virtual_reader/session/StepBuilder.h"

namespace conduit {

/// What a field adds to the step that it stands in.
using StepPart = std::function<void(StepBuilder*)>;

/// What each field that an object may have is read by.
template <class Owner>
struct FieldReader {
  const char* name;
  StepPart (Owner::*read)(const SessionField&);
};

/// The parts of an object's fields, in their order.
template <class Owner>
StepPart ReadFields(Owner& owner, const SessionField& object,
                    const std::vector<FieldReader<Owner>>& readers) {
  std::vector<std::string> names;
  names.reserve(readers.size());
  for (const auto& reader : readers) {
    names.emplace_back(reader.name);
  }
  std::vector<StepPart> parts;
  for (const auto& [name, field] : object.Fields(names)) {
    const auto position = std::find(names.begin(), names.end(), name) - names.begin();
    parts.push_back((owner.*readers[static_cast<std::size_t>(position)].read)(field));
  }
  return [parts = std::move(parts)](StepBuilder* step) {
    for (const StepPart& part : parts) {
      part(step);
    }
  };
}

/// The error of a step, and of a document.
inline StepPart RaisingError(const SessionField& field) {
  return [text = field.Text()](StepBuilder* step) { step->Add(RaiseError{text}); };
}

}  // namespace conduit
