// Every allocation refused in turn, for everything here that allocates: no crash, no leak, no
// error, and an array is whole or empty.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "arrays/array_access.h"
#include "arrays/array_new_refusal.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

/// Something that allocates, including the objects that it works on.
struct Scenario {
  std::string name;
  std::function<void()> run;
};

template <class T>
void ExpectWhole(const ArrayAccess<T>& array) {
  EXPECT_GE(array.len, 0);
  EXPECT_TRUE(array.data != nullptr || array.len == 0);
  for (std::int64_t i = 0; i < array.len; ++i) EXPECT_EQ(array[i], array[i]);
}
template <class T>
void ExpectWhole(const RecordAccess<T>& records) {
  EXPECT_GE(records.len, 0);
  EXPECT_TRUE(records.data != nullptr || records.len == 0);
  for (const T x : Elements(records)) EXPECT_EQ(x, x);
}

template <class T>
ArrayAccess<T> Numbers(std::int64_t n) {
  ArrayAccess<T> array(n);
  for (std::int64_t i = 0; i < array.Len(); ++i) array[i] = static_cast<T>(n - i);
  return array;
}
template <class T>
RecordAccess<T> Rows(std::int64_t n) {
  RecordAccess<T> records(n, 2);
  for (std::int64_t i = 0; i < records.Len(); ++i) records(i, 0) = static_cast<T>(i);
  return records;
}

template <class T>
void AddArrayScenarios(std::vector<Scenario>& scenarios) {
  scenarios.push_back({"T_Array copies", [] {
                         const auto array = Numbers<T>(5);
                         const ArrayAccess<T> copy(array);
                         ExpectWhole(copy);
                         ArrayAccess<T> target(2);
                         target = copy;
                         ExpectWhole(target);
                       }});
  scenarios.push_back({"T_Array grows and shrinks", [] {
                         auto array = Numbers<T>(3);
                         array.InsertItem(1, 5);
                         ExpectWhole(array);
                         array.RemoveItem(0);
                         ExpectWhole(array);
                         const std::int64_t length = array.SetLen(array.Len() / 2);
                         EXPECT_EQ(length, array.Len());
                         ExpectWhole(array);
                       }});
  scenarios.push_back({"T_Array sorts", [] {
                         auto array = Numbers<T>(500);
                         array.QSort();
                         ExpectWhole(array);
                       }});
  scenarios.push_back({"T_Array serialises", [] {
                         Variable value;
                         Numbers<T>(3).Serialize(value);
                         const char* const bytes = value;
                         if (!bytes) return;
                         const ArrayAccess<T> rebuilt(bytes, value.GetDim());
                         ExpectWhole(rebuilt);
                       }});
}

template <class T>
void AddRecordScenarios(std::vector<Scenario>& scenarios) {
  scenarios.push_back({"T_ArrayEx copies", [] {
                         const auto records = Rows<T>(4);
                         const RecordAccess<T> copy(records);
                         ExpectWhole(copy);
                         RecordAccess<T> target(1, 3);
                         target = copy;
                         ExpectWhole(target);
                       }});
  scenarios.push_back({"T_ArrayEx grows and shrinks", [] {
                         auto records = Rows<T>(3);
                         const T record[] = {1, 2};
                         records.InsertItem(1, record);
                         ExpectWhole(records);
                         records.RemoveItem(0);
                         ExpectWhole(records);
                         records.Clear();
                         const std::int64_t length = records.SetLen(2);
                         EXPECT_EQ(length, records.Len());
                         ExpectWhole(records);
                       }});
  scenarios.push_back({"T_ArrayEx serialises", [] {
                         Variable value;
                         Rows<T>(3).Serialize(value);
                       }});
  scenarios.push_back({"T_ArraySet", [] {
                         const SetAccess<T> set(3, 4);
                         const SetAccess<T> copy(set);
                         SetAccess<T> target(1, 1);
                         target = copy;
                         EXPECT_EQ(target.items, set.items);
                         EXPECT_EQ(target.Param(0), set.Len() > 0 ? set.params[0] : nullptr);
                       }});
}

template <class T>
void AddNumberScenarios(std::vector<Scenario>& scenarios) {
  scenarios.push_back({"QSort", [] {
                         std::vector<T> a(1000, T(3));
                         a[500] = 1;
                         QSort(a.data(), std::int64_t{1000});
                         EXPECT_EQ(a[0] + a[500], 4);  // sorted or untouched
                       }});
  scenarios.push_back({"QMedian", [] {
                         std::vector<T> a(1000, T(3));
                         const T median = QMedian(a.data(), std::int64_t{1000});
                         EXPECT_TRUE(median == 3 || median == 0);
                       }});
}

std::vector<Scenario> AllScenarios() {
  std::vector<Scenario> scenarios;
  AddArrayScenarios<int>(scenarios);
  AddArrayScenarios<float>(scenarios);
  AddArrayScenarios<double>(scenarios);
  AddRecordScenarios<float>(scenarios);
  AddRecordScenarios<double>(scenarios);
  AddNumberScenarios<int>(scenarios);
  AddNumberScenarios<float>(scenarios);
  AddNumberScenarios<double>(scenarios);
  scenarios.push_back({"QSortIndex", [] {
                         std::vector<double> keys(1000, 1);
                         std::vector<int> idx(1000, 7);
                         QSortIndex(idx.data(), keys.data(), std::int64_t{1000});
                       }});
  scenarios.push_back({"QSort of records", [] {
                         std::vector<svd_index<double>> records(1000, {2.0, 1});
                         QSort(records.data(), std::int64_t{1000});
                       }});
  return scenarios;
}

/// The two places that memory comes from.
struct Source {
  std::string name;
  std::function<void(std::function<bool(std::int64_t)>)> setFailure;
  std::function<std::int64_t()> requests;
};

class AllocationFailure : public testing::Test {
 protected:
  std::vector<Source> Sources() {
    return {{"host heap", [this](auto refuse) { host_.SetHeapFailure(refuse); },
             [this] { return host_.HeapRequestCount(); }},
            {"array new", [](auto refuse) { SetArrayNewFailure(refuse); }, ArrayNewRequestCount}};
  }

  void RunRefusing(const Scenario& scenario, const Source& source,
                   std::function<bool(std::int64_t)> refuse) {
    const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
    const std::int64_t arrays = LiveArrayCount();
    source.setFailure(std::move(refuse));
    scenario.run();
    source.setFailure({});
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
    EXPECT_EQ(LiveArrayCount(), arrays);
    EXPECT_FALSE(host_.HasError());
  }

  EmbeddedHost host_;
};

TEST_F(AllocationFailure, OfEveryRequestInTurnIsBorne) {
  std::int64_t refusals = 0;
  for (const Scenario& scenario : AllScenarios()) {
    for (const Source& source : Sources()) {
      source.setFailure({});
      scenario.run();
      const std::int64_t requests = source.requests();
      for (std::int64_t k = 1; k <= requests; ++k, ++refusals) {
        SCOPED_TRACE(scenario.name + ", " + source.name + ", request " + std::to_string(k));
        RunRefusing(scenario, source, [k](std::int64_t request) { return request == k; });
        RunRefusing(scenario, source, [k](std::int64_t request) { return request >= k; });
      }
    }
  }
  EXPECT_GE(refusals, 90);
}

TEST_F(AllocationFailure, OfEitherPointerArrayLeavesAnEmptySet) {
  for (const std::int64_t refused : {1, 2}) {
    const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
    const std::int64_t arrays = LiveArrayCount();
    SetArrayNewFailure([refused](std::int64_t request) { return request == refused; });
    {
      const SetAccess<double> set(3, 4);
      EXPECT_EQ(ArrayNewRequestCount(), 2);
      EXPECT_EQ(set.ok, 0);
      EXPECT_EQ(set.Len(), 0);
      EXPECT_EQ(set.Param(0), nullptr);
      EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
    }
    SetArrayNewFailure({});
    EXPECT_EQ(LiveArrayCount(), arrays);
  }
}

}  // namespace
}  // namespace tarn_test
