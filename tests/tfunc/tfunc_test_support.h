#ifndef TARN_TESTS_TFUNC_TFUNC_TEST_SUPPORT_H
#define TARN_TESTS_TFUNC_TFUNC_TEST_SUPPORT_H

/// Tables to try tabulated functions with, and comparison of bits.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tfunc/tfunc.h"

namespace tfunc_test {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Equal bits, or NaN both.
inline bool SameBits(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

struct Table {
  std::string name;
  std::vector<double> x, y;

  int Size() const { return static_cast<int>(x.size()); }
};

inline TFunc MakeFunction(const Table& table) {
  return TFunc(table.x.data(), table.y.data(), table.Size());
}

/// An array of doubles that begins and ends at memory nobody may touch, so that a read beyond
/// either end ends the process.
class GuardedArray {
 public:
  /// `atEnd`: the elements end at the forbidden page; otherwise they begin behind one.
  GuardedArray(const std::vector<double>& values, bool atEnd) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t bytes = values.size() * sizeof(double);
    const std::size_t inner = (bytes + page - 1) / page * page + page;
    size_ = inner + 2 * page;
    map_ = mmap(nullptr, size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    char* const first = static_cast<char*>(map_) + page;
    mprotect(first, inner, PROT_READ | PROT_WRITE);
    void* const start = atEnd ? first + inner - bytes : first;
    data_ = static_cast<double*>(start);
    std::copy(values.begin(), values.end(), data_);
  }
  ~GuardedArray() { munmap(map_, size_); }
  GuardedArray(const GuardedArray&) = delete;
  GuardedArray& operator=(const GuardedArray&) = delete;

  double* Data() { return data_; }

 private:
  void* map_;
  std::size_t size_;
  double* data_;
};

inline constexpr std::size_t kSizes[] = {1,  2,  3,  4,  5,  6,  7,   8,   9,
                                         10, 12, 13, 31, 32, 33, 100, 1000};

/// Tables of many kinds and sizes. `ascending`: only those whose abscissae ascend weakly, without
/// NaN; the others add tables that break this rule in every way.
inline std::vector<Table> MakeTables(bool ascending) {
  std::mt19937_64 generator(20240917);
  std::uniform_real_distribution<double> unit(0, 1);
  std::vector<Table> tables;
  const auto add = [&](const std::string& name, std::vector<double> x) {
    std::vector<double> y(x.size());
    for (double& value : y) value = 4 * unit(generator) - 2;
    tables.push_back({name + "/" + std::to_string(x.size()), std::move(x), std::move(y)});
  };
  for (const std::size_t n : kSizes) {
    std::vector<double> x(n);
    for (std::size_t i = 0; i < n; ++i) x[i] = -3 + 0.25 * static_cast<double>(i);
    add("uniform", x);
    for (double& value : x) value = 10 * unit(generator) - 5;
    const std::vector<double> shuffled = x;
    std::sort(x.begin(), x.end());
    add("random", x);
    for (double& value : x) value = std::floor(value);
    add("tied", x);
    add("constant", std::vector<double>(n, 1.5));
    if (ascending) continue;
    add("shuffled", shuffled);
    add("descending", std::vector<double>(x.rbegin(), x.rend()));
    std::vector<double> holes = shuffled;
    std::sort(holes.begin(), holes.end());
    for (double& value : holes) value = unit(generator) < 0.2 ? kNaN : value;
    add("holes", holes);
    for (double& value : holes) value = unit(generator) < 0.2 ? kInfinity : value;
    add("infinities", holes);
    add("nan", std::vector<double>(n, kNaN));
  }
  return tables;
}

/// Arguments for a table: its abscissae and their neighbours, points between and beyond, special
/// values; in random order, so that no search profits from the one before.
inline std::vector<double> MakeArguments(const Table& table, std::uint64_t seed) {
  std::mt19937_64 generator(seed);
  std::uniform_real_distribution<double> around(-6, 6);
  std::vector<double> arguments = {kNaN, kInfinity, -kInfinity, 0.0, -0.0, 1e300, -1e300, 5e-324};
  for (int i = 0; i < 40; ++i) arguments.push_back(around(generator));
  for (std::size_t i = 0; i < table.x.size(); i += 1 + table.x.size() / 40) {
    arguments.push_back(table.x[i]);
    arguments.push_back(std::nextafter(table.x[i], kInfinity));
    arguments.push_back(std::nextafter(table.x[i], -kInfinity));
    if (i > 0) arguments.push_back((table.x[i - 1] + table.x[i]) / 2);
  }
  std::shuffle(arguments.begin(), arguments.end(), generator);
  return arguments;
}

}  // namespace tfunc_test

#endif
