#include "special/error_measure.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace accuracy {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double SpacingAt(long double magnitude) {
  const double at = static_cast<double>(magnitude);
  return std::nextafter(at, kInfinity) - at;
}

}  // namespace

Measure MeasureNamed(const std::string& name) {
  if (name == "abs") return Measure::kAbsolute;
  if (name == "rel") return Measure::kRelative;
  if (name == "ulp") return Measure::kUlp;
  throw std::runtime_error("no measure is named " + name);
}

double ErrorOf(Measure measure, double computed, long double truth) {
  if (std::isnan(truth)) return std::isnan(computed) ? 0.0 : kInfinity;
  if (std::isnan(computed)) return kInfinity;
  const double rounded = static_cast<double>(truth);
  if (std::isinf(rounded) || std::isinf(computed)) return computed == rounded ? 0.0 : kInfinity;
  const long double difference = std::fabs(static_cast<long double>(computed) - truth);
  if (measure == Measure::kAbsolute) return static_cast<double>(difference);
  const long double leastNormal = std::numeric_limits<double>::min();
  const long double magnitude = std::fmax(std::fabs(truth), leastNormal);
  if (measure == Measure::kRelative) return static_cast<double>(difference / magnitude);
  return static_cast<double>(difference / SpacingAt(magnitude));
}

}  // namespace accuracy
