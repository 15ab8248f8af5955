// The random lock: re-entrant on its thread, exclusive between threads, held around every draw.

#include "special/random_lock.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "random_reference.h"

namespace {

using RandomLockTest = RandomTest;

/// Uniforms that also tell which thread drew them. Nothing but the random lock protects it.
class RecordingSource {
 public:
  double operator()() {
    drawers_.push_back(std::this_thread::get_id());
    return uniforms_();
  }
  const std::vector<std::thread::id>& Drawers() const { return drawers_; }

 private:
  AwkwardUniforms uniforms_{5};
  std::vector<std::thread::id> drawers_;
};

template <class Work>
void RunInThreads(int count, Work work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
}

TEST_F(RandomLockTest, GeneratorsRunWhileTheirThreadHoldsTheLock) {
  host.Seed(1);
  EnterRandCriticalSection();
  EnterRandCriticalSection();
  EXPECT_TRUE(std::isfinite(RandGauss(0.0, 1.0)));
  EXPECT_TRUE(std::isfinite(RandPoisson(5.0)));
  EXPECT_TRUE(std::isfinite(RandPoisson(50.0)));
  EXPECT_TRUE(std::isfinite(RandBinominal(0.4, 100)));
  LeaveRandCriticalSection();
  LeaveRandCriticalSection();
}

TEST_F(RandomLockTest, AnotherThreadWaitsForTheLock) {
  std::atomic<bool> drawn = false;
  EnterRandCriticalSection();
  std::thread other([&drawn] {
    RandGauss(0.0, 1.0);
    drawn = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_FALSE(drawn);
  EXPECT_EQ(host.DrawCount(), 0);
  LeaveRandCriticalSection();
  other.join();
  EXPECT_TRUE(drawn);
  EXPECT_GE(host.DrawCount(), 2);
}

TEST_F(RandomLockTest, EveryGeneratorLeavesTheLock) {
  host.Seed(1);
  RandGauss(0.0, 1.0);
  RandGauss(0.0, 1.0);
  RandPoisson(5.0);
  RandPoisson(50.0);
  RandBinominal(0.4, 10);
  RandBinominal(0.01, 50);
  RandBinominal(0.4, 100);
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  RandPoisson(kNaN);
  RandBinominal(kNaN, 10);
  RandBinominal(kNaN, 100);
  host.SetUniformSource([] { return 0.5; });
  RandGauss(0.0, 1.0);
  std::thread other([] {
    EnterRandCriticalSection();
    LeaveRandCriticalSection();
  });
  other.join();  // would wait for ever if one of them had kept the lock
}

TEST_F(RandomLockTest, ThreadsShareSourceAndCacheWithoutARace) {
  RecordingSource source;
  host.SetUniformSource(std::ref(source));
  RunInThreads(4, [] {
    for (int i = 0; i < 5000; ++i) {
      RandGauss(0.0, 1.0);
      RandPoisson(i % 2 == 0 ? 3.0 : 30.0);
      RandBinominal(0.4, i % 2 == 0 ? 10 : 100);
    }
  });
  EXPECT_EQ(static_cast<std::int64_t>(source.Drawers().size()), host.DrawCount());
}

TEST_F(RandomLockTest, AHeldLockKeepsASequenceOfDrawsTogether) {
  constexpr int kSequence = 10;
  RecordingSource source;
  host.SetUniformSource(std::ref(source));
  RunInThreads(4, [] {
    for (int i = 0; i < 500; ++i) {
      EnterRandCriticalSection();
      for (int k = 0; k < kSequence / 2; ++k) {
        Rand(1.0);
        RandBinominal(0.4, 1);
      }
      LeaveRandCriticalSection();
    }
  });
  const auto& drawers = source.Drawers();
  ASSERT_EQ(drawers.size(), 4u * 500u * kSequence);
  for (std::size_t i = 0; i < drawers.size(); ++i) {
    ASSERT_EQ(drawers[i], drawers[i - i % kSequence]) << i;
  }
}

}  // namespace
