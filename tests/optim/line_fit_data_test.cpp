// T_Line_LSQM2 against certified fits: linear regression data of the NIST Statistical Reference
// Datasets, read where they are kept. Says so where they are not there.

#include <fstream>
#include <sstream>

#include "climb_support.h"

namespace {

double One(double, void*) { return 1; }
double Linear(double x, void*) { return x; }

/// Decimal digits to which `actual` agrees with `certified`.
double Digits(double actual, double certified) {
  const double error = std::fabs(actual - certified) / std::fabs(certified);
  return error == 0 ? 17 : -std::log10(error);
}

TEST_F(ClimbTest, NorrisDataAreFittedAsCertified) {
  const std::string path = std::string(TARN_SOURCE_DIR) + "/../shared/data/linear/norris.txt";
  std::ifstream file(path);
  if (!file) GTEST_SKIP() << "no reference data at " << path;
  std::vector<double> x;
  std::vector<double> y;
  for (std::string line; std::getline(file, line);) {
    std::istringstream row(line);
    double px = 0;
    double py = 0;
    if (line.empty() || line[0] == '#' || !(row >> px >> py)) continue;
    x.push_back(px);
    y.push_back(py);
  }
  ASSERT_EQ(x.size(), 36U);
  std::vector<double> var(x.size(), 1);
  double (*basis[2])(double, void*) = {One, Linear};
  T_Line_LSQM2<double> fit(basis, 2, y.data(), x.data(), var.data(), 36, 1e-9);
  fit.DoIt(0);
  const double variance = 26.6173985294224 / 34;
  EXPECT_GT(Digits(fit.GetA(0), -0.262323073774029), 9);
  EXPECT_GT(Digits(fit.GetA(1), 1.00211681802045), 11);
  EXPECT_GT(Digits(fit.GetResidue(), 26.6173985294224), 6);
  EXPECT_GT(Digits(std::sqrt((*fit.GetCovariance())(0, 0) * variance), 0.232818234301152), 10);
  EXPECT_GT(Digits(std::sqrt((*fit.GetCovariance())(1, 1) * variance), 0.429796848199937e-3), 10);
}

}  // namespace
