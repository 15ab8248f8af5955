#include "special/platform_bessel.h"

#include <math.h>  // the C header: POSIX declares the Bessel functions in it, C++ does not

namespace tarn {

#if defined(_WIN32)
double PlatformJ0(double x) { return ::_j0(x); }
double PlatformJ1(double x) { return ::_j1(x); }
double PlatformJn(int n, double x) { return ::_jn(n, x); }
double PlatformY0(double x) { return ::_y0(x); }
double PlatformY1(double x) { return ::_y1(x); }
double PlatformYn(int n, double x) { return ::_yn(n, x); }
#else
double PlatformJ0(double x) { return ::j0(x); }
double PlatformJ1(double x) { return ::j1(x); }
double PlatformJn(int n, double x) { return ::jn(n, x); }
double PlatformY0(double x) { return ::y0(x); }
double PlatformY1(double x) { return ::y1(x); }
double PlatformYn(int n, double x) { return ::yn(n, x); }
#endif

}  // namespace tarn
