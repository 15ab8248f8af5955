// Deviates from scripted uniform streams, to the last bit and in the number of uniforms drawn.

#include <bit>

#include "random_reference.h"

namespace {

constexpr std::uint64_t kSeed = 20260101;

class RandomStreamTest : public RandomTest {
 protected:
  RandomStreamTest() : reference(AwkwardUniforms(kSeed)) {
    host.SetUniformSource(AwkwardUniforms(kSeed));
  }

  /// Compares one deviate, and all uniforms drawn so far.
  void Compare(double deviate, double expected) {
    ASSERT_EQ(std::bit_cast<std::uint64_t>(deviate), std::bit_cast<std::uint64_t>(expected))
        << deviate << " instead of " << expected;
    ASSERT_EQ(host.DrawCount() - drawsBefore, reference.Draws());
  }

  ReferenceGenerators reference;
  const std::int64_t drawsBefore = host.DrawCount();
};

TEST_F(RandomStreamTest, GaussMatchesTheReference) {
  for (int i = 0; i < 20000; ++i) {
    const double mean = i % 7 - 3.0, sigma = 0.3 * (i % 5);
    ASSERT_NO_FATAL_FAILURE(Compare(RandGauss(mean, sigma), reference.Gauss(mean, sigma)));
  }
}

TEST_F(RandomStreamTest, PoissonMatchesTheReference) {
  for (double mean : {0.0, 1e-9, 0.7, 5.0, 11.99, 12.0, 12.5, 80.0, 1e4, 1e9, 1e12, 0.7, 12.0}) {
    for (int i = 0; i < 2000; ++i) {
      ASSERT_NO_FATAL_FAILURE(Compare(RandPoisson(mean), reference.Poisson(mean))) << mean;
    }
  }
}

TEST_F(RandomStreamTest, BinominalMatchesTheReference) {
  for (int n : {-3, 0, 1, 10, 24, 25, 50, 1000, 2000000000}) {
    for (double p : {0.0, 1e-12, 0.01, 0.04, 0.3, 0.5, 0.50001, 0.7, 0.96, 0.99, 1.0}) {
      for (int i = 0; i < 300; ++i) {
        ASSERT_NO_FATAL_FAILURE(Compare(RandBinominal(p, n), reference.Binominal(p, n)))
            << p << ' ' << n;
      }
    }
  }
}

// Parameters that change from call to call exercise every way in which the cache can be stale.
TEST_F(RandomStreamTest, MixedCallsMatchTheReference) {
  constexpr double kMeans[] = {0.5, 11.99, 12.0, 40.0, -1.0, -2.0};
  constexpr double kProbabilities[] = {0.3, 0.7, 0.02, 0.98, 0.5};
  constexpr int kTrials[] = {5, 24, 25, 60, 400};
  std::mt19937 choose(kSeed);
  for (int i = 0; i < 100000; ++i) {
    const auto kind = choose() % 3;
    const double mean = kMeans[choose() % std::size(kMeans)];
    const double p = kProbabilities[choose() % std::size(kProbabilities)];
    const int n = kTrials[choose() % std::size(kTrials)];
    if (kind == 0) {
      ASSERT_NO_FATAL_FAILURE(Compare(RandGauss(mean, p), reference.Gauss(mean, p)));
    } else if (kind == 1) {
      ASSERT_NO_FATAL_FAILURE(Compare(RandPoisson(mean), reference.Poisson(mean))) << mean;
    } else {
      ASSERT_NO_FATAL_FAILURE(Compare(RandBinominal(p, n), reference.Binominal(p, n)));
    }
  }
}

// The mean -1 is the cached one before any call, with the comparison value 0: the first deviate
// counts uniforms until their product underflows.
TEST_F(RandomStreamTest, PoissonOfMeanMinusOneMeetsTheInitialCache) {
  const double first = RandPoisson(-1.0);
  EXPECT_GT(first, 100.0);
  ASSERT_NO_FATAL_FAILURE(Compare(first, reference.Poisson(-1.0)));
  ASSERT_NO_FATAL_FAILURE(Compare(RandPoisson(3.0), reference.Poisson(3.0)));
  const double later = RandPoisson(-1.0);
  EXPECT_EQ(later, 0.0);
  ASSERT_NO_FATAL_FAILURE(Compare(later, reference.Poisson(-1.0)));
}

}  // namespace
