/// Univariate reference data sets of NIST, where they are at hand.

#include <cmath>
#include <fstream>
#include <string>

#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

/// Numbers of a text file; lines that begin with # are comments.
std::vector<double> ReadNumbers(const std::string& path) {
  std::vector<double> numbers;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') numbers.push_back(std::stod(line));
  }
  return numbers;
}

/// Number of decimal digits in which a value agrees with the truth.
double AgreeingDigits(double value, double truth) {
  return value == truth ? 16 : -std::log10(std::fabs(value - truth) / std::fabs(truth));
}

struct ReferenceSet {
  const char* name;
  int count;
  double mean, standardDeviation;
  double meanDigits, deviationDigits;  ///< documented in docs/accuracy.md
};

TEST(StatReferenceData, MeanAndStandardDeviationToTheCertifiedDigits) {
  const ReferenceSet sets[] = {
      {"michelson", 100, 299.852400000000, 0.0790105478190518, 15, 13.8},
      {"lew", 200, -177.435000000000, 277.332168044316, 15, 15},
  };
  EmbeddedHost host;
  for (const ReferenceSet& set : sets) {
    auto x = ReadNumbers(std::string(TARN_SOURCE_DIR) + "/../shared/data/" + set.name + ".txt");
    if (x.empty()) GTEST_SKIP() << "reference data " << set.name << ".txt is not at hand";
    ASSERT_EQ(SizeOf(x), set.count);
    const Stat stat(x.data(), SizeOf(x));
    const double mean = AgreeingDigits(stat.GetMean(), set.mean);
    const double deviation = AgreeingDigits(std::sqrt(stat.GetDisp()), set.standardDeviation);
    RecordProperty(std::string(set.name) + "_mean_digits", std::to_string(mean));
    RecordProperty(std::string(set.name) + "_deviation_digits", std::to_string(deviation));
    EXPECT_GE(mean, set.meanDigits) << set.name;
    EXPECT_GE(deviation, set.deviationDigits) << set.name;
  }
}

}  // namespace
