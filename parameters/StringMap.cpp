#include "parameters/StringMap.h"

#include "runtime/Text.h"

namespace conduit {

std::int32_t StringMap::Count() { return static_cast<std::int32_t>(entries.size()); }

void StringMap::Set(const char* key, const char* value) {
  // Constructs key and value in place, to save copies.
  const LentText lentKey{OrEmpty(key)};
  const auto place = entries.lower_bound(lentKey);
  if (place == entries.end() || place->first > lentKey) {
    entries.emplace_hint(place, key, value);
  } else {
    place->second = value;
  }
}

const char* StringMap::Get(const char* key) {
  const auto entry = entries.find(LentText{OrEmpty(key)});
  return entry != entries.end() ? entry->second.buffer : nullptr;
}

void StringMap::RemoveAll() { entries.clear(); }

void StringMap::Remove(const char* key) { entries.erase(key); }

}  // namespace conduit
