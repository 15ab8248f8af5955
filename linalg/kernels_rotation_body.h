// Chains of plane rotations of the columns of a strip; see kernels_body.h.
//
// The rows of a strip lie side by side in registers. A column that one rotation of a chain leaves
// for the next one stays there; two chains follow each other at a distance of one column, so that
// the column that the first one has finished goes to the second one without a detour.

#ifndef TARN_LINALG_KERNELS_ROTATION_BODY_H
#define TARN_LINALG_KERNELS_ROTATION_BODY_H

#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

/// kVectors registers of one column.
template <class Element, Index kVectors>
struct ColumnPart {
  Block<Vector<Element>, kVectors> rows;

  TARN_INLINE void LoadFrom(const Element* column) {
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) rows[v] = Load(column + v * kLanes<Element>);
  }
  TARN_INLINE void StoreTo(Element* column) const {
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) Store(column + v * kLanes<Element>, rows[v]);
  }
};

template <class Element, Index kVectors>
TARN_INLINE void Rotate(ColumnPart<Element, kVectors>& left, ColumnPart<Element, kVectors>& right,
                        const Rotation<Element>& rotation) {
  const Vector<Element> c = Broadcast(rotation.c);
  const Vector<Element> s = Broadcast(rotation.s);
  TARN_UNROLL
  for (Index v = 0; v < kVectors; ++v) {
    const Vector<Element> x = left.rows[v];
    const Vector<Element> z = right.rows[v];
    left.rows[v] = x * c + z * s;
    right.rows[v] = z * c - x * s;
  }
}

/// Continues a chain whose next left column is `left`, in memory at `column`.
template <class Element, Index kVectors>
TARN_INLINE void ContinueChain(ColumnPart<Element, kVectors> left, Element* column, Index count,
                               const Rotation<Element>* rotations) {
  for (Index k = 0; k < count; ++k) {
    ColumnPart<Element, kVectors> right;
    right.LoadFrom(column + kStripRows<Element>);
    Rotate(left, right, rotations[k]);
    left.StoreTo(column);
    left = right;
    column += kStripRows<Element>;
  }
  left.StoreTo(column);
}

// What is done to kVectors registers of every column.
template <class Element>
struct OneChain {
  Index count;
  const Rotation<Element>* rotations;

  template <Index kVectors>
  TARN_INLINE void Run(Element* column) const {
    ColumnPart<Element, kVectors> left;
    left.LoadFrom(column);
    ContinueChain(left, column, count, rotations);
  }
};

template <class Element>
struct TwoChains {
  Index count;
  const Rotation<Element>* rotations;
  Index secondCount;
  const Rotation<Element>* secondRotations;

  template <Index kVectors>
  TARN_INLINE void Run(Element* column) const {
    ColumnPart<Element, kVectors> second;
    ColumnPart<Element, kVectors> first;
    second.LoadFrom(column);
    first.LoadFrom(column + kStripRows<Element>);
    Rotate(second, first, rotations[0]);
    const Index together = Least(secondCount, count - 1);
    for (Index k = 0; k < together; ++k) {
      ColumnPart<Element, kVectors> next;
      next.LoadFrom(column + 2 * kStripRows<Element>);
      Rotate(first, next, rotations[k + 1]);
      Rotate(second, first, secondRotations[k]);
      second.StoreTo(column);
      second = first;
      first = next;
      column += kStripRows<Element>;
    }
    if (together < secondCount) {
      // Both chains end with the same column.
      Rotate(second, first, secondRotations[together]);
      second.StoreTo(column);
      first.StoreTo(column + kStripRows<Element>);
    } else {
      second.StoreTo(column);
      ContinueChain(first, column + kStripRows<Element>, count - together - 1,
                    rotations + together + 1);
    }
  }
};

/// Registers per column that a pass over the strip takes: columns of two chains, their rotations
/// and what comes up have to find room.
inline constexpr Index kStripVectors = TARN_KERNEL_BYTES == 64 ? 4 : 2;

template <class Element, class Chains>
TARN_INLINE void RotateStrip(Index rows, Element* strip, const Chains& chains) {
  constexpr Index n = kLanes<Element>;
  Index i = 0;
  for (; i + n * (kStripVectors - 1) < rows; i += n * kStripVectors) {
    chains.template Run<kStripVectors>(strip + i);
  }
  for (; i < rows; i += n) chains.template Run<1>(strip + i);
}

template <class Element>
void RotateChain(Index rows, Element* strip, Index count, const Rotation<Element>* rotations) {
  RotateStrip(rows, strip, OneChain<Element>{count, rotations});
}

template <class Element>
void RotateTwoChains(Index rows, Element* strip, Index count, const Rotation<Element>* rotations,
                     Index secondCount, const Rotation<Element>* secondRotations) {
  RotateStrip(rows, strip, TwoChains<Element>{count, rotations, secondCount, secondRotations});
}

}  // namespace
}  // namespace tarn

#endif
