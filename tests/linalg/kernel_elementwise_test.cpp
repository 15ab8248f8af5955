// The choice of kernels, and element-wise operations and extremes for every set of them against the
// literal loops to the bit.

#include "linalg/kernel_support.h"

namespace {

// The choice --------------------------------------------------------------------------------------

TEST(KernelChoice, TheWidestSetIsSelectedAtLoad) {
  tarn::KernelSet widest = tarn::KernelSet::kPlain;
  for (const tarn::KernelSet set : tarn::kKernelSets) {
    if (tarn::HasKernels(set)) widest = set;
  }
  EXPECT_EQ(tarn::SelectedKernels(), widest);
}

TEST(KernelChoice, EveryMachineHasPlainKernels) {
  EXPECT_TRUE(tarn::SelectKernels(tarn::KernelSet::kPlain));
  EXPECT_EQ(tarn::SelectedKernels(), tarn::KernelSet::kPlain);
}

TEST(KernelChoice, ASetThatTheMachineLacksIsNotSelected) {
  const tarn::KernelSet before = tarn::SelectedKernels();
  for (const tarn::KernelSet set : tarn::kKernelSets) {
    if (!tarn::HasKernels(set)) {
      EXPECT_FALSE(tarn::SelectKernels(set));
      EXPECT_EQ(tarn::SelectedKernels(), before);
    }
  }
}

TEST(KernelChoice, EverySetHasTablesOfItsOwn) {
  std::vector<const void*> tables;
  WithEveryKernelSet([&] {
    for (const void* table : {static_cast<const void*>(&tarn::Kernels<float>()),
                              static_cast<const void*>(&tarn::Kernels<double>())}) {
      EXPECT_EQ(std::count(tables.begin(), tables.end(), table), 0);
      tables.push_back(table);
    }
  });
}

TEST(KernelChoice, SetsAreFoundByName) {
  for (const tarn::KernelSet set : tarn::kKernelSets) {
    EXPECT_EQ(tarn::FindKernelSet(tarn::KernelSetName(set)), set);
  }
  EXPECT_EQ(tarn::FindKernelSet("avx512"), tarn::KernelSet::kAvx512);
  EXPECT_EQ(tarn::FindKernelSet("sse"), std::nullopt);
}

// Element by element ------------------------------------------------------------------------------

template <class T>
using KernelElements = ElementTest<T>;
TYPED_TEST_SUITE(KernelElements, ElementTypes);

template <class T>
struct Inputs {
  std::vector<T> a;
  std::vector<T> b;
  T k;
};

template <class T>
Inputs<T> MakeInputs(int n, Kind kind) {
  return {MakeVector<T>(n, kind, 1), MakeVector<T>(n, kind, 2), MakeVector<T>(1, kind, 9)[0]};
}

/// Holds `operation` on two vectors against `literal` of two elements.
template <class T, class Operation, class Literal>
void ExpectElementwise(Operation operation, Literal literal) {
  std::vector<int> sizes = Sizes();
  sizes.push_back(kLargestSize);
  for (Kind kind : kAllKinds) {
    for (int n : sizes) {
      const Inputs<T> in = MakeInputs<T>(n, kind);
      std::vector<T> expected;
      for (std::size_t i = 0; i < in.a.size(); ++i) {
        expected.push_back(literal(in.a[i], in.b[i], in.k));
      }
      WithEveryKernelSet([&] {
        T_MatVector<T> a(in.a.data(), n);
        const T_MatVector<T> b(in.b.data(), n);
        const T_MatVector<T> r = operation(a, b, in.k);
        ASSERT_EQ(r.Dim(), n);
        EXPECT_TRUE(SameElements<T>(static_cast<const T*>(r), expected.data(), expected.size()))
            << Name(kind) << n;
      });
    }
  }
}

template <class T>
using V = T_MatVector<T>;

TYPED_TEST(KernelElements, TimesANumber) {
  using T = TypeParam;
  ExpectElementwise<T>([](V<T>& a, const V<T>&, T k) -> V<T>& { return a *= k; },
                       [](T a, T, T k) { return a * k; });
}

TYPED_TEST(KernelElements, PlusANumber) {
  using T = TypeParam;
  ExpectElementwise<T>([](V<T>& a, const V<T>&, T k) -> V<T>& { return a += k; },
                       [](T a, T, T k) { return a + k; });
}

TYPED_TEST(KernelElements, MinusANumber) {
  using T = TypeParam;
  ExpectElementwise<T>([](V<T>& a, const V<T>&, T k) -> V<T>& { return a -= k; },
                       [](T a, T, T k) { return a - k; });
}

TYPED_TEST(KernelElements, Sums) {
  using T = TypeParam;
  ExpectElementwise<T>([](V<T>& a, const V<T>& b, T) -> V<T>& { return a += b; },
                       [](T a, T b, T) { return a + b; });
}

TYPED_TEST(KernelElements, Differences) {
  using T = TypeParam;
  ExpectElementwise<T>([](V<T>& a, const V<T>& b, T) -> V<T>& { return a -= b; },
                       [](T a, T b, T) { return a - b; });
}

TYPED_TEST(KernelElements, Products) {
  using T = TypeParam;
  ExpectElementwise<T>(
      [](V<T>& a, const V<T>& b, T) -> V<T>& { return a.MulByItem(static_cast<const T*>(b)); },
      [](T a, T b, T) { return a * b; });
}

TYPED_TEST(KernelElements, Quotients) {
  using T = TypeParam;
  ExpectElementwise<T>([](V<T>& a, const V<T>& b, T) -> V<T>& { return a.DivByItem(b); },
                       [](T a, T b, T) { return a / b; });
}

TYPED_TEST(KernelElements, SumsWithAMultiple) {
  using T = TypeParam;
  ExpectElementwise<T>(
      [](V<T>& a, const V<T>& b, T k) {
        V<T> r(a.Dim());
        a.Add(r, b, k);
        return r;
      },
      [](T a, T b, T k) { return a + k * b; });
}

TYPED_TEST(KernelElements, DifferencesWithAMultiple) {
  using T = TypeParam;
  ExpectElementwise<T>(
      [](V<T>& a, const V<T>& b, T k) {
        V<T> r(a.Dim());
        a.Sub(r, b, k);
        return r;
      },
      [](T a, T b, T k) { return a - k * b; });
}

TYPED_TEST(KernelElements, WeightedSums) {
  using T = TypeParam;
  ExpectElementwise<T>(
      [](V<T>& a, const V<T>& b, T k) {
        V<T> r;
        r.WeightedSum(a, k, b, 3);
        return r;
      },
      [](T a, T b, T k) { return (k * a + 3 * b) / (k + 3); });
}

TYPED_TEST(KernelElements, OverlappingArraysAreWorkedOnInOrder) {
  using T = TypeParam;
  WithEveryKernelSet([&] {
    std::vector<T> x(101, T{1});
    T_MatVector<T> v(x.data(), 100, 1);
    v.Add(x.data() + 1, x.data());  // x[i + 1] = x[i] + x[i]
    EXPECT_EQ(x[10], 1024);
    EXPECT_EQ(x[100], std::ldexp(T{1}, 100));
  });
}

// Extremes ----------------------------------------------------------------------------------------

TYPED_TEST(KernelElements, Extremes) {
  using T = TypeParam;
  const T start =
      std::is_same_v<T, float> ? std::numeric_limits<T>::infinity() : static_cast<T>(1e300L);
  std::vector<int> sizes = Sizes();
  sizes.push_back(kLargestSize);
  for (Kind kind : kAllKinds) {
    for (int n : sizes) {
      const std::vector<T> x = MakeVector<T>(n, kind, 7U + static_cast<unsigned>(n));
      T largest = -start;
      T smallest = start;
      T magnitude = 0;
      for (T e : x) {
        if (e > largest) largest = e;
        if (e < smallest) smallest = e;
        if (std::fabs(e) > magnitude) magnitude = std::fabs(e);
      }
      const T_MatVector<T> v(x.data(), n);
      WithEveryKernelSet([&] {
        EXPECT_TRUE(SameBits(v.Max(), largest)) << Name(kind) << n;
        EXPECT_TRUE(SameBits(v.Min(), smallest)) << Name(kind) << n;
        EXPECT_TRUE(SameBits(v.AbsMax(), magnitude)) << Name(kind) << n;
      });
    }
  }
}

TYPED_TEST(KernelElements, TheFirstOfTwoZerosIsTheExtreme) {
  using T = TypeParam;
  for (int n : {2, 20, 100}) {
    std::vector<T> x(static_cast<std::size_t>(n), T{-1});
    x.front() = T{-0.0};
    x.back() = T{0.0};
    const T_MatVector<T> ofMaximum(x.data(), n);
    for (T& e : x) e = -e;
    for (T& e : x) e = e == 0 ? e : T{1};
    const T_MatVector<T> ofMinimum(x.data(), n);
    WithEveryKernelSet([&] {
      EXPECT_TRUE(std::signbit(ofMaximum.Max())) << n;
      EXPECT_FALSE(std::signbit(ofMinimum.Min())) << n;
    });
  }
}

}  // namespace
