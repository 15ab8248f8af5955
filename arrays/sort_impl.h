#ifndef TARN_ARRAYS_SORT_IMPL_H
#define TARN_ARRAYS_SORT_IMPL_H

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "arrays/sort.h"
#include "arrays/unique_sort.h"
#include "frame/host_block.h"

namespace tarn {

/// Order of numbers, ascending: 0 when equal, 1 when a > b, -1 otherwise.
template <class T>
int CompareElements(const T& a, const T& b) {
  if (a == b) return 0;
  return a > b ? 1 : -1;
}

/// Order of records, descending by value: 0 when equal, -1 when a > b, 1 otherwise.
template <class T>
int CompareElements(const svd_index<T>& a, const svd_index<T>& b) {
  if (a.value == b.value) return 0;
  return a.value > b.value ? -1 : 1;
}

/// What the procedure sorts: elements that move themselves.
template <class T>
struct ElementSequence {
  T* elements;

  const T& Key(std::int64_t i) const { return elements[i]; }
  void Exchange(std::int64_t i, std::int64_t j) const { std::swap(elements[i], elements[j]); }
};

/// What the procedure sorts: indices that move for the keys they point to.
template <class T>
struct IndexSequence {
  int* indices;
  const T* keys;

  const T& Key(std::int64_t i) const { return keys[indices[i]]; }
  void Exchange(std::int64_t i, std::int64_t j) const { std::swap(indices[i], indices[j]); }
};

/// The two stacks of pending ranges, low and high bounds. Before the first range is pushed their
/// storage can serve as a work area.
class RangeStacks {
 public:
  /// Stacks of `capacity` entries each.
  explicit RangeStacks(std::int64_t capacity)
      : heapLows_(capacity > kLocalCapacity ? AllocateBlock<std::int64_t>(capacity) : nullptr),
        heapHighs_(heapLows_.Get() ? AllocateBlock<std::int64_t>(capacity) : nullptr),
        lows_(capacity > kLocalCapacity ? heapLows_.Get() : localLows_),
        highs_(capacity > kLocalCapacity ? heapHighs_.Get() : localHighs_),
        capacity_(static_cast<std::size_t>(capacity)) {}

  /// Whether both could be had.
  bool AreValid() const { return lows_ && highs_; }
  bool AreEmpty() const { return size_ == 0; }

  void Push(std::int64_t low, std::int64_t high) {
    lows_[size_] = low;
    highs_[size_] = high;
    ++size_;
  }
  std::pair<std::int64_t, std::int64_t> Pop() {
    --size_;
    return {lows_[size_], highs_[size_]};
  }

  /// Storage for as many elements of at most 8 bytes as a stack has entries.
  template <class T>
  T* WorkArea() {
    return new (lows_) T[capacity_];
  }

 private:
  /// Entries up to which the stacks live on the call stack.
  static constexpr std::int64_t kLocalCapacity = 299;
  std::int64_t localLows_[kLocalCapacity];
  std::int64_t localHighs_[kLocalCapacity];
  ScopedBlock<std::int64_t> heapLows_;
  ScopedBlock<std::int64_t> heapHighs_;
  std::int64_t* lows_;
  std::int64_t* highs_;
  std::size_t capacity_;
  std::int64_t size_ = 0;
};

/// Outcome of partitioning a range about its pivot.
struct Partition {
  std::int64_t boundary;  ///< r: everything up to here is not above the pivot, the rest is above
  bool allEqual;          ///< nothing in the range differs from the pivot
};

/// The last position in (i, r] whose element is not above the pivot; i when there is none.
template <class Sequence, class Key>
std::int64_t FindNotAbove(const Sequence& sequence, const Key& pivot, std::int64_t i,
                          std::int64_t r) {
  while (r > i && CompareElements(sequence.Key(r), pivot) > 0) --r;
  return r;
}

/// Step 2 and the exchange of step 3. A number as pivot is not above itself, so r ends at it or
/// later. A record whose value is NaN is above everything, itself included: with it as pivot r
/// would end before the range, so it is put last instead and the rest remains to be sorted.
template <class Sequence>
Partition PartitionRange(const Sequence& sequence, std::int64_t l, std::int64_t h) {
  std::int64_t p = (l + h) / 2;
  const auto pivot = sequence.Key(p);
  std::int64_t r = h;
  bool allEqual = true;
  for (std::int64_t i = l; i <= r; ++i) {
    const int order = CompareElements(sequence.Key(i), pivot);
    if (allEqual && order == 0) continue;
    allEqual = false;
    if (order < 1) continue;
    const std::int64_t j = FindNotAbove(sequence, pivot, i, r);
    if (j > i) {
      sequence.Exchange(i, j);
      if (p == j) p = i;
    }
    r = j - 1;
  }
  if (r < l) r = h;
  if (!allEqual && p != r && CompareElements(sequence.Key(p), sequence.Key(r)) > 0) {
    sequence.Exchange(p, r);
  }
  return {r, allEqual};
}

/// Sorts the range (lo, hi) with empty stacks of at least hi - lo + 2 entries.
template <class Sequence>
void SortRange(const Sequence& sequence, std::int64_t lo, std::int64_t hi, RangeStacks& pending) {
  pending.Push(lo, hi);
  while (!pending.AreEmpty()) {
    const auto [l, h] = pending.Pop();
    if (h - l == 1) {
      if (CompareElements(sequence.Key(l), sequence.Key(h)) > 0) sequence.Exchange(l, h);
      continue;
    }
    const auto [r, allEqual] = PartitionRange(sequence, l, h);
    if (allEqual) continue;
    if (l < r - 1) pending.Push(l, r - 1);
    if (r + 1 < h) pending.Push(r + 1, h);
  }
}

}  // namespace tarn

template <class T>
void QSort(T* a, std::int64_t lo, std::int64_t hi) {
  if (hi <= lo) return;
  tarn::RangeStacks pending(hi - lo + 2);
  if (!pending.AreValid()) return;
  if constexpr (std::is_arithmetic_v<T>) {
    const std::int64_t n = hi - lo + 1;
    if (tarn::HasUniqueOrder(a + lo, n)) return tarn::SortUnique(a + lo, n, pending.WorkArea<T>());
  }
  tarn::SortRange(tarn::ElementSequence<T>{a}, lo, hi, pending);
}

template <class T>
void QSort(T* a, std::int64_t n) {
  QSort(a, std::int64_t{0}, n - 1);
}

template <class T>
void QSortIndex(int* idx, T* keys, std::int64_t lo, std::int64_t hi) {
  if (hi <= lo) return;
  tarn::RangeStacks pending(hi - lo + 2);
  if (!pending.AreValid()) return;
  tarn::SortRange(tarn::IndexSequence<T>{idx, keys}, lo, hi, pending);
}

template <class T>
void QSortIndex(int* idx, T* keys, std::int64_t n) {
  QSortIndex(idx, keys, std::int64_t{0}, n - 1);
}

template <class T>
int T_compare(const void* p, const void* q) {
  return tarn::CompareElements(*static_cast<const T*>(p), *static_cast<const T*>(q));
}

#endif
