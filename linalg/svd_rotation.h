#ifndef TARN_LINALG_SVD_ROTATION_H
#define TARN_LINALG_SVD_ROTATION_H

/// @file
/// Plane rotations of columns, recorded and applied later.
///
/// What the iteration on a bidiagonal matrix does to the singular vectors depends on the two
/// diagonals alone. So it records its rotations, and they are applied in bulk: within a row one
/// rotation follows the other as recorded, and no row depends on another one.

#include <cstdint>

#include "linalg/kernels.h"
#include "linalg/svd_kernels.h"
#include "linalg/svd_strips.h"

namespace tarn {

/// What a run of recorded operations does.
enum class RotationKind {
  kChain,  ///< rotates columns (first, first + 1), (first + 1, first + 2), ...
  kFan,    ///< rotates columns (first, second), (first, second + step), ...
};

struct RotationRun {
  RotationKind kind;
  int first;
  int second;  ///< for a fan; otherwise unused
  int step;    ///< for a fan: 1 or -1; otherwise unused
  int count;   ///< rotations of the run

  int LeftColumn(int k) const { return kind == RotationKind::kChain ? first + k : first; }
  int RightColumn(int k) const {
    return kind == RotationKind::kChain ? first + k + 1 : second + k * step;
  }
};

/// Applies one rotation to `rows` pairs of elements next to each other.
template <class Element>
void RotatePairs(int rows, Element* left, Element* right, const Rotation<Element>& rotation) {
  for (int i = 0; i < rows; ++i) {
    const Element x = left[i];
    const Element z = right[i];
    left[i] = x * rotation.c + z * rotation.s;
    right[i] = z * rotation.c - x * rotation.s;
  }
}

/// Applies a run to `rows` rows whose columns lie `stride` elements apart.
template <class Element>
void ApplyRun(int rows, Element* columns, std::int64_t stride, const RotationRun& run,
              const Rotation<Element>* rotations) {
  for (int k = 0; k < run.count; ++k) {
    RotatePairs(rows, columns + run.LeftColumn(k) * stride, columns + run.RightColumn(k) * stride,
                rotations[k]);
  }
}

/// Rotations waiting to be applied to the columns of a block, which is in strips meanwhile.
template <class Element>
class RotationLog {
 public:
  /// `buffer` as for RowStrips; without it rows are rotated where they are.
  RotationLog(Block<Element> target, Element* buffer) : strips_(target, buffer) { strips_.Pack(); }
  RotationLog(const RotationLog&) = delete;
  RotationLog& operator=(const RotationLog&) = delete;

  void BeginChain(int first) { Begin({RotationKind::kChain, first, 0, 0, 0}); }
  void BeginFan(int first, int second, int step) {
    Begin({RotationKind::kFan, first, second, step, 0});
  }

  /// Adds a rotation to the run begun last.
  void Add(Element c, Element s) {
    if (rotationCount_ == kRotations) ContinueAfterApply();
    rotations_[rotationCount_++] = {c, s};
    ++runs_[runCount_ - 1].count;
  }

  /// Applies what is left and puts the rows back into their places.
  void Finish() {
    Apply();
    strips_.Unpack();
  }

 private:
  static constexpr int kRuns = 64;
  static constexpr int kRotations = 1024;

  void Begin(const RotationRun& run) {
    if (runCount_ == kRuns) Apply();
    runs_[runCount_++] = run;
  }

  /// Makes room in the middle of a run and begins it anew where it was left.
  void ContinueAfterApply() {
    RotationRun rest = runs_[runCount_ - 1];
    if (rest.kind == RotationKind::kChain) {
      rest.first += rest.count;
    } else {
      rest.second += rest.count * rest.step;
    }
    rest.count = 0;
    Apply();
    Begin(rest);
  }

  void Apply() {
    if (strips_.HasStrips()) {
      strips_.ForEachStrip([this](int rows, Element* strip) { ApplyToStrip(rows, strip); });
    } else {
      for (int i = 0; i < strips_.Rows().rows; ++i) ApplyToRow(strips_.Rows().Row(i));
    }
    runCount_ = 0;
    rotationCount_ = 0;
  }

  void ApplyToRow(Element* row) {
    const Rotation<Element>* rotations = rotations_;
    for (int k = 0; k < runCount_; ++k) {
      ApplyRun(1, row, 1, runs_[k], rotations);
      rotations += runs_[k].count;
    }
  }

  void ApplyToStrip(int rows, Element* strip) {
    constexpr std::int64_t kStride = kStripRows<Element>;
    const Rotation<Element>* rotations = rotations_;
    for (int k = 0; k < runCount_; ++k) {
      const RotationRun& run = runs_[k];
      Element* const columns = strip + run.first * kStride;
      if (run.kind == RotationKind::kFan) {
        ApplyRun(rows, strip, kStride, run, rotations);
      } else if (k + 1 < runCount_ && CanFollow(run, runs_[k + 1])) {
        const RotationRun& next = runs_[++k];
        Kernels<Element>().rotateTwoChains(rows, columns, run.count, rotations, next.count,
                                           rotations + run.count);
        rotations += run.count;
      } else {
        Kernels<Element>().rotateChain(rows, columns, run.count, rotations);
      }
      rotations += runs_[k].count;
    }
  }

  /// Whether two runs make a pair of chains that are applied in one pass.
  static bool CanFollow(const RotationRun& run, const RotationRun& next) {
    return next.kind == RotationKind::kChain && run.count > 0 && next.first == run.first &&
           next.count <= run.count;
  }

  RowStrips<Element> strips_;
  int runCount_ = 0;
  int rotationCount_ = 0;
  RotationRun runs_[kRuns];
  Rotation<Element> rotations_[kRotations];
};

}  // namespace tarn

#endif
