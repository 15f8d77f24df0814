#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include "runtime/BaseString.h"
#include <conduit/IStringMap.h>
#include <conduit/Implements.h>

namespace conduit {

/// The properties of one item. The host borrows them for the call. One thread at a time.
class StringMap : public Implements<IStringMap> {
 public:
  std::int32_t Count() override;
  void Set(const char* key, const char* value) override;
  const char* Get(const char* key) override;
  void RemoveAll() override;
  void Remove(const char* key) override;

 private:
  std::map<BaseString<char>, BaseString<char>, std::less<>> entries;
};

}  // namespace conduit
