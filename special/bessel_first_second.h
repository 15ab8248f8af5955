#ifndef TARN_SPECIAL_BESSEL_FIRST_SECOND_H
#define TARN_SPECIAL_BESSEL_FIRST_SECOND_H

/// @file
/// The Bessel functions of the first and second kind, J and Y, of any order, as scripts call them.
/// The argument x comes first, the order second.
///
/// An order that is integral (within the 32-bit range and equal to its truncation) goes to the
/// platform's `jn` and `yn` (platform_bessel.h), which take every x and negative orders too. Every
/// other order, and every order of a derivative, goes through `BesselJY` of bessel_real_order.h,
/// which takes x > 0 and orders from 0 on, and x up to about 920 more than the order.
///
/// Error 3 is raised, and the result is then 0,
///  - for a real order, or a derivative, where `BesselJY` raises it, with its texts;
///  - without a text for integral orders beyond +-10,000,000, whose recurrence on the platform
///    would take minutes.

namespace tarn {

/// J_order(x). Integral orders: defined for every x; NaN for NaN, 0 for infinite x.
double BesselJ(double x, double order);

/// Y_order(x). Integral orders: minus infinity at 0 and NaN for x < 0, as the platform has it.
double BesselY(double x, double order);

/// dJ_order/dx for x > 0, order >= 0.
double BesselJDerivative(double x, double order);

/// dY_order/dx for x > 0, order >= 0.
double BesselYDerivative(double x, double order);

}  // namespace tarn

#endif
