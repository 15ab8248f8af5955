// Sorting, median and search: plain numbers, and the order among equal keys.

#include <limits>
#include <numeric>
#include <type_traits>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {
namespace {

constexpr std::int64_t kSizes[] = {0,   1,   2,   3,   4,   5,   7,   8,    9,    15,   16,  17,
                                   31,  32,  33,  63,  64,  65,  99,  100,  101,  127,  128, 129,
                                   255, 257, 298, 299, 300, 301, 500, 1000, 3000, 20000};

enum class Kind { kWide, kTied, kAscending, kDescending, kSignedZeros, kWithNan, kCount };

template <class T>
T MakeValue(Inputs& inputs, Kind kind, std::int64_t i) {
  switch (kind) {
    case Kind::kWide:
      if constexpr (std::is_integral_v<T>) return static_cast<T>(inputs.Bits());
      return static_cast<T>(inputs.Wide(-100, 100));
    case Kind::kTied:
      return static_cast<T>(inputs.Integer(-9, 9));
    case Kind::kAscending:
      return static_cast<T>(i);
    case Kind::kDescending:
      return static_cast<T>(-i);
    case Kind::kSignedZeros:
      return static_cast<T>(static_cast<double>(inputs.Integer(0, 2) - 1) * 0.0);
    case Kind::kWithNan:
    case Kind::kCount:
      break;
  }
  const std::int64_t choice = inputs.Integer(0, 7);
  return choice == 0 ? std::numeric_limits<T>::quiet_NaN() : static_cast<T>(choice);
}

template <class T>
std::vector<T> MakeValues(Inputs& inputs, Kind kind, std::int64_t n) {
  std::vector<T> values;
  for (std::int64_t i = 0; i < n; ++i) values.push_back(MakeValue<T>(inputs, kind, i));
  return values;
}

/// Calls `compute(values)` for inputs of every kind and size.
template <class T, class Compute>
void ForAllValues(Compute compute) {
  Inputs inputs(7);
  for (int kind = 0; kind < static_cast<int>(Kind::kCount); ++kind) {
    for (const std::int64_t n : kSizes) {
      std::vector<T> values = MakeValues<T>(inputs, static_cast<Kind>(kind), n);
      compute(values, n);
    }
  }
}

template <class T>
void Values(Report& report, const std::string& type) {
  report.Function("QSort<" + type + ">", [](Hash& hash) {
    ForAllValues<T>([&hash](std::vector<T>& values, std::int64_t n) {
      QSort(values.data(), n);
      hash.Add(values);
    });
  });
  report.Function("BFindInsertIndex<" + type + ">", [](Hash& hash) {
    Inputs queries(8);
    ForAllValues<T>([&](std::vector<T>& values, std::int64_t n) {
      QSort(values.data(), n);
      for (int i = 0; i < 20; ++i) {
        const double value = queries.Wide(-3, 30);
        hash.Add(BFindInsertIndex(values.data(), value, n));
        hash.Add(BFindInsertIndex(values.data(), value, n / 2, std::int64_t{2}));
        hash.Add(BFind(values.data(), static_cast<double>(queries.Integer(-9, 9)), n));
      }
    });
  });
}

template <class T>
void Medians(Report& report, const std::string& type) {
  report.Function("QMedian<" + type + ">", [](Hash& hash) {
    Inputs inputs(9);
    for (int repetition = 0; repetition < 20000; ++repetition) {
      const auto kind = static_cast<Kind>(repetition % static_cast<int>(Kind::kCount));
      std::vector<T> values = MakeValues<T>(inputs, kind, inputs.Integer(0, 40));
      hash.Add(QMedian(values.data(), static_cast<std::int64_t>(values.size())));
    }
    ForAllValues<T>(
        [&hash](std::vector<T>& values, std::int64_t n) { hash.Add(QMedian(values.data(), n)); });
  });
}

template <class T>
void Records(Report& report, const std::string& type) {
  report.Function("QSort<svd_index<" + type + ">>", [](Hash& hash) {
    ForAllValues<T>([&hash](const std::vector<T>& values, std::int64_t n) {
      std::vector<svd_index<T>> records;
      for (const T value : values) {
        records.push_back({value, static_cast<std::int32_t>(records.size())});
      }
      QSort(records.data(), n);
      for (const svd_index<T>& record : records) hash.Add(record.index);
    });
  });
}

void Indices(Report& report) {
  report.Function("QSortIndex", [](Hash& hash) {
    ForAllValues<double>([&hash](std::vector<double>& keys, std::int64_t n) {
      std::vector<int> indices(keys.size());
      std::iota(indices.begin(), indices.end(), 0);
      QSortIndex(indices.data(), keys.data(), n);
      hash.Add(indices);
    });
  });
}

template <class T>
void Arrays(Report& report, const std::string& type) {
  report.Function("T_Array<" + type + ">::QSort", [](Hash& hash) {
    ForAllValues<T>([&hash](const std::vector<T>& values, std::int64_t n) {
      T_Array<T> array(n);
      for (std::int64_t i = 0; i < n; ++i) array[i] = values[static_cast<std::size_t>(i)];
      array.QSort();
      for (std::int64_t i = 0; i < n; ++i) hash.Add(array[i]);
    });
  });
}

}  // namespace

void RunGoldenSorting(Report& report) {
  Values<int>(report, "int");
  Values<float>(report, "float");
  Values<double>(report, "double");
  Medians<short>(report, "short");
  Medians<int>(report, "int");
  Medians<float>(report, "float");
  Medians<double>(report, "double");
  Records<float>(report, "float");
  Records<double>(report, "double");
  Indices(report);
  Arrays<int>(report, "int");
  Arrays<float>(report, "float");
  Arrays<double>(report, "double");
}

}  // namespace tarn_golden
