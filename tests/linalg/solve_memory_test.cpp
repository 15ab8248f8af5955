// Refused memory: every request of every member is refused in turn, host heap and array new.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>

#include "linalg/solve_support.h"

namespace {

// The form of new that the module uses is counted and refused on demand, and its blocks are
// remembered until they are released. The host uses the throwing form, which stays out of it.

bool countingRequests = false;
int requestCount = 0;
int refusedRequest = 0;  // 0: none
constexpr int kMaxBlocks = 64;
void* blocks[kMaxBlocks];

void* AllocateWatched(std::size_t size) {
  if (countingRequests && ++requestCount == refusedRequest) return nullptr;
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (countingRequests) *std::find(blocks, blocks + kMaxBlocks, nullptr) = block;
  return block;
}

void Release(void* block) {
  if (block != nullptr)
    std::replace(blocks, blocks + kMaxBlocks, block, static_cast<void*>(nullptr));
  std::free(block);
}

bool AllReleased() {
  return std::all_of(blocks, blocks + kMaxBlocks, [](void* block) { return block == nullptr; });
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateWatched(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateWatched(size);
}
void* operator new(std::size_t size) {
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }

namespace {

enum class Outcome { kDone, kFailed };

/// The elements of a new vector w are asked for a second time when they were refused.
constexpr int kRetried = 1;

/// From 100 columns on the decomposition asks for buffers that it can do without.
constexpr int Buffers(int columns) { return columns < 100 ? 0 : 1; }

/// From order 100 on elimination by blocks asks for a panel, and does without one if need be.
constexpr int Panels(int order) { return order < 100 ? 0 : 1; }

/// A call to be tried under refusals: prepares nothing, keeps nothing, tells how it ended.
using Call = std::function<Outcome()>;

template <class Result>
Outcome Delete(Result* result) {
  delete result;
  return result != nullptr ? Outcome::kDone : Outcome::kFailed;
}

template <class T>
Outcome DeleteArray(T* result) {
  delete[] result;
  return result != nullptr ? Outcome::kDone : Outcome::kFailed;
}

Outcome OfStatus(int status) { return status != 0 ? Outcome::kDone : Outcome::kFailed; }

template <class T>
std::vector<T> Elements(T_Matrix<T>& m) {
  return std::vector<T>(&m.Item(0), &m.Item(std::int64_t{m.X()} * m.Y()));
}

template <class T>
class SolveMemoryTest : public SolverTest<T> {
 protected:
  /// Refuses one request after the other until the call gets through without one being refused.
  /// Every refusal must end as a failure with error 1, but for so many harmless requests.
  void RefuseEachRequest(const Call& call, int harmlessHeap = 0, int harmlessNew = 0) {
    ASSERT_NO_FATAL_FAILURE(RefuseHeap(call, harmlessHeap));
    ASSERT_NO_FATAL_FAILURE(RefuseNew(call, harmlessNew));
  }

 private:
  void RefuseHeap(const Call& call, int harmless) {
    int survived = 0;
    for (std::int64_t refused = 1;; ++refused) {
      const std::int64_t heap = EmbeddedHost::LiveBlockCount();
      this->host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
      const Outcome outcome = call();
      const std::int64_t requests = this->host.HeapRequestCount();
      this->host.SetHeapFailure({});
      ASSERT_EQ(EmbeddedHost::LiveBlockCount(), heap) << "heap request " << refused;
      if (requests < refused) {
        ASSERT_EQ(outcome, Outcome::kDone);
        break;
      }
      if (outcome == Outcome::kDone) ++survived;
      ASSERT_EQ(this->RaisedError(), outcome == Outcome::kDone ? 0 : 1) << "request " << refused;
    }
    EXPECT_EQ(survived, harmless);
  }

  void RefuseNew(const Call& call, int harmless) {
    int survived = 0;
    for (int refused = 1;; ++refused) {
      const std::int64_t heap = EmbeddedHost::LiveBlockCount();
      requestCount = 0;
      refusedRequest = refused;
      countingRequests = true;
      const Outcome outcome = call();
      countingRequests = false;
      ASSERT_TRUE(AllReleased()) << "new request " << refused;
      ASSERT_EQ(EmbeddedHost::LiveBlockCount(), heap) << "new request " << refused;
      if (requestCount < refused) {
        ASSERT_EQ(outcome, Outcome::kDone);
        break;
      }
      if (outcome == Outcome::kDone) ++survived;
      ASSERT_EQ(this->RaisedError(), outcome == Outcome::kDone ? 0 : 1) << "request " << refused;
    }
    EXPECT_EQ(survived, harmless);
  }
};
TYPED_TEST_SUITE(SolveMemoryTest, ElementTypes);

TYPED_TEST(SolveMemoryTest, SolveSystem) {
  using T = TypeParam;
  for (int n : {5, 9, 40, 130}) {
    const T_Matrix<T> a = ToMatrix(MakeMatrix<T>(n, n, Kind::kRandom, 1));
    const std::vector<T> b = MakeVector<T>(n, Kind::kRandom, 2);
    std::vector<T> x(b), expected(b);
    ASSERT_EQ(a.SolveSystem(b.data(), expected.data()), 1);
    const Call call = [&] {
      const int status = a.SolveSystem(b.data(), x.data());
      EXPECT_EQ(x, status != 0 ? expected : std::vector<T>(b.size()));
      return OfStatus(status);
    };
    this->RefuseEachRequest(call, 0, Panels(n));
    this->RefuseEachRequest([&] { return DeleteArray(a.SolveSystem(b.data())); }, 0, Panels(n));
  }
}

TYPED_TEST(SolveMemoryTest, Determinants) {
  using T = TypeParam;
  for (int n : {5, 9, 40, 130}) {
    // Scaled to keep the determinant within the range of float.
    const T_Matrix<T> a = *std::unique_ptr<T_Matrix<T>>(
        ToMatrix(MakeMatrix<T>(n, n, Kind::kRandom, 1)) * static_cast<T>(std::sqrt(8.0 / n)));
    const T determinant = a.Det(), logarithm = a.LogAbsDet();
    const auto isOneOf = [](T value, T expected) {
      EXPECT_TRUE(value == expected || value == 0) << value;
      return value != 0 ? Outcome::kDone : Outcome::kFailed;
    };
    this->RefuseEachRequest([&] { return isOneOf(a.Det(), determinant); }, 0, Panels(n));
    this->RefuseEachRequest([&] { return isOneOf(a.LogAbsDet(), logarithm); }, 0, Panels(n));
    this->RefuseEachRequest([&] { return a.LnDet() != 0 ? Outcome::kDone : Outcome::kFailed; },
                            Buffers(n));
  }
}

TYPED_TEST(SolveMemoryTest, Inverse) {
  using T = TypeParam;
  for (int n : {2, 5, 9, 40, 130}) {
    const T_Matrix<T> a = ToMatrix(MakeDominant<T>(n, Kind::kRandom, 1));
    T_Matrix<T> result(n), expected(n), zeros(n);
    a.Inverse(expected);
    const Call call = [&] {
      result.Set(0);
      a.Inverse(result);
      const bool isDone = result(0, 0) != 0;
      EXPECT_EQ(Elements(result), Elements(isDone ? expected : zeros));
      return isDone ? Outcome::kDone : Outcome::kFailed;
    };
    this->RefuseEachRequest(call, 0, Panels(n));
    this->RefuseEachRequest([&] { return Delete(a.Inverse()); }, 0, Panels(n));
  }
}

// Above order 20 rows are packed; the factor can do without.
TYPED_TEST(SolveMemoryTest, CholeskyDecompse) {
  using T = TypeParam;
  for (int n : {2, 9, 40, 130}) {
    const Dense<T> a = MakePositive<T>(n, 1);
    const std::unique_ptr<T_Matrix<T>> expected(ToMatrix(a).CholeskyDecompse());
    ASSERT_NE(expected, nullptr);
    const T_Matrix<T> matrix = ToMatrix(a);
    const Call call = [&] {
      T_Matrix<T>* const factor = matrix.CholeskyDecompse();
      if (factor != nullptr) {
        EXPECT_EQ(Elements(*factor), Elements(*expected));
      }
      return Delete(factor);
    };
    this->RefuseEachRequest(call, 0, n > 20 ? 1 : 0);
  }
}

TYPED_TEST(SolveMemoryTest, Decomposition) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{5, 4}, {130, 110}, {110, 130}}) {
    const Dense<T> a = MakeMatrix<T>(m, n, Kind::kRandom, 1);
    T_Matrix<T> u(m, n);
    this->RefuseEachRequest(
        [&] {
          std::copy(a.elements.begin(), a.elements.end(), &u.Item(0));
          T_MatVectorCol<T> w;
          T_Matrix<T> v;
          return OfStatus(u.SVD(w, v));
        },
        Buffers(n));
    this->RefuseEachRequest(
        [&] {
          std::copy(a.elements.begin(), a.elements.end(), &u.Item(0));
          T_MatVectorCol<T>* w = nullptr;
          T_Matrix<T>* v = nullptr;
          const Outcome outcome = OfStatus(u.SVD(w, v));
          delete w;
          delete v;
          return outcome;
        },
        Buffers(n), kRetried);
  }
}

TYPED_TEST(SolveMemoryTest, DecompositionWithoutBuffersHasTheSameBits) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{100, 100}, {131, 101}, {101, 131}}) {
    const Dense<T> a = MakeMatrix<T>(m, n, Kind::kRandom, 1);
    T_Matrix<T> expectedU = ToMatrix(a), expectedV(n), u = ToMatrix(a), v(n);
    T_MatVectorCol<T> expectedW(n), w(n);
    ASSERT_EQ(expectedU.SVD(expectedW, expectedV), 1);
    this->host.SetHeapFailure([](std::int64_t request) { return request == 2; });
    EXPECT_EQ(u.SVD(w, v), 1);
    this->host.SetHeapFailure({});
    const auto count = [](int rows, int cols) { return static_cast<std::size_t>(rows * cols); };
    EXPECT_TRUE(SameElements<T>(w, expectedW, count(n, 1)));
    EXPECT_TRUE(SameElements(&u.Item(0), &expectedU.Item(0), count(m, n)));
    EXPECT_TRUE(SameElements(&v.Item(0), &expectedV.Item(0), count(n, n)));
  }
}

// The records of 299 and more values are sorted with stacks from the host heap; without them the
// array stays unsorted, which must not pass for a decomposition.
TYPED_TEST(SolveMemoryTest, SortOfManyValues) {
  using T = TypeParam;
  Dense<T> a(320, 320);
  for (int i = 0; i < 320; ++i) a[i][i] = static_cast<T>(1 + (i * 37) % 320);
  T_Matrix<T> u(320);
  this->RefuseEachRequest(
      [&] {
        std::copy(a.elements.begin(), a.elements.end(), &u.Item(0));
        T_MatVectorCol<T> w;
        T_Matrix<T> v;
        return OfStatus(u.SVD(w, v));
      },
      Buffers(320));
}

TYPED_TEST(SolveMemoryTest, PseudoInverse) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{5, 4}, {130, 110}}) {
    const T_Matrix<T> a = ToMatrix(MakeMatrix<T>(m, n, Kind::kRandom, 1));
    this->RefuseEachRequest([&] { return Delete(a.PseudoInverse()); }, Buffers(n));
  }
}

TYPED_TEST(SolveMemoryTest, SolveSystemBySVD) {
  using T = TypeParam;
  for (int n : {4, 110}) {
    const T_Matrix<T> a = ToMatrix(MakeMatrix<T>(n, n, Kind::kRandom, 1));
    const std::vector<T> b = MakeVector<T>(n, Kind::kRandom, 2);
    std::vector<T> x(b);
    this->RefuseEachRequest([&] { return OfStatus(a.SolveSystemBySVD(b.data(), x.data())); },
                            Buffers(n));
    this->RefuseEachRequest([&] { return DeleteArray(a.SolveSystemBySVD(b.data())); }, Buffers(n));
  }
}

// A rectangle is transposed through a block of the host heap; without it the elements stay where
// they are, which the solution does not depend on.
TYPED_TEST(SolveMemoryTest, RegularizedSolution) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{5, 5}, {6, 4}, {130, 110}}) {
    const Dense<T> a = MakeMatrix<T>(m, n, Kind::kRandom, 1);
    const T_Matrix<T> matrix = ToMatrix(a);
    const std::vector<T> b = MakeVector<T>(m, Kind::kRandom, 2);
    std::vector<T> x(static_cast<std::size_t>(n)), expected(x);
    ASSERT_EQ(matrix.SolveSystemBySVD_Reg(b.data(), expected.data(), 0), 1);
    for (const T lambda : {T{0}, T{2}}) {
      this->RefuseEachRequest(
          [&] {
            const int status = matrix.SolveSystemBySVD_Reg(b.data(), x.data(), lambda);
            if (status != 0 && lambda == 0) {
              EXPECT_EQ(x, expected);
            }
            return OfStatus(status);
          },
          Buffers(n) + (m != n && lambda == 0 ? 1 : 0));
    }
  }
}

TYPED_TEST(SolveMemoryTest, RegularizedSolutionInPlace) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(110, 110, Kind::kRandom, 1);
  const std::vector<T> b = MakeVector<T>(110, Kind::kRandom, 2);
  std::vector<T> x(b);
  T_Matrix<T> u(110);
  this->RefuseEachRequest(
      [&] {
        std::copy(a.elements.begin(), a.elements.end(), &u.Item(0));
        T_Matrix<T>* v = nullptr;
        T_MatVectorCol<T>* w = nullptr;
        const int status = u.SolveSystemBySVD_Reg_ex(v, w, b.data(), x.data(), 0);
        delete v;
        delete w;
        return OfStatus(status);
      },
      Buffers(110), kRetried);
}

// A matrix whose storage was refused before has a shape but no elements.
TYPED_TEST(SolveMemoryTest, MatrixWithoutElements) {
  using T = TypeParam;
  T_Matrix<T> a;
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  a.SetDim(5, 5);
  this->host.SetHeapFailure({});
  ASSERT_EQ(a.X(), 5);
  const std::vector<T> b(5, T{1});
  std::vector<T> x(5);
  T_Matrix<T> result(5), v;
  T_MatVectorCol<T> w;
  const std::function<bool()> calls[] = {
      [&] { return a.SolveSystem(b.data(), x.data()) == 0; },
      [&] { return a.SolveSystem(b.data()) == nullptr; },
      [&] { return a.Det() == 0; },
      [&] { return a.LogAbsDet() == 0; },
      [&] { return a.LnDet() == 0; },
      [&] { return a.Inverse(result), result(0, 0) == 0; },
      [&] { return a.Inverse() == nullptr; },
      [&] { return a.CholeskyDecompse() == nullptr; },
      [&] { return a.SVD(w, v) == 0; },
      [&] { return a.PseudoInverse() == nullptr; },
      [&] { return a.SolveSystemBySVD(b.data(), x.data()) == 0; },
      [&] { return a.SolveSystemBySVD(b.data()) == nullptr; },
      [&] { return a.SolveSystemBySVD_Reg(b.data(), x.data(), 0) == 0; },
  };
  int index = 0;
  for (const auto& failsCleanly : calls) {
    EXPECT_TRUE(failsCleanly()) << index;
    EXPECT_EQ(this->RaisedError(), 1) << index++;
  }
}

}  // namespace
