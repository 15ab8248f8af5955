#ifndef TARN_SPECIAL_PLATFORM_BESSEL_H
#define TARN_SPECIAL_PLATFORM_BESSEL_H

/// @file
/// The Bessel functions of integral order that the platform's C mathematics library brings: `j0`
/// and so on of POSIX, `_j0` and so on of Windows. They take every double and raise no host error;
/// edges and accuracy are the platform's (docs/accuracy.md has figures for the C library of
/// GNU/Linux).

namespace tarn {

double PlatformJ0(double x);         ///< J_0(x)
double PlatformJ1(double x);         ///< J_1(x)
double PlatformJn(int n, double x);  ///< J_n(x), takes up to |n| steps
double PlatformY0(double x);         ///< Y_0(x), x > 0
double PlatformY1(double x);         ///< Y_1(x), x > 0
double PlatformYn(int n, double x);  ///< Y_n(x), x > 0, takes up to |n| steps

}  // namespace tarn

#endif
