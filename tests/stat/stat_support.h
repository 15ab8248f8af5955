#ifndef TARN_TESTS_STAT_STAT_SUPPORT_H
#define TARN_TESTS_STAT_STAT_SUPPORT_H

/// Samples to try the statistics with, what is protected in them, and comparison of bits.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <istream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "stat/stat.h"
#include "stat/stat_weighted.h"

namespace stat_test {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Equal bits, or NaN both.
inline bool SameBits(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

#define EXPECT_SAME_BITS(a, b) EXPECT_PRED2(::stat_test::SameBits, a, b)

inline int SizeOf(const std::vector<double>& values) { return static_cast<int>(values.size()); }

/// The rows of a file of true values; lines that begin with # are comments.
inline std::vector<std::string> ReadRows(const std::string& name) {
  std::ifstream file(std::string(TARN_SOURCE_DIR) + "/tests/stat/data/" + name);
  std::vector<std::string> rows;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') rows.push_back(line);
  }
  return rows;
}

/// The next `n` numbers of a row.
inline std::vector<double> Take(std::istream& row, int n) {
  std::vector<double> values(static_cast<std::size_t>(n));
  for (double& value : values) row >> value;
  return values;
}

/// What a derived class sees of a sample.
class StatAccess : public Stat {
 public:
  using Stat::Stat;
  explicit StatAccess(std::vector<double> x) : Stat(x.data(), SizeOf(x)) {}
  StatAccess(std::vector<double> x, std::vector<double> d, int meanType)
      : Stat(x.data(), d.data(), SizeOf(x), meanType) {}

  using Stat::CheckDistrType;
  using Stat::FitCumulativeDistribution;
  using Stat::GetLogLikelihoodOfGauss;
  using Stat::GetLogLikelihoodOfLogNormal;
  using Stat::GetSEM2OfMostProbableValue;
  using Stat::ReleaseCumulativeDistr;

  using Stat::Accuracy;
  using Stat::AuxArray;
  using Stat::CumLen;
  using Stat::CumP;
  using Stat::CumX;
  using Stat::Data;
  using Stat::DataDisp;
  using Stat::Disp;
  using Stat::Disp0;
  using Stat::DispSimple;
  using Stat::DistrType;
  using Stat::E2;
  using Stat::E3;
  using Stat::E4;
  using Stat::estDataDisp;
  using Stat::len;
  using Stat::LogNormDisp;
  using Stat::LogNormMean;
  using Stat::Max;
  using Stat::Mean;
  using Stat::MeanType;
  using Stat::Min;
  using Stat::SEM2;
  using Stat::Sum;
};

/// Random samples from a fixed seed.
class Samples {
 public:
  explicit Samples(std::uint64_t seed) : generator_(seed) {}
  double Unit() { return std::uniform_real_distribution<double>(0, 1)(generator_); }
  double Normal(double mean, double sigma) {
    return std::normal_distribution<double>(mean, sigma)(generator_);
  }
  std::vector<double> Uniform(int n, double lo, double hi) {
    return Make(n, [&] { return lo + (hi - lo) * Unit(); });
  }
  std::vector<double> Normals(int n, double mean, double sigma) {
    return Make(n, [&] { return Normal(mean, sigma); });
  }
  std::vector<double> LogNormals(int n, double mean, double sigma) {
    return Make(n, [&] { return std::exp(Normal(mean, sigma)); });
  }
  template <class Draw>
  std::vector<double> Make(int n, Draw draw) {
    std::vector<double> values(static_cast<std::size_t>(n));
    for (double& value : values) value = draw();
    return values;
  }

 private:
  std::mt19937_64 generator_;
};

}  // namespace stat_test

#endif
