#include "parameters/StringMap.h"

namespace conduit {

std::int32_t StringMap::Count() { return static_cast<std::int32_t>(entries.size()); }

void StringMap::Set(const char* key, const char* value) { entries.insert_or_assign(key, value); }

const char* StringMap::Get(const char* key) {
  const auto entry = entries.find(key);
  return entry != entries.end() ? entry->second.buffer : nullptr;
}

void StringMap::RemoveAll() { entries.clear(); }

void StringMap::Remove(const char* key) { entries.erase(key); }

}  // namespace conduit
