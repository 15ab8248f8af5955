#ifndef TARN_LINALG_SVD_ROTATION_H
#define TARN_LINALG_SVD_ROTATION_H

/// @file
/// Plane rotations of columns, recorded and applied later.
///
/// What the iteration on a bidiagonal matrix does to the singular vectors depends on the two
/// diagonals alone. So it records its rotations, and they are applied in bulk, row by row: within a
/// row one rotation follows the other as recorded, and no row depends on another one.

#include <cstdint>

#include "linalg/svd_kernels.h"

namespace tarn {

/// A rotation by the angle with this cosine and sine: a pair of elements (x, z) turns into
/// (x*c + z*s, z*c - x*s).
template <class Element>
struct Rotation {
  Element c;
  Element s;
};

/// What a run of recorded operations does.
enum class RotationKind {
  kChain,  ///< rotates columns (first, first + 1), (first + 1, first + 2), ...
  kFan,    ///< rotates columns (first, second), (first, second + step), ...
  kNegate  ///< changes the sign of column `first`; has no rotations
};

struct RotationRun {
  RotationKind kind;
  int first;
  int second;  ///< for a fan; otherwise unused
  int step;    ///< for a fan: 1 or -1; otherwise unused
  int count;   ///< rotations of the run
};

/// Applies a run to one row.
template <class Element>
void RotateRow(Element* row, const RotationRun& run, const Rotation<Element>* rotations) {
  if (run.kind == RotationKind::kNegate) row[run.first] = -row[run.first];
  for (int k = 0; k < run.count; ++k) {
    const bool isChain = run.kind == RotationKind::kChain;
    Element& left = row[isChain ? run.first + k : run.first];
    Element& right = row[isChain ? run.first + k + 1 : run.second + k * run.step];
    const Element x = left;
    const Element z = right;
    left = x * rotations[k].c + z * rotations[k].s;
    right = z * rotations[k].c - x * rotations[k].s;
  }
}

/// Rotations waiting to be applied to the columns of a block.
template <class Element>
class RotationLog {
 public:
  explicit RotationLog(Block<Element> target) : target_(target) {}
  RotationLog(const RotationLog&) = delete;
  RotationLog& operator=(const RotationLog&) = delete;

  void BeginChain(int first) { Begin({RotationKind::kChain, first, 0, 0, 0}); }
  void BeginFan(int first, int second, int step) {
    Begin({RotationKind::kFan, first, second, step, 0});
  }
  void Negate(int column) { Begin({RotationKind::kNegate, column, 0, 0, 0}); }

  /// Adds a rotation to the run begun last.
  void Add(Element c, Element s) {
    if (rotationCount_ == kRotations) ContinueAfterApply();
    rotations_[rotationCount_++] = {c, s};
    ++runs_[runCount_ - 1].count;
  }

  /// Applies everything recorded so far.
  void Apply() {
    for (int i = 0; i < target_.rows; ++i) {
      const Rotation<Element>* rotations = rotations_;
      for (int k = 0; k < runCount_; ++k) {
        RotateRow(target_.Row(i), runs_[k], rotations);
        rotations += runs_[k].count;
      }
    }
    runCount_ = 0;
    rotationCount_ = 0;
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

  Block<Element> target_;
  int runCount_ = 0;
  int rotationCount_ = 0;
  RotationRun runs_[kRuns];
  Rotation<Element> rotations_[kRotations];
};

}  // namespace tarn

#endif
