#ifndef TARN_ARRAYS_MEDIAN_IMPL_H
#define TARN_ARRAYS_MEDIAN_IMPL_H

/// @file
/// The median by bisection, without making the lists that nobody looks at.
///
/// Which list is searched next follows from counting alone, so that list is the only one written,
/// and not before a good part of the values has been ruled out: counting costs a fraction of
/// moving. The values ruled out until then are those beyond a split, because a split that equals
/// some value is settled at once. Rounds are gone through without looking at the values
/// where their outcome is known: where the split lies beyond all values, and, in arrays with
/// outliers, where a probe nearer to the median shows which way they go. Lists, order and splits
/// are the procedure's throughout.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <type_traits>
#include <utility>

#include "arrays/median.h"
#include "frame/host_block.h"

namespace tarn {

/// Mean of two floating-point numbers.
template <class T>
requires std::is_floating_point_v<T> T Mean(T a, T b) {
  const T sum = a + b;
  const bool overflows = std::isinf(sum) && std::isfinite(a) && std::isfinite(b);
  return overflows ? a + (b - a) / 2 : sum / 2;
}

/// Mean of two integers, truncated towards zero.
template <class T>
requires std::is_integral_v<T> T Mean(T a, T b) {
  const std::int64_t sum = std::int64_t{a} + b;
  const bool overflows =
      sum > std::numeric_limits<int>::max() || sum < std::numeric_limits<int>::min();
  if (overflows) return static_cast<T>(a + (b - a) / 2);
  return static_cast<T>(static_cast<double>(sum) * 0.5);
}

/// Values in a row.
template <class T>
struct ValueList {
  const T* values;
  std::int64_t count;
};

/// How many values of a list lie on either side of a split; NaN counts as a tie.
struct Tally {
  std::int64_t below;
  std::int64_t above;
  std::int64_t ties;
};

template <class T>
Tally CountAbout(const ValueList<T>& list, T split) {
  std::int64_t below = 0;
  std::int64_t above = 0;
  for (std::int64_t i = 0; i < list.count; ++i) {
    below += list.values[i] < split;
    above += list.values[i] > split;
  }
  return {below, above, list.count - below - above};
}

/// Smallest and largest value of a list.
template <class T>
struct Extremes {
  T smallest;
  T largest;
};

/// Extremes of a list that is not empty. They start from the first value; a NaN there stays, others
/// are passed over. Several lanes, so that comparisons need not wait for each other.
template <class T>
Extremes<T> FindExtremes(const ValueList<T>& list) {
  constexpr std::int64_t kLanes = 8;
  T smallest[kLanes];
  T largest[kLanes];
  for (std::int64_t lane = 0; lane < kLanes; ++lane)
    smallest[lane] = largest[lane] = list.values[0];
  const auto admit = [&](std::int64_t lane, T value) {
    smallest[lane] = value < smallest[lane] ? value : smallest[lane];
    largest[lane] = value > largest[lane] ? value : largest[lane];
  };
  std::int64_t i = 0;
  for (; i + kLanes <= list.count; i += kLanes) {
    for (std::int64_t lane = 0; lane < kLanes; ++lane) admit(lane, list.values[i + lane]);
  }
  for (; i < list.count; ++i) admit(0, list.values[i]);
  for (std::int64_t lane = 1; lane < kLanes; ++lane) {
    if (smallest[lane] < smallest[0]) smallest[0] = smallest[lane];
    if (largest[lane] > largest[0]) largest[0] = largest[lane];
  }
  return {smallest[0], largest[0]};
}

/// Whether every value of a list, which is not empty, equals its first.
template <class T>
bool IsConstant(const ValueList<T>& list) {
  for (std::int64_t i = 0; i < list.count; ++i) {
    if (!(list.values[i] == list.values[0])) return false;
  }
  return true;
}

/// Copies the values for which `isKept` holds, in order and without a branch on the data. The
/// target may be the list's own storage.
template <class T, class Predicate>
ValueList<T> Filter(const ValueList<T>& list, T* target, Predicate isKept) {
  std::int64_t kept = 0;
  for (std::int64_t i = 0; i < list.count; ++i) {
    const T value = list.values[i];
    target[kept] = value;
    kept += isKept(value);
  }
  return {target, kept};
}

/// Whether two splits are the same number, or both NaN.
template <class T>
bool IsSameSplit(T a, T b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

/// The search for the median of at least three values, with a buffer for as many.
template <class T>
class MedianSearch {
 public:
  MedianSearch(const T* values, std::int64_t n, T* buffer)
      : list_{values, n}, buffer_(buffer), split_(values[n / 2]) {}

  T Find() {
    if (const std::optional<T> median = Begin()) return *median;
    for (round_ = 1; Remaining() != 2; ++round_) {
      const Tally tally = CountAbout(list_, split_);
      const std::optional<T> median = tally.ties > 0 ? PlayRoundWithTies() : PlayRound(tally);
      if (median) return *median;
    }
    RemoveRuledOut();
    return Mean(list_.values[0], list_.values[1]);
  }

 private:
  /// How many values of the whole array lie on either side of the split.
  struct Sides {
    std::int64_t below;
    std::int64_t above;
  };

  /// Values among which the median is still searched.
  std::int64_t Remaining() const { return list_.count - ruledOutBelow_ - ruledOutAbove_; }
  /// Even rounds deal the first value that equals the split to the upper list.
  bool FirstTieGoesUp() const { return round_ % 2 == 0; }

  Sides CountSides(const Tally& tally) const {
    const std::int64_t tiesAbove = (tally.ties + (FirstTieGoesUp() ? 1 : 0)) / 2;
    return {tally.below + tally.ties - tiesAbove + knownBelow_,
            tally.above + tiesAbove + knownAbove_};
  }

  /// Step 1.
  std::optional<T> Begin() {
    const Tally tally = CountAbout(list_, split_);
    const Sides sides = CountSides(tally);
    if (sides.below == sides.above) return split_;
    const auto [smallest, largest] = FindExtremes(list_);
    const bool up = sides.below < sides.above;
    KeepSide(up, tally, sides);
    lo_ = up ? split_ : smallest;
    hi_ = up ? largest : split_;
    split_ = Mean(up ? largest : smallest, split_);
    return std::nullopt;
  }

  /// A round of step 2 in which no value equals the split.
  std::optional<T> PlayRound(const Tally& tally) {
    const Sides sides = CountSides(tally);
    if (sides.below == sides.above) return split_;
    const bool up = sides.below < sides.above;
    const std::int64_t before = Remaining();
    (up ? ruledOutBelow_ : ruledOutAbove_) = up ? tally.below : tally.above;
    (up ? least_ : greatest_) = split_;
    MoveSplit(up);
    idleRounds_ = 0;
    if (Remaining() == before) return PlayIdleRounds();
    if (3 * Remaining() <= 2 * list_.count) {
      RemoveRuledOut();
    } else if (++poorRounds_ == kPatience && list_.count >= kWorthProbing) {
      SkipRounds(up);
    }
    return std::nullopt;
  }

  /// After a round that ruled nothing out: all rounds to come whose split is beyond every value.
  std::optional<T> PlayIdleRounds() {
    RemoveRuledOut();
    const auto [smallest, largest] = FindExtremes(list_);
    if (smallest == largest) return list_.values[0];
    while (split_ < smallest || split_ > largest) {
      const T before = split_;
      MoveSplit(split_ < smallest);
      if (split_ == before) return split_;
      ++round_;
    }
    return std::nullopt;
  }

  /// Goes through rounds to come that move the split further in the same direction, where a probe
  /// between split and median proves that they do: with more values up to the probe than above it,
  /// every split above it moves down, whatever it is. The last split beyond the probe is left to a
  /// proper round, which rules out what the skipped ones would have.
  void SkipRounds(bool up) {
    const T probe = ChooseProbe(up);
    const Tally tally = CountAbout(list_, probe);
    const std::int64_t notBelow = tally.above + tally.ties;
    const std::int64_t notAbove = tally.below + tally.ties;
    const std::int64_t surplus = up ? notBelow + knownAbove_ - tally.below - knownBelow_
                                    : notAbove + knownBelow_ - tally.above - knownAbove_;
    const std::int64_t remaining = up ? notBelow - ruledOutAbove_ : notAbove - ruledOutBelow_;
    if (surplus <= 0 || remaining <= 2) return;
    for (;; ++round_) {
      const T next = Mean(split_, up ? hi_ : lo_);
      if (next == split_ || !(up ? next < probe : next > probe)) return;
      MoveSplit(up);
    }
  }

  /// A value of the list about half-way, by rank, from the median to the end that the split moves
  /// away from, judged by a sample.
  T ChooseProbe(bool up) const {
    constexpr std::int64_t kSampleSize = 16;
    std::array<T, kSampleSize> sample;
    for (std::int64_t i = 0; i < kSampleSize; ++i) {
      sample[static_cast<std::size_t>(i)] = list_.values[i * list_.count / kSampleSize];
    }
    std::sort(sample.begin(), sample.end());
    const std::int64_t medianRank = (list_.count + knownAbove_ - knownBelow_) / 2;
    const std::int64_t rank = (medianRank + (up ? 0 : list_.count)) / 2;
    const std::int64_t place = rank * kSampleSize / list_.count;
    return sample[static_cast<std::size_t>(std::clamp(place, std::int64_t{0}, kSampleSize - 1))];
  }

  /// A round of step 2 in which some value equals the split or is NaN.
  std::optional<T> PlayRoundWithTies() {
    RemoveRuledOut();
    if (IsConstant(list_)) return list_.values[0];
    const Tally tally = CountAbout(list_, split_);
    const Sides sides = CountSides(tally);
    if (sides.below == sides.above) return split_;
    const bool up = sides.below < sides.above;
    const std::int64_t countBefore = list_.count;
    const T splitBefore = split_;
    KeepSide(up, tally, sides);
    MoveSplit(up);
    const bool isIdle = list_.count == countBefore && IsSameSplit(split_, splitBefore);
    idleRounds_ = isIdle ? idleRounds_ + 1 : 0;
    if (idleRounds_ == 2) return split_;
    return std::nullopt;
  }

  /// Ends the interval of the median at the split and moves the split half-way to its other end.
  void MoveSplit(bool up) {
    (up ? lo_ : hi_) = split_;
    split_ = Mean(split_, up ? hi_ : lo_);
  }

  /// Makes the upper or the lower list the one that is searched.
  void KeepSide(bool up, const Tally& tally, const Sides& sides) {
    poorRounds_ = 0;
    (up ? knownBelow_ : knownAbove_) = up ? sides.below : sides.above;
    if (tally.ties > 1) {
      list_ = FilterDealingTies(up);
    } else {
      list_ = FilterOneTie(up, FirstTieGoesUp() == up);
    }
  }

  /// The values on one side of the split, with every other of the values equal to it.
  ValueList<T> FilterDealingTies(bool up) const {
    bool tieGoesUp = FirstTieGoesUp();
    return Filter(list_, buffer_, [up, tieGoesUp, split = split_](T value) mutable {
      const bool isAbove = value > split;
      const bool isTie = !isAbove & !(value < split);
      const bool goesUp = isAbove | (isTie & tieGoesUp);
      tieGoesUp ^= isTie;
      return goesUp == up;
    });
  }

  /// The values on one side of the split, with or without the one that equals it.
  ValueList<T> FilterOneTie(bool up, bool withTie) const {
    const T split = split_;
    if (up && withTie) return Filter(list_, buffer_, [split](T value) { return !(value < split); });
    if (up) return Filter(list_, buffer_, [split](T value) { return value > split; });
    if (withTie) return Filter(list_, buffer_, [split](T value) { return !(value > split); });
    return Filter(list_, buffer_, [split](T value) { return value < split; });
  }

  /// Takes the values that are ruled out from the list.
  void RemoveRuledOut() {
    if (ruledOutBelow_ == 0 && ruledOutAbove_ == 0) return;
    poorRounds_ = 0;
    const bool keepsLow = ruledOutBelow_ == 0;
    const bool keepsHigh = ruledOutAbove_ == 0;
    list_ = Filter(list_, buffer_,
                   [keepsLow, keepsHigh, least = least_, greatest = greatest_](T value) {
                     return (keepsLow | (value > least)) & (keepsHigh | (value < greatest));
                   });
    knownBelow_ += std::exchange(ruledOutBelow_, 0);
    knownAbove_ += std::exchange(ruledOutAbove_, 0);
  }

  ValueList<T> list_;  ///< values among which the median is searched, and those ruled out lately
  T* buffer_;          ///< storage of the list, once it is not the whole array
  std::int64_t ruledOutBelow_ = 0;  ///< values in the list that lie below `least_`
  std::int64_t ruledOutAbove_ = 0;  ///< values in the list that lie above `greatest_`
  T least_{};                       ///< split that ruled out values below it
  T greatest_{};                    ///< split that ruled out values above it
  std::int64_t knownBelow_ = 0;     ///< values of the whole array that lie below the list
  std::int64_t knownAbove_ = 0;     ///< values of the whole array that lie above the list
  T lo_{};                          ///< the median is not below
  T hi_{};                          ///< the median is not above
  T split_;                         ///< value about which the next round partitions
  /// Poor rounds, in which few values are ruled out, on the same list before a probe is tried.
  static constexpr int kPatience = 2;
  static constexpr std::int64_t kWorthProbing = 100;
  int poorRounds_ = 0;
  int round_ = 0;
  int idleRounds_ = 0;  ///< rounds in succession that changed neither list nor split
};

}  // namespace tarn

template <class T>
T QMedian(T* a, std::int64_t n, T** work) {
  if (n < 1) return 0;
  if (n == 1) return a[0];
  if (n == 2) return tarn::Mean(a[0], a[1]);
  return tarn::MedianSearch<T>(a, n, work[0]).Find();
}

template <class T>
T QMedian(T* a, std::int64_t n) {
  if (n < 3) return QMedian(a, n, static_cast<T**>(nullptr));
  const tarn::ScopedBlock<T> block(
      tarn::IsAllocatable(n, 4 * sizeof(T)) ? tarn::AllocateBlock<T>(4 * n) : nullptr);
  if (!block.Get()) return 0;
  T* work[4] = {block.Get(), block.Get() + n, block.Get() + 2 * n, block.Get() + 3 * n};
  return QMedian(a, n, work);
}

#endif
