/// Memory of tabulated functions: who releases what, and what happens when there is none.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>

#include "tfunc/tfunc.h"

namespace {

std::atomic<long> liveBlocks{0};
std::atomic<long> requests{0};
/// Which of the coming nothrow requests is refused, counted from 1; 0: none.
std::atomic<long> refusedRequest{0};

void* Allocate(std::size_t bytes) {
  void* const block = std::malloc(bytes == 0 ? 1 : bytes);
  if (block != nullptr) ++liveBlocks;
  return block;
}

void* AllocateUnlessRefused(std::size_t bytes) noexcept {
  const long request = ++requests;
  return request == refusedRequest ? nullptr : Allocate(bytes);
}

void Release(void* block) noexcept {
  if (block != nullptr) --liveBlocks;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t bytes) {
  void* const block = Allocate(bytes);
  if (block == nullptr) std::abort();
  return block;
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return AllocateUnlessRefused(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return AllocateUnlessRefused(bytes);
}
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Release(block); }

namespace {

/// Refuses the k-th nothrow request from now on.
void RefuseRequest(long k) {
  requests = 0;
  refusedRequest = k;
}

class TFuncMemory : public testing::Test {
 protected:
  void SetUp() override {
    RefuseRequest(0);
    atStart = liveBlocks;
  }
  void TearDown() override {
    RefuseRequest(0);
    EXPECT_EQ(liveBlocks, atStart) << "blocks left behind or released twice";
  }

  long atStart = 0;
  double x[4] = {0, 1, 2, 3};
  double y[4] = {-1, 1, -1, 1};
};

TEST_F(TFuncMemory, OwnersHoldTwoArrays) {
  {
    const TFunc counting(4);
    EXPECT_EQ(liveBlocks, atStart + 2);
    const TFunc copying(x, y, 4);
    EXPECT_EQ(liveBlocks, atStart + 4);
    const TFunc copy(copying);
    EXPECT_EQ(liveBlocks, atStart + 6);
    const TFunc borrowing(x, y, 4, 1);
    EXPECT_EQ(liveBlocks, atStart + 6);
    const TFunc copyOfBorrowing(borrowing);
    EXPECT_EQ(liveBlocks, atStart + 8);
  }
  EXPECT_EQ(liveBlocks, atStart);
}

TEST_F(TFuncMemory, EmptyFunctionsHoldNone) {
  const TFunc none(0);
  const TFunc negative(-5);
  const TFunc copy(none);
  EXPECT_EQ(liveBlocks, atStart);
}

TEST_F(TFuncMemory, AssignmentReleasesWhatWasHeldBefore) {
  TFunc a(4);
  TFunc b(3);
  b = a;
  EXPECT_EQ(liveBlocks, atStart + 2);
}

TEST_F(TFuncMemory, SharedArraysAreReleasedOnceInWhateverOrder) {
  for (int first = 0; first < 3; ++first) {
    for (int second = 0; second < 3; ++second) {
      if (second == first) continue;
      std::optional<TFunc> functions[3];
      for (auto& f : functions) f.emplace(5);
      *functions[1] = *functions[0];
      *functions[2] = *functions[1];
      EXPECT_EQ(liveBlocks, atStart + 2);
      functions[first].reset();
      EXPECT_EQ(liveBlocks, atStart + 2);
      functions[second].reset();
      EXPECT_EQ(liveBlocks, atStart + 2);
      const int last = 3 - first - second;
      EXPECT_EQ(functions[last]->X[4], 4);
      functions[last].reset();
      EXPECT_EQ(liveBlocks, atStart);
    }
  }
}

TEST_F(TFuncMemory, SharingEndsWithAnotherAssignment) {
  TFunc a(4);
  TFunc b(3);
  TFunc c(2);
  b = a;
  b = c;
  EXPECT_EQ(liveBlocks, atStart + 4);
  a = c;
  EXPECT_EQ(liveBlocks, atStart + 2);
  EXPECT_EQ(a.X, b.X);
}

TEST_F(TFuncMemory, AssignmentAmongSharersChangesNothing) {
  TFunc a(4);
  TFunc b(3);
  b = a;
  a = b;
  b = a;
  TFunc& self = a;
  a = self;
  EXPECT_EQ(liveBlocks, atStart + 2);
  EXPECT_EQ(a.X, b.X);
  EXPECT_EQ(b.N, 4);
}

TEST_F(TFuncMemory, ABorrowerReleasesNothingAfterAnOwnerWasAssigned) {
  TFunc target(x, y, 4, 1);
  {
    const TFunc owner(2);
    target = owner;
    EXPECT_EQ(liveBlocks, atStart + 2);
  }
  EXPECT_EQ(liveBlocks, atStart + 2);
  const TFunc borrower(x, y, 4, 1);
  target = borrower;
  EXPECT_EQ(liveBlocks, atStart);
}

TEST_F(TFuncMemory, AnOwnerThatIsAssignedItsOwnBorrowerHandsTheArraysToTheCaller) {
  double* handedX = nullptr;
  double* handedY = nullptr;
  {
    TFunc owner(3);
    handedX = owner.X;
    handedY = owner.Y;
    const TFunc borrower(owner.X, owner.Y, 2, 1);
    owner = borrower;
    EXPECT_NE(owner.Borrowed, 0);
    EXPECT_EQ(owner.N, 2);
  }
  EXPECT_EQ(liveBlocks, atStart + 2);
  EXPECT_EQ(handedX[1], 1);
  delete[] handedX;
  delete[] handedY;
}

TEST_F(TFuncMemory, AnOwnerThatIsAssignedABorrowerOfOneArrayKeepsThatOne) {
  double* handedX = nullptr;
  {
    TFunc owner(3);
    handedX = owner.X;
    const TFunc borrower(owner.X, y, 3, 1);
    owner = borrower;
    EXPECT_EQ(liveBlocks, atStart + 1);
    EXPECT_EQ(owner(1.0), 1);
  }
  EXPECT_EQ(liveBlocks, atStart + 1);
  delete[] handedX;
}

TEST_F(TFuncMemory, AssignmentAsksForNoMemory) {
  TFunc a(4);
  TFunc b(3);
  RefuseRequest(1);
  b = a;
  EXPECT_EQ(requests, 0);
  EXPECT_EQ(b.N, 4);
}

TEST_F(TFuncMemory, EvaluationAndNumbersAskForNoMemory) {
  TFunc f(x, y, 4);
  TFunc g(x, y, 4);
  RefuseRequest(1);
  double sum = f(1.5) + f.pos(1.5) + f.Index(2) + f.Integral(0, 3) + f.IntegralSimpson(0, 3) +
               f.LogIntegralExp() + f.maxY();
  f += g;
  f.pow(2).Shift(1);
  sum += f(2.5);
  EXPECT_EQ(requests, 0);
  EXPECT_FALSE(sum != sum);
}

TEST_F(TFuncMemory, AConstructorWithoutMemoryGivesAnEmptyFunction) {
  const TFunc source(x, y, 4);
  for (long k = 1; k <= 2; ++k) {
    RefuseRequest(k);
    TFunc counting(4);
    EXPECT_EQ(counting.N, 0);
    EXPECT_EQ(counting.maxX(), 1e-7);
    EXPECT_EQ(counting(1.0), 0);
    RefuseRequest(k);
    EXPECT_EQ(TFunc(x, y, 4).N, 0);
    RefuseRequest(k);
    EXPECT_EQ(TFunc(x, y, 4, 0).N, 0);
    RefuseRequest(k);
    const TFunc copy(source);
    EXPECT_EQ(copy.N, 0);
    EXPECT_EQ(liveBlocks, atStart + 2);
  }
}

/// Calls `make` with each of its requests refused in turn and hands what it returns to `check`.
template <typename Make, typename Check>
void RefuseEachRequest(Make make, Check check) {
  RefuseRequest(0);
  make();
  const long count = requests;
  for (long k = 1; k <= count; ++k) {
    RefuseRequest(k);
    const auto made = make();
    RefuseRequest(0);
    check(made.get(), k);
  }
  EXPECT_GE(count, 2);
}

TEST_F(TFuncMemory, RunningIntegralsWithoutMemoryAreNullOrEmpty) {
  const TFunc f(x, y, 4);
  const auto check = [](const TFunc* integral, long refused) {
    if (refused == 1) {
      EXPECT_EQ(integral, nullptr);
    } else {
      ASSERT_NE(integral, nullptr);
      EXPECT_EQ(integral->N, 0);
    }
  };
  RefuseEachRequest([&] { return std::unique_ptr<TFunc>(f.Integral()); }, check);
  RefuseEachRequest([&] { return std::unique_ptr<TFunc>(f.IntegralSimpson()); }, check);
}

TEST_F(TFuncMemory, ZeroCrossingsWithoutMemoryAreNullOrEmpty) {
  TFunc f(x, y, 4);
  RefuseEachRequest([&] { return std::unique_ptr<T_MatVector<double>>(f.Zero()); },
                    [](const T_MatVector<double>* roots, long refused) {
                      if (refused == 1) {
                        EXPECT_EQ(roots, nullptr);
                      } else {
                        ASSERT_NE(roots, nullptr);
                        EXPECT_EQ(roots->Dim(), 0);
                      }
                    });
}

}  // namespace
