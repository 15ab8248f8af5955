/// Estimators and most probable values beside values of high precision.

#include <memory>
#include <sstream>

#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

double RelativeError(double value, double truth) {
  return value == truth ? 0 : std::fabs(value - truth) / std::fabs(truth);
}

TEST(StatTruth, EstimatorsAgreeWithFortyDigits) {
  EmbeddedHost host;
  const auto rows = ReadRows("estimators.txt");
  ASSERT_EQ(rows.size(), 40U);
  for (const std::string& text : rows) {
    std::istringstream row(text);
    int type = 0, n = 0;
    row >> type >> n;
    auto x = Take(row, n), d = Take(row, n), w = Take(row, n);
    const auto truth = Take(row, 6);
    ASSERT_TRUE(row);
    SCOPED_TRACE("type " + std::to_string(type) + ", n " + std::to_string(n));
    const StatAccess s(x, d, type);
    // The search ends at 1e-7 of a range of ln 10^4.
    const double tolerance = truth[3] > 0 ? 1e-6 : 1e-14 * n;
    EXPECT_LT(RelativeError(s.Disp0, truth[3]), 1e-6);
    EXPECT_LT(RelativeError(s.Mean, truth[0]), tolerance);
    EXPECT_LT(RelativeError(s.Disp, truth[1]), tolerance);
    EXPECT_LT(RelativeError(s.SEM2, truth[2]), tolerance);
    const Stat_Weighted weighted(x.data(), w.data(), n);
    EXPECT_LT(RelativeError(weighted.GetWeightedMean(), truth[4]), 1e-14 * n);
    EXPECT_LT(RelativeError(weighted.GetWeightedSEM2(), truth[5]), 1e-13 * n);
  }
}

TEST(StatTruth, MostProbableValuesAgreeWithIntegrals) {
  EmbeddedHost host;
  const auto rows = ReadRows("most_probable.txt");
  ASSERT_EQ(rows.size(), 8U);
  for (const std::string& text : rows) {
    std::istringstream row(text);
    int prior = 0, n = 0;
    row >> prior >> n;
    const auto x = Take(row, n), d = Take(row, n);
    const auto truth = Take(row, 2);
    ASSERT_TRUE(row);
    SCOPED_TRACE("prior " + std::to_string(prior) + ", n " + std::to_string(n));
    StatAccess s(x, d, 0);
    s.GetEstimationDisp();
    for (std::size_t i = 0; i < d.size(); ++i) s.estDataDisp[i] = d[i];  // no floor
    const std::unique_ptr<T_MatVectorCol<double>> r(s.GetMostProbableValue(prior, 0));
    EXPECT_NEAR((*r)[0], truth[0], 2e-6);
    // The curve is tabulated at 30 points only, few of them where the probability is high.
    EXPECT_LT(RelativeError((*r)[1], truth[1]), 0.1);
  }
}

}  // namespace
