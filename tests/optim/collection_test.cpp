// T_Climb on the standard collection of small problems: what holds for every method on every one,
// and the tables of docs/minimiser.md.

#include <set>

#include "climb_support.h"
#include "collection_table.h"
#include "document_text.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

template <class T>
class CollectionTest : public ClimbTest {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(CollectionTest, Elements);

TYPED_TEST(CollectionTest, NoMethodLeavesTheBoxOrEndsAboveTheStart) {
  using T = TypeParam;
  for (const auto& problem : problems::MoreGarbowHillstrom<T>::All()) {
    for (const auto& method : collection::Methods<T>()) {
      const collection::Result result = collection::Solve(problem, method);
      EXPECT_EQ(result.outside, 0) << problem.name << ", " << method.name;
      // The minimiser sees the start after a round trip through scaled coordinates.
      EXPECT_LE(result.value, result.startValue * (1 + 1e-5))
          << problem.name << ", " << method.name;
      EXPECT_GE(result.value, problem.minimum * (1 - 1e-5) - 1e-6)
          << problem.name << ", " << method.name << " below the published minimum";
      EXPECT_NE(result.reason, tarn::StopReason::kNotRun);
      EXPECT_NE(result.reason, tarn::StopReason::kNotANumber);
    }
  }
}

/// The method to start with solves what is neither singular nor has other minima next to the way.
TEST_F(ClimbTest, SolveReachesTheOrdinaryProblems) {
  const std::set<std::string> ordinary = {"1 Rosenbrock",
                                          "6 Jennrich-Sampson",
                                          "7 helical valley",
                                          "8 Bard",
                                          "9 Gaussian",
                                          "14 Wood",
                                          "16 Brown-Dennis",
                                          "24 penalty II, 4",
                                          "35 Chebyquad, 6",
                                          "12 Box three-dimensional",
                                          "25 variably dimensioned, 6",
                                          "30 Broyden tridiagonal, 8"};
  std::size_t found = 0;
  for (const auto& problem : problems::MoreGarbowHillstrom<double>::All()) {
    if (!ordinary.contains(problem.name)) continue;
    ++found;
    const auto result = collection::Solve(problem, collection::Methods<double>().front());
    EXPECT_EQ(result.outcome, collection::Outcome::kMinimum) << problem.name;
  }
  EXPECT_EQ(found, ordinary.size());
}

TEST_F(ClimbTest, PageShowsTheTables) {
  if (collection::LibraryFingerprint() != collection::kLibraryOfThePage) {
    GTEST_SKIP() << "the C library rounds otherwise here than where the tables were made";
  }
  const std::string page = DocumentText("minimiser.md");
  EXPECT_NE(page.find(collection::Tables()), std::string::npos)
      << "docs/minimiser.md does not show what minimiser_tables prints:\n"
      << collection::Tables();
}

}  // namespace
