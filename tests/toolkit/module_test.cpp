// The companion module as a module: its entries and its table.

#include <algorithm>

#include "toolkit/toolkit_fixture.h"

namespace {

TEST_F(ToolkitTest, DescribesItself) {
  const std::vector<std::string> descriptions = host.ModuleDescriptions();
  ASSERT_EQ(descriptions.size(), 2u);
  EXPECT_EQ(descriptions[1], "TARN Toolkit v5.0 |TARN version:5.09.02");
}

TEST_F(ToolkitTest, HasNoFunctionOfTheBaseModule) {
  std::vector<std::string> signatures = host.Signatures();
  std::sort(signatures.begin(), signatures.end());
  EXPECT_EQ(std::adjacent_find(signatures.begin(), signatures.end()), signatures.end());
}

TEST_F(ToolkitTest, LoadsOnlyOnce) {
  const std::size_t count = host.Signatures().size();
  EXPECT_TRUE(host.Load(TARN_TOOLKIT_PATH));
  EXPECT_EQ(host.Signatures().size(), count);
}

/// Refuses each request for memory in turn: the script fails with an error or, where the class
/// library has another way, gives the same value. No request leaves blocks behind.
class RefusedMemoryTest : public ToolkitTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedMemoryTest, IsAnErrorOrMakesNoDifference) {
  const std::string script = GetParam();
  const auto clear = [this] { Run("collectgarbage() collectgarbage()"); };
  const double value = Number(script);
  clear();
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  host.SetHeapFailure([](std::int64_t) { return false; });
  Number(script);
  const std::int64_t requests = host.HeapRequestCount();
  ASSERT_GT(requests, 3);
  for (std::int64_t refused = 1; refused <= requests; ++refused) {
    host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    Variable result;
    if (host.Evaluate(script, &result)) {
      EXPECT_EQ(result.GetDoubleNumb(), value) << "request " << refused;
    } else {
      EXPECT_EQ(host.TakeError().number, 1) << "request " << refused;
    }
  }
  host.SetHeapFailure({});
  clear();
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, RefusedMemoryTest,
    ::testing::Values(
        "local m = Matrix{{4, 1}, {1, 3}}; return (m * m):Inverse()(1, 1)",
        "local m = Matrix{diagonal = {4, 1}}; local s = m:SVD(); return s.w[1] + s.U(1, 1)",
        "local v = MVector{1, 2} + 1; return (v * Matrix{{1, 2}, {3, 4}})[1]",
        "return Matrix{{1, 2}, {3, 5}}:Transpose():Solve{1, 2}[1]",
        "local f = TFunc({0, 1, 2}, {3, 1, 2}); return (f * f + 1):Integral().Y[3]",
        "return TFunc({0, 1}, {1, 4}):Map(math.sqrt):Maximum().y",
        "local s = Stat{values = {1, 3, 2}, dispersions = {1, 2, 1}}; return s.Mean",
        "return Stat{1, 3, 2, 7}:Histogram{bins = 2}.counts[1]",
        "return WeightedStat{values = {1, 2}, weights = {1, 3}}.Weights[2]",
        "return Minimise{f = function(x) return (x[1] - 1)^2 end, bounds = {{0, 3}}}.errors[1]",
        "return FindRoot{f = function(x) return x - 1/2 end, from = 0, to = 2}.x",
        "return FitLine{basis = 'powers', terms = 2, x = {0, 1, 2}, y = {1, 3, 5}}"
        ".coefficients[2]",
        // A search that is refused memory takes another way to the same place.
        "return math.floor(1000*FitLine{basis = 'powers', terms = 2, x = {0, 1, 2, 3}, "
        "y = {1, 3, 4, 6}, mode = 'refined'}.errors[2] + 0.5)",
        "return math.floor(1000*Minimise{f = function(x) return x*x + x[1]*x[2]/2 end, bounds = "
        "{{-1, 1}, {-1, 1}, {-1, 1}, {-1, 1}, {-1, 1}}, accuracy = 1e-3, method = 'Powell'}"
        ".errors[2] + 0.5)"));

TEST_F(ToolkitTest, FreesWhatScriptsDropped) {
  const auto run = [this] {
    Run("do local m = Matrix{{4, 1}, {1, 3}}; local s = m:SVD(); m = m * s.U end "
        "collectgarbage() collectgarbage()");
  };
  run();
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  for (int i = 0; i < 10; ++i) run();
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
}

}  // namespace
