#ifndef TESTS_SPECIAL_ERROR_MEASURE_H
#define TESTS_SPECIAL_ERROR_MEASURE_H

/// @file
/// The one measure of error of all comparisons with truth tables.

#include <string>

namespace accuracy {

enum class Measure {
  kAbsolute,  ///< |computed - truth|
  kRelative,  ///< |computed - truth| / |truth|
  kUlp,       ///< |computed - truth| in spacings of doubles at the truth
};

/// The measure of that name in tables: "abs", "rel" or "ulp". Throws `std::runtime_error`
/// otherwise.
Measure MeasureNamed(const std::string& name);

/// How far `computed` is from `truth`, which has more digits than a double.
///  - NaN truth: 0 for NaN, else infinity. NaN computed for a truth that is a number: infinity.
///  - A truth that overflows a double: 0 for the infinity of its sign, else infinity; an infinity
///    computed for any other truth: infinity.
///  - Relative and ulp: truths below the least normal double, zero among them, are measured at that
///    double, so that an underflow to zero has a relative error of 1 at most.
double ErrorOf(Measure measure, double computed, long double truth);

}  // namespace accuracy

#endif
