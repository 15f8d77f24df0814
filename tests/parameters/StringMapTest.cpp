#include <gtest/gtest.h>

#include "parameters/StringMap.h"

namespace conduit {
namespace {

TEST(StringMap, KeepsOneValueForEachKey) {
  StringMap map;
  EXPECT_EQ(map.Count(), 0);
  EXPECT_EQ(map.Get("feature"), nullptr);
  map.Set("feature", "1");
  map.Set("feature", "2");
  EXPECT_EQ(map.Count(), 1);
  EXPECT_STREQ(map.Get("feature"), "2");
  EXPECT_EQ(map.Get("Feature"), nullptr);
  map.Remove("Feature");
  EXPECT_EQ(map.Count(), 1);
  map.Remove("feature");
  map.RemoveAll();
  EXPECT_EQ(map.Count(), 0);
}

TEST(StringMap, NullCountsAsTheEmptyText) {
  StringMap map;
  map.Set("key", nullptr);
  EXPECT_STREQ(map.Get("key"), "");
  map.Set(nullptr, "value");
  EXPECT_STREQ(map.Get(""), "value");
  EXPECT_STREQ(map.Get(nullptr), "value");
  map.Remove(nullptr);
  EXPECT_EQ(map.Count(), 1);
}

}  // namespace
}  // namespace conduit
