#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "runtime/PtrList.h"

namespace conduit {
namespace {

/// An element whose virtual destructor records the destruction.
struct Element {
  Element(int number, std::vector<int>* destroyed) : number(number), destroyed(destroyed) {}
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;
  virtual ~Element() { destroyed->push_back(number); }

  int number;
  std::vector<int>* destroyed;
};

class PtrListTest : public testing::Test {
 protected:
  /// Adds new elements 0, 1, 2 ... that live as long as the test.
  void Fill(int count) {
    for (int number = 0; number < count; ++number) {
      owned.push_back(std::make_unique<Element>(number, &destroyed));
      list.Add(owned.back().get());
    }
  }

  std::vector<int> Numbers() {
    std::vector<int> numbers;
    for (auto snapshot = list.GetEnumerator(); snapshot.HasMore(); snapshot.MoveNext()) {
      numbers.push_back(snapshot.Current()->number);
    }
    return numbers;
  }

  std::vector<int> destroyed;
  std::vector<std::unique_ptr<Element>> owned;
  PtrList<Element> list;
};

std::int32_t ByNumber(Element* left, Element* right) { return left->number - right->number; }

using Ints = std::vector<int>;

TEST_F(PtrListTest, GrowsByFourEightAndThenSixteen) {
  EXPECT_EQ(list.items, nullptr);
  const Ints capacityAfter = {4, 4, 4, 4, 8, 8, 8, 8, 16};
  for (int index = 0; index < 49; ++index) {
    owned.push_back(std::make_unique<Element>(index, &destroyed));
    EXPECT_EQ(list.Add(owned.back().get()), index);
    if (index < 9) {
      EXPECT_EQ(list.capacity, capacityAfter[static_cast<std::size_t>(index)]);
    }
  }
  EXPECT_EQ(list.capacity, 64);
  EXPECT_EQ(list.Count(), 49);
}

TEST_F(PtrListTest, OnlyDeleteAllDestroysElements) {
  list.DeleteAll();
  EXPECT_EQ(list.items, nullptr);
  {
    PtrList<Element> passing;
    owned.push_back(std::make_unique<Element>(9, &destroyed));
    passing.Add(owned.back().get());
    passing.RemoveAll();
    passing.Add(owned.back().get());
  }
  EXPECT_EQ(destroyed, Ints{});

  for (int number = 0; number < 3; ++number) {
    list.Add(new Element(number, &destroyed));
  }
  list.InsertAt(1, nullptr);
  list.DeleteAll();
  EXPECT_EQ(destroyed, (Ints{0, 1, 2}));
  EXPECT_EQ(list.items, nullptr);
  EXPECT_EQ(list.capacity, 0);
  EXPECT_EQ(list.count, 0);
  list.Add(new Element(3, &destroyed));
  EXPECT_EQ(list.First()->number, 3) << "the list begins anew";
  list.DeleteAll();
}

TEST_F(PtrListTest, SnapshotDoesNotFollowTheList) {
  auto empty = list.GetEnumerator();
  EXPECT_EQ(empty.capacity, 4);
  EXPECT_FALSE(empty.HasMore());

  Fill(5);
  auto snapshot = list.GetEnumerator();
  list.RemoveAll();
  EXPECT_EQ(snapshot.capacity, 8);
  EXPECT_EQ(snapshot.Current(), owned[0].get());
  EXPECT_EQ(snapshot.count, 5);
}

TEST_F(PtrListTest, EnumeratorAddsEnumeratorsAndArrays) {
  Fill(5);
  auto first = list.GetEnumerator();
  auto second = list.GetEnumerator();
  second.MoveNext();
  Element* array[] = {owned[0].get(), owned[4].get()};
  first.AddAll(second).AddArray(array, 2).AddArray(array, 0).AddArray(array, -1);
  Ints numbers;
  for (first.Reset(); first.HasMore(); first.MoveNext()) {
    numbers.push_back(first.Current()->number);
  }
  EXPECT_EQ(numbers, (Ints{0, 1, 2, 3, 4, 0, 1, 2, 3, 4, 0, 4}));
}

TEST_F(PtrListTest, CapacityDropsSurplusElementsAlive) {
  Fill(3);
  Element** const before = list.items;
  list.SetCapacity(0);
  list.SetCapacity(-1);
  list.SetCapacity(4);
  EXPECT_EQ(list.items, before);
  list.SetCapacity(2);
  EXPECT_EQ(Numbers(), (Ints{0, 1}));
  EXPECT_EQ(list.capacity, 2);
  EXPECT_EQ(destroyed, Ints{});
}

TEST_F(PtrListTest, InsertsRemovesAndFinds) {
  Fill(4);
  list.InsertAt(4, owned[0].get());
  list.InsertAt(0, owned[3].get());
  EXPECT_EQ(Numbers(), (Ints{3, 0, 1, 2, 3, 0}));
  EXPECT_EQ(list.First()->number, 3);
  EXPECT_EQ(list.Last()->number, 0);
  EXPECT_EQ(list.IndexOf(owned[3].get(), 0, nullptr), 0);
  EXPECT_EQ(list.IndexOf(owned[3].get(), 1, ByNumber), 4);
  EXPECT_EQ(list.RemoveAt(5)->number, 0);
  EXPECT_EQ(list.RemoveAt(0)->number, 3);
  EXPECT_TRUE(list.Remove(owned[1].get(), nullptr));
  EXPECT_FALSE(list.Remove(owned[1].get(), ByNumber));
  EXPECT_EQ(Numbers(), (Ints{0, 2, 3}));
  EXPECT_TRUE(list.Remove(owned[0].get(), nullptr));
  EXPECT_EQ(Numbers(), (Ints{2, 3}));
  list.InsertAt(0, owned[0].get());
  list.Swap(0, 2);
  list.SetAt(1, owned[1].get());
  EXPECT_EQ(Numbers(), (Ints{3, 1, 0}));
  list.RemoveAll();
  EXPECT_EQ(list.IndexOf(owned[0].get(), 7, nullptr), -1);
}

TEST_F(PtrListTest, SortsFromAnyOrder) {
  list.Sort(ByNumber);
  Fill(50);
  Ints expected = Numbers();
  for (const unsigned seed : {0U, 1U, 2U}) {
    std::shuffle(list.items, list.items + list.count, std::mt19937(seed));
    list.Sort(ByNumber);
    EXPECT_EQ(Numbers(), expected);
  }
  std::reverse(list.items, list.items + list.count);
  list.Add(owned[7].get());
  expected.insert(expected.begin() + 7, 7);
  list.Sort(ByNumber);
  EXPECT_EQ(Numbers(), expected);
  list.Sort(nullptr);
  EXPECT_TRUE(std::is_sorted(list.items, list.items + list.count, std::less<>()));
}

}  // namespace
}  // namespace conduit
