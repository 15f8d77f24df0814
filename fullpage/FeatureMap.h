#pragma once

#include <cstdint>
#include <cstring>
#include <optional>

#include "parameters/StringMap.h"
#include "runtime/Text.h"
#include "runtime/TextBuilder.h"
#include <conduit/IStringMap.h>
#include <conduit/Implements.h>
#include <conduit/ItemName.h>

namespace conduit {

/// The properties of a barcode: a StringMap that initially holds its feature. Creates the
/// map at a host's first change: most hosts only read, and reading does not allocate.
class FeatureMap final : public Implements<IStringMap> {
 public:
  /// @param index  the barcode's 0-based position among those of the same read
  explicit FeatureMap(std::int32_t index) { feature << index; }
  FeatureMap(const FeatureMap&) = delete;
  FeatureMap& operator=(const FeatureMap&) = delete;
  ~FeatureMap() override = default;

  std::int32_t Count() override { return changed ? changed->Count() : 1; }
  void Set(const char* key, const char* value) override { Changed().Set(key, value); }
  const char* Get(const char* key) override {
    if (changed) {
      return changed->Get(key);
    }
    return std::strcmp(OrEmpty(key), ItemProperty::Feature) == 0 ? feature.Text() : nullptr;
  }
  void RemoveAll() override { Changed().RemoveAll(); }
  void Remove(const char* key) override { Changed().Remove(key); }

 private:
  StringMap& Changed() {
    if (!changed) {
      changed.emplace().Set(ItemProperty::Feature, feature.Text());
    }
    return *changed;
  }

  TextBuilder feature;
  std::optional<StringMap> changed;
};

}  // namespace conduit
