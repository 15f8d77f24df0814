#include <gtest/gtest.h>

#include "fullpage/FeatureMap.h"

namespace conduit {
namespace {

TEST(FeatureMap, KeepsItsFeatureWhenAHostAddsAProperty) {
  FeatureMap map(7);
  EXPECT_EQ(map.Count(), 1);
  EXPECT_STREQ(map.Get("feature"), "7");
  EXPECT_EQ(map.Get("host"), nullptr);

  map.Set("host", "mine");
  EXPECT_EQ(map.Count(), 2);
  EXPECT_STREQ(map.Get("feature"), "7");
  EXPECT_STREQ(map.Get("host"), "mine");

  map.Remove("feature");
  EXPECT_EQ(map.Count(), 1);
  EXPECT_EQ(map.Get("feature"), nullptr);
  map.RemoveAll();
  EXPECT_EQ(map.Count(), 0);
}

TEST(FeatureMap, LosesItsFeatureWhenAHostRemovesItFirst) {
  FeatureMap map(7);
  map.Remove("feature");
  EXPECT_EQ(map.Count(), 0);
  EXPECT_EQ(map.Get("feature"), nullptr);
}

}  // namespace
}  // namespace conduit
