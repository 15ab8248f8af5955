// T_Line_LSQM2 against certified fits: linear regression data of the NIST Statistical Reference
// Datasets, read where they are kept. Says so where they are not there.

#include <fstream>
#include <sstream>

#include "climb_support.h"

namespace {

double One(double, void*) { return 1; }
double Linear(double x, void*) { return x; }
double Square(double x, void*) { return x * x; }

/// Decimal digits to which `actual` agrees with `certified`.
double Digits(double actual, double certified) {
  const double error = std::fabs(actual - certified) / std::fabs(certified);
  return error == 0 ? 17 : -std::log10(error);
}

/// Columns x and y of a file; lines that begin with # are comments.
struct Columns {
  explicit Columns(const std::string& name)
      : path(std::string(TARN_SOURCE_DIR) + "/../shared/data/linear/" + name) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
      std::istringstream row(line);
      double px = 0;
      double py = 0;
      if (line.empty() || line[0] == '#' || !(row >> px >> py)) continue;
      x.push_back(px);
      y.push_back(py);
    }
  }

  int Count() const { return static_cast<int>(x.size()); }

  std::string path;
  std::vector<double> x;
  std::vector<double> y;
};

TEST_F(ClimbTest, NorrisDataAreFittedAsCertified) {
  Columns points("norris.txt");
  if (points.x.empty()) GTEST_SKIP() << "no reference data at " << points.path;
  ASSERT_EQ(points.Count(), 36);
  std::vector<double> var(points.x.size(), 1);
  double (*basis[2])(double, void*) = {One, Linear};
  T_Line_LSQM2<double> fit(basis, 2, points.y.data(), points.x.data(), var.data(), 36, 1e-9);
  fit.DoIt(0);
  const double variance = 26.6173985294224 / 34;
  EXPECT_GT(Digits(fit.GetA(0), -0.262323073774029), 9);
  EXPECT_GT(Digits(fit.GetA(1), 1.00211681802045), 11);
  EXPECT_GT(Digits(fit.GetResidue(), 26.6173985294224), 6);
  EXPECT_GT(Digits(std::sqrt((*fit.GetCovariance())(0, 0) * variance), 0.232818234301152), 10);
  EXPECT_GT(Digits(std::sqrt((*fit.GetCovariance())(1, 1) * variance), 0.429796848199937e-3), 10);
}

TEST_F(ClimbTest, PontiusDataAreFittedAsCertified) {
  Columns points("pontius.txt");
  if (points.x.empty()) GTEST_SKIP() << "no reference data at " << points.path;
  ASSERT_EQ(points.Count(), 40);
  // In millions: otherwise the determinant leaves the range in which the matrix is taken as it is.
  for (double& x : points.x) x /= 1e6;
  std::vector<double> var(points.x.size(), 1);
  double (*basis[3])(double, void*) = {One, Linear, Square};
  T_Line_LSQM2<double> fit(basis, 3, points.y.data(), points.x.data(), var.data(), 40, 1e-9);
  fit.DoIt(0);
  EXPECT_GT(Digits(fit.GetA(0), 0.673565789473684e-3), 9);
  EXPECT_GT(Digits(fit.GetA(1), 0.732059160401003), 11);
  EXPECT_GT(Digits(fit.GetA(2), -0.316081871345029e-2), 9);
  EXPECT_GT(Digits(fit.GetResidue(), 0.155761768796992e-5), 6);
}

/// Every eighth value 30 standard deviations too high: the plain fit follows, the refined ones stay
/// within three errors of the certified line.
TEST_F(ClimbTest, RefinedFitsOfNorrisDataIgnoreOutliers) {
  Columns points("norris.txt");
  if (points.x.empty()) GTEST_SKIP() << "no reference data at " << points.path;
  const double variance = 26.6173985294224 / 34;
  std::vector<double> var(points.x.size(), variance);
  for (double& x : points.x) x /= 100;
  for (std::size_t i = 3; i < points.y.size(); i += 8) points.y[i] += 30 * std::sqrt(variance);
  double (*basis[2])(double, void*) = {One, Linear};
  const double certified[2] = {-0.262323073774029, 100.211681802045};
  const double errors[2] = {0.232818234301152, 0.0429796848199937};
  for (const int prior : {0, 1}) {
    T_Line_LSQM2<double> fit(basis, 2, points.y.data(), points.x.data(), var.data(), 36, 1e-9);
    fit.DoIt(0);
    EXPECT_GT(fit.GetA(0) - certified[0], 10 * errors[0]);
    fit.SetPrior(prior);
    fit.DoIt(1);
    for (int k = 0; k < 2; ++k) {
      EXPECT_LT(std::fabs(fit.GetA(k) - certified[k]), 3 * errors[k]) << prior << ' ' << k;
    }
  }
}

}  // namespace
