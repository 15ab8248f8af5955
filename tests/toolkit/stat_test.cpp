// "Stat" and "WeightedStat" in scripts: what the class library computes for the same sample, which
// its own tests hold against other sources, reaches the script.

#include <algorithm>
#include <cmath>
#include <memory>

#include "stat/stat_weighted.h"
#include "toolkit/toolkit_fixture.h"

namespace {

class StatScriptTest : public ToolkitTest {
 protected:
  StatScriptTest() {
    Run("x = {4.1, 5.3, 4.8, 6.2, 5.1, 4.4, 5.7, 5.0, 4.9, 5.5, 4.6, 9.3}"
        "d = {.1, .2, .1, .3, .2, .1, .2, .1, .2, .1, .2, .3}"
        "w = {1, 2, 1, 1, 3, 2, 1, 2, 2, 1, 1, 0.5}");
    values = Numbers("array(x)");
    dispersions = Numbers("array(d)");
    weights = Numbers("array(w)");
  }

  int Count() const { return static_cast<int>(values.size()); }
  Stat Plain() { return Stat(values.data(), Count()); }
  Stat Measured(int meanType = 0) {
    return Stat(values.data(), dispersions.data(), Count(), meanType);
  }

  /// Holds the members of the script's object against the results of the class.
  void ExpectMembers(const std::string& object, const Stat& stat) {
    const auto member = [&](const char* name) { return Number("return " + object + "." + name); };
    EXPECT_EQ(member("Mean"), stat.GetMean());
    EXPECT_EQ(member("Disp"), stat.GetDisp());
    EXPECT_EQ(member("Disp0"), stat.GetDisp0());
    EXPECT_EQ(member("SEM2"), stat.GetSEM2());
    EXPECT_EQ(member("E2"), stat.GetE2());
    EXPECT_EQ(member("E3"), stat.GetE3());
    EXPECT_EQ(member("E4"), stat.GetE4());
    EXPECT_EQ(member("Min"), stat.GetMin());
    EXPECT_EQ(member("Max"), stat.GetMax());
    EXPECT_EQ(member("DistrType"), stat.GetDistrType());
  }

  NumberList values;
  NumberList dispersions;
  NumberList weights;
};

TEST_F(StatScriptTest, SummarisesASample) {
  EXPECT_EQ(Number("return Stat{values = {1, 2, 3, 4}}.Mean"), 2.5);
  EXPECT_NEAR(Number("return Stat{1, 2, 3, 4}.Disp"), 5.0 / 3, 1e-15);
  EXPECT_NEAR(Number("return Stat(MVector{1, 2, 3, 4}).SEM2"), 5.0 / 12, 1e-15);
  EXPECT_EQ(Number("return Stat{1, 2, 3, 4}.Sum"), 10.0);
  ExpectMembers("Stat(x)", Plain());
}

TEST_F(StatScriptTest, EstimatesUnderEveryPrior) {
  const char* names[] = {"limited Jeffreys", "Jeffreys", "uniform", "weighted", "plain"};
  for (int type = 0; type < 5; ++type) {
    const Stat stat = Measured(type);
    const std::string sample = "Stat{values = x, dispersions = d, mean_type = ";
    ExpectMembers(sample + std::to_string(type) + "}", stat);
    ExpectMembers(sample + "'" + names[type] + "'}", stat);
    EXPECT_EQ(Number("return " + sample + std::to_string(type) + "}.MeanType"), type);
  }
  ExpectMembers("Stat{values = x, dispersions = d}", Measured(0));
}

TEST_F(StatScriptTest, GivesMedians) {
  double median = 0.0;
  double error = 0.0;
  Plain().GetMedian_MAD(median, error);
  EXPECT_EQ(Number("return Stat(x):MedianMAD().median"), median);
  EXPECT_EQ(Number("return Stat(x):MedianMAD().mad"), error);
  Plain().GetMedian_SD(median, error);
  EXPECT_EQ(Number("return Stat(x):MedianSD().median"), median);
  EXPECT_EQ(Number("return Stat(x):MedianSD().error"), error);
}

TEST_F(StatScriptTest, GivesTheCumulativeDistribution) {
  EXPECT_EQ(Numbers("Stat{3, 1, 2, 2}:CumulativeDistribution().X"), (NumberList{0, 1, 2, 3}));
  EXPECT_EQ(Numbers("Stat{3, 1, 2, 2}:CumulativeDistribution().Y"), (NumberList{0, 0.25, 0.75, 1}));
  EXPECT_EQ(Number("return Stat{3, 1, 2, 2}:CumulativeDistribution()(1.5)"), 0.5);
}

TEST_F(StatScriptTest, CountsIntoBins) {
  Run("h = Stat{0, 0.5, 1, 1.5, 2.5, 3, 7}:Histogram{low = 0, high = 3, bins = 3}");
  EXPECT_EQ(Numbers("h.edges"), (NumberList{0, 1, 2, 3}));
  EXPECT_EQ(Numbers("h.centres"), (NumberList{0.5, 1.5, 2.5}));
  EXPECT_EQ(Numbers("h.counts"), (NumberList{2, 2, 1}));
  EXPECT_EQ(Number("return h.inside"), 5.0);
  // (1 - h/n) max(h, 1)
  ExpectNear(Numbers("h.variances"), {1.2, 1.2, 0.8}, 1e-15);
}

TEST_F(StatScriptTest, CountsEveryValueWithoutLimits) {
  Run("h = Stat(x):Histogram()");
  EXPECT_EQ(Number("return h.inside"), 12.0);
  EXPECT_EQ(Numbers("h.counts").size(), 4u);  // the root of 12, rounded up
  EXPECT_EQ(Number("return h.centres[1]"), 4.1);
  EXPECT_NEAR(Number("return h.centres[4]"), 9.3, 1e-14);
  EXPECT_EQ(Number("return Stat{2, 2, 2}:Histogram().inside"), 3.0);
  EXPECT_EQ(Number("return Stat{1, 2, 3}:Histogram{bins = 1}.inside"), 3.0);
}

TEST_F(StatScriptTest, FindsTheMostProbableValue) {
  for (int prior = 0; prior < 4; ++prior) {
    for (int logNormal = 0; logNormal < 2; ++logNormal) {
      Stat stat = Measured();
      const std::unique_ptr<T_MatVectorCol<double>> expected(
          stat.GetMostProbableValue(prior, logNormal));
      Run("m = Stat{values = x, dispersions = d}:MostProbableValue{prior = " +
          std::to_string(prior) + ", log_normal = " + (logNormal != 0 ? "true" : "false") + "}");
      EXPECT_EQ(Number("return m.value"), (*expected)[0]);
      EXPECT_EQ(Number("return m.error"), std::sqrt((*expected)[1]));
      EXPECT_EQ(Number("return m.inside"), (*expected)[2]);
    }
  }
}

TEST_F(StatScriptTest, GivesTheCurveOfTheMostProbableValue) {
  Run("c = Stat(x):LogProbability{points = 400}; m = Stat(x):MostProbableValue()");
  EXPECT_EQ(Numbers("c.X").size(), 400u);
  EXPECT_EQ(Number("return c:Maximum().y"), 0.0);
  // The grid is 7.8/399 wide.
  EXPECT_NEAR(Number("return c:Maximum().x"), Number("return m.value"), 0.02);
  EXPECT_EQ(Numbers("Stat(x):LogProbability{}.X").size(), 100u);
  // Below 0 there is nothing on the logarithmic axis.
  Run("l = Stat{0.1, 5, 6, 7, 8}:LogProbability{log_normal = true}");
  EXPECT_GT(Number("return l.X[1]"), 0.0);
}

TEST_F(StatScriptTest, FitsTheCumulativeDistribution) {
  Stat stat = Plain();
  const std::unique_ptr<T_MatVectorCol<double>> fit(stat.FitCumulativeDistribution());
  Run("f = Stat(x):CumulativeFit()");
  EXPECT_EQ(Number("return f.location"), (*fit)[0]);
  EXPECT_EQ(Number("return f.location_scale"), (*fit)[1]);
  EXPECT_EQ(Number("return f.location_error"), (*fit)[2]);
  EXPECT_EQ(Number("return f.scale_error"), (*fit)[3]);
}

TEST_F(StatScriptTest, EstimatesDispersions) {
  Stat stat = Measured();
  const double* expected = stat.GetEstimationDisp();
  Run("s = Stat{values = x, dispersions = d}");
  EXPECT_EQ(Text("s.estDataDisp"), "nil");
  EXPECT_EQ(Numbers("s:EstimatedDispersions()"), NumberList(expected, expected + Count()));
  EXPECT_EQ(Numbers("s.estDataDisp"), NumberList(expected, expected + Count()));
}

TEST_F(StatScriptTest, TakesSubsets) {
  Run("local t = {} for i = 1, 100 do t[i] = i end s = Stat(t):Subset(10)");
  EXPECT_EQ(Text("s:kind()"), "Stat");
  EXPECT_NEAR(Number("return s.Mean"), 50.0, 10.0);
  EXPECT_EQ(Refusal("s:Subset(0)"),
            "3 Stat.Subset: the number of values must be a whole number from 1 on, got 0");
}

TEST_F(StatScriptTest, UsesTheAccuracy) {
  Stat stat = Plain();
  stat.SetAccuracy(0.01);
  const std::unique_ptr<T_MatVectorCol<double>> rough(stat.GetMostProbableValue(0, 0));
  EXPECT_EQ(Number("return Stat{values = x, accuracy = 0.01}:MostProbableValue().value"),
            (*rough)[0]);
}

TEST_F(StatScriptTest, ShowsItself) {
  EXPECT_EQ(Text("Stat{1, 2, 3}"), "Stat of 3 values: mean 2, error 0.577, dispersion 1");
  EXPECT_EQ(Text("WeightedStat{values = {1}, weights = {1}}"),
            "WeightedStat of 1 value: mean 1, error 0, dispersion 0");
}

TEST_F(StatScriptTest, WeighsSamples) {
  // A weight of 0 counts as the smallest positive one over n; {2/3, 2, 2} averages 14/9.
  ExpectNear(Numbers("WeightedStat{values = {1, 2, 3}, weights = {0, 2, 2}}.Weights"),
             {3.0 / 7, 9.0 / 7, 9.0 / 7}, 1e-15);
  Stat_Weighted stat(values.data(), dispersions.data(), weights.data(), Count());
  Run("s = WeightedStat{values = x, dispersions = d, weights = w}");
  ExpectMembers("s", stat);
  EXPECT_EQ(Number("return s.WeightedMean"), stat.GetWeightedMean());
  EXPECT_EQ(Number("return s.WeightedSEM2"), stat.GetWeightedSEM2());
  EXPECT_EQ(Number("return s.WeightsCorr"), stat.GetWeightsCorr());
  EXPECT_EQ(Number("return s.DispOfWeights"), stat.GetDispOfWeights());
  EXPECT_EQ(Number("return s.WeightsDistrType"), stat.GetWeightsDistrType());
}

TEST_F(StatScriptTest, WeightedSamplesHaveTheirOwnMethods) {
  Stat_Weighted stat(values.data(), weights.data(), Count());
  Run("s = WeightedStat{values = x, weights = w}");
  double median = 0.0;
  double error = 0.0;
  stat.GetMedian_SD(median, error);
  EXPECT_EQ(Number("return s:MedianSD().median"), median);
  EXPECT_EQ(Number("return s:MedianSD().error"), error);
  stat.GetMedian_MAD(median, error);
  EXPECT_EQ(Number("return s:MedianMAD().median"), median);
  EXPECT_EQ(Number("return s:MedianMAD().mad"), error);
  const std::unique_ptr<T_MatVectorCol<double>> location(stat.GetMostProbableValue(1, 0));
  EXPECT_EQ(Number("return s:MostProbableValue{prior = 'Jeffreys'}.value"), (*location)[0]);
  EXPECT_EQ(Number("return s:CorrelationToWeights()"), stat.GetCorrToWeight(0, 0));
  EXPECT_EQ(Number("return s:CorrelationToWeights{log_values = true, log_weights = true}"),
            stat.GetCorrToWeight(1, 1));
  EXPECT_EQ(Number("return s:CumulativeDistribution().Y[2]"), Number("return s.Weights[1] / 12"));
}

TEST_F(StatScriptTest, RefusesSamplesThatAreNone) {
  EXPECT_EQ(Refusal("Stat{}"), "3 Stat: values is missing");
  EXPECT_EQ(Refusal("Stat{values = {}}"), "3 Stat: values must have at least 1 element, has 0");
  EXPECT_EQ(Refusal("Stat{values = 5}"), "3 Stat: values must be an array, got 5");
  EXPECT_EQ(Refusal("Stat{1, 'x'}"), "3 Stat: values[2] must be a number, got text");
  EXPECT_EQ(Refusal("Stat{values = {1, 0/0}}"),
            "3 Stat: values[2] must be a finite number, got nan");
  EXPECT_EQ(Refusal("Stat{values = x, dispersions = {1}}"),
            "3 Stat: dispersions has 1 element, but values has 12");
  EXPECT_EQ(Refusal("Stat{values = {1, 2}, dispersions = {1, -1}}"),
            "3 Stat: dispersions[2] must be 0 or more, got -1");
  EXPECT_EQ(Refusal("Stat{values = x, dispersion = d}"),
            "3 Stat: unknown option \"dispersion\"; did you mean \"dispersions\"?");
  EXPECT_EQ(Refusal("Stat{values = x, accuracy = 0}"), "3 Stat: accuracy must be above 0, got 0");
}

TEST_F(StatScriptTest, RefusesEstimatorsThatAreNone) {
  EXPECT_EQ(Refusal("Stat{values = x, mean_type = 'uniform'}"),
            "3 Stat: mean_type needs dispersions");
  EXPECT_EQ(Refusal("Stat{values = x, dispersions = d, mean_type = 5}"),
            "3 Stat: mean_type must be a whole number 0 to 4, got 5");
  EXPECT_EQ(Refusal("Stat{values = x, dispersions = d, mean_type = 'jefreys'}"),
            "3 Stat: mean_type has the unknown value \"jefreys\"; did you mean \"Jeffreys\"?");
  EXPECT_EQ(Refusal("Stat(x):MostProbableValue{prior = 'plain'}"),
            "3 Stat.MostProbableValue: prior has the unknown value \"plain\"; known are \"limited "
            "Jeffreys\", \"Jeffreys\", \"uniform\", \"weighted\"");
  EXPECT_EQ(Refusal("Stat(x):MostProbableValue{prior = 4}"),
            "3 Stat.MostProbableValue: prior must be a whole number 0 to 3, got 4");
  EXPECT_EQ(Refusal("Stat{-1, 2}:MostProbableValue{log_normal = true}"),
            "3 Stat.MostProbableValue: log_normal needs values above 0, the smallest is -1");
  EXPECT_EQ(Refusal("Stat(x):MostProbableValue{log_normal = 'x'}"),
            "3 Stat.MostProbableValue: log_normal must be true or false, got text");
}

TEST_F(StatScriptTest, RefusesCurvesAndBinsThatAreNone) {
  EXPECT_EQ(Refusal("Stat(x):LogProbability{points = 1}"),
            "3 Stat.LogProbability: points must be a whole number 2 to 10000000, got 1");
  EXPECT_EQ(Refusal("Stat(x):Histogram{bins = 0}"),
            "3 Stat.Histogram: bins must be a whole number 1 to 10000000, got 0");
  EXPECT_EQ(Refusal("Stat(x):Histogram{low = 2, high = 1}"),
            "3 Stat.Histogram: high 1 must be above low 2");
  EXPECT_EQ(Refusal("Stat(x):Histogram{width = 2}"),
            "3 Stat.Histogram: unknown option \"width\"; known are \"bins\", \"low\", \"high\"");
}

TEST_F(StatScriptTest, RefusesWeightsThatAreNone) {
  EXPECT_EQ(Refusal("WeightedStat{values = x}"), "3 WeightedStat: weights is missing");
  EXPECT_EQ(Refusal("WeightedStat{values = {1, 2}, weights = {0, 0}}"),
            "3 WeightedStat: weights are all 0");
  EXPECT_EQ(Refusal("WeightedStat{values = {1, 2}, weights = {1, -2}}"),
            "3 WeightedStat: weights[2] must be 0 or more, got -2");
  EXPECT_EQ(
      Refusal("WeightedStat{values = {-1, 2}, weights = {1, 1}}:CorrelationToWeights{log_values = "
              "true}"),
      "88 WeightedStat.CorrelationToWeights: log_values needs values above 0, the smallest is -1");
}

TEST_F(StatScriptTest, RefusesHistogramsThatAreTooWide) {
  EXPECT_EQ(Refusal("Stat{1, 2}:Histogram{low = -1e308, high = 1e308}"),
            "3 Stat.Histogram: low -1e+308 to high 1e+308 is too wide");
  EXPECT_EQ(Failure("return Stat{-1e308, 1e308}:Histogram()").number, 3);
}

TEST_F(StatScriptTest, NamesThePriorsThatThereAre) {
  EXPECT_EQ(Refusal("Stat(x):MostProbableValue{prior = 'none'}"),
            "3 Stat.MostProbableValue: prior has the unknown value \"none\"; known are \"limited "
            "Jeffreys\", \"Jeffreys\", \"uniform\", \"weighted\"");
}

}  // namespace
