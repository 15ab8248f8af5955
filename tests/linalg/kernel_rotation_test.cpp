// Chains of plane rotations, for every set of kernels, against single rotations to the bit.

#include "linalg/kernel_support.h"

namespace {

template <class T>
class KernelRotation : public ElementTest<T> {
 protected:
  using Rotations = std::vector<tarn::Rotation<T>>;

  static constexpr int kRows = tarn::kStripRows<T>;

  static Rotations MakeRotations(int count, Kind kind, unsigned seed) {
    const std::vector<T> numbers = MakeVector<T>(2 * count, kind, seed);
    Rotations rotations;
    for (std::size_t k = 0; k < numbers.size(); k += 2) {
      rotations.push_back({numbers[k], numbers[k + 1]});
    }
    return rotations;
  }

  /// Row j of `columns` is column j of the strip.
  static void RotateLiterally(Dense<T>& columns, const Rotations& rotations) {
    for (std::size_t k = 0; k < rotations.size(); ++k) {
      T* const left = columns[static_cast<int>(k)];
      T* const right = columns[static_cast<int>(k) + 1];
      for (int i = 0; i < kRows; ++i) {
        const T x = left[i];
        const T z = right[i];
        left[i] = x * rotations[k].c + z * rotations[k].s;
        right[i] = z * rotations[k].c - x * rotations[k].s;
      }
    }
  }

  /// The first `rows` rows are as expected, those beyond the last whole register untouched.
  static void ExpectStrip(const Dense<T>& strip, const Dense<T>& expected, const Dense<T>& before,
                          int rows) {
    constexpr int kWidest = static_cast<int>(64 / sizeof(T));
    const int free = (rows + kWidest - 1) / kWidest * kWidest;
    for (int j = 0; j < strip.rows; ++j) {
      ASSERT_TRUE(SameElements(strip[j], expected[j], static_cast<std::size_t>(rows))) << j;
      ASSERT_TRUE(
          SameElements(strip[j] + free, before[j] + free, static_cast<std::size_t>(kRows - free)))
          << j;
    }
  }

  static void ExpectChain(int rows, int count, Kind kind) {
    SCOPED_TRACE(Name(kind) + ", " + std::to_string(rows) + " rows, " + std::to_string(count));
    const Dense<T> before = MakeMatrix<T>(count + 2, kRows, kind, 1);
    const Rotations rotations = MakeRotations(count, kind, 2);
    Dense<T> expected = before;
    RotateLiterally(expected, rotations);
    WithEveryKernelSet([&] {
      Dense<T> strip = before;
      tarn::Kernels<T>().rotateChain(rows, strip[0], count, rotations.data());
      ExpectStrip(strip, expected, before, rows);
    });
  }

  static void ExpectTwoChains(int rows, int count, int secondCount, Kind kind) {
    SCOPED_TRACE(Name(kind) + ", " + std::to_string(rows) + " rows, " + std::to_string(count) +
                 " and " + std::to_string(secondCount));
    const Dense<T> before = MakeMatrix<T>(count + 2, kRows, kind, 1);
    const Rotations rotations = MakeRotations(count, kind, 2);
    const Rotations second = MakeRotations(secondCount, kind, 3);
    Dense<T> expected = before;
    RotateLiterally(expected, rotations);
    RotateLiterally(expected, second);
    WithEveryKernelSet([&] {
      Dense<T> strip = before;
      tarn::Kernels<T>().rotateTwoChains(rows, strip[0], count, rotations.data(), secondCount,
                                         second.data());
      ExpectStrip(strip, expected, before, rows);
    });
  }
};
TYPED_TEST_SUITE(KernelRotation, ElementTypes);

TYPED_TEST(KernelRotation, OneChain) {
  for (Kind kind : kAllKinds) {
    for (int count : {0, 1, 2, 3, 7, 40}) {
      for (int rows = 1; rows <= this->kRows; ++rows) {
        ASSERT_NO_FATAL_FAILURE(this->ExpectChain(rows, count, kind));
      }
    }
  }
}

TYPED_TEST(KernelRotation, TwoChains) {
  for (Kind kind : kAllKinds) {
    for (int count : {1, 2, 3, 4, 9}) {
      for (int secondCount = 0; secondCount <= count; ++secondCount) {
        for (int rows = 1; rows <= this->kRows; rows += 3) {
          ASSERT_NO_FATAL_FAILURE(this->ExpectTwoChains(rows, count, secondCount, kind));
        }
      }
    }
    ASSERT_NO_FATAL_FAILURE(this->ExpectTwoChains(this->kRows, kLargestSize, kLargestSize, kind));
  }
}

}  // namespace
