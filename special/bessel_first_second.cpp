#include "special/bessel_first_second.h"

#include <cmath>

#include "special/bessel_order.h"
#include "special/bessel_real_order.h"
#include "special/platform_bessel.h"

namespace tarn {
namespace {

/// Value of an integral order: the platform's function, whose recurrence runs over |order| steps.
template <double (*platformFunction)(int n, double x)>
double OfIntegralOrder(int order, double x) {
  if (!CheckRecurrenceSteps(std::fabs(static_cast<double>(order)))) return 0.0;
  return platformFunction(order, x);
}

/// One of the four values of a real order; 0 after an error.
template <double BesselJYValues::*value>
double OfRealOrder(double x, double order) {
  BesselJYValues values = {};
  if (!BesselJY(x, order, values)) return 0.0;
  return values.*value;
}

}  // namespace

double BesselJ(double x, double order) {
  if (const auto n = IntegralOrder(order)) return OfIntegralOrder<PlatformJn>(*n, x);
  return OfRealOrder<&BesselJYValues::j>(x, order);
}

double BesselY(double x, double order) {
  if (const auto n = IntegralOrder(order)) return OfIntegralOrder<PlatformYn>(*n, x);
  return OfRealOrder<&BesselJYValues::y>(x, order);
}

double BesselJDerivative(double x, double order) {
  return OfRealOrder<&BesselJYValues::jDerivative>(x, order);
}

double BesselYDerivative(double x, double order) {
  return OfRealOrder<&BesselJYValues::yDerivative>(x, order);
}

}  // namespace tarn
