#ifndef TARN_SPECIAL_PLATFORM_BESSEL_H
#define TARN_SPECIAL_PLATFORM_BESSEL_H
namespace tarn {
double PlatformJ0(double x);
double PlatformJ1(double x);
double PlatformJn(int n, double x);
double PlatformY0(double x);
double PlatformY1(double x);
double PlatformYn(int n, double x);
}  // namespace tarn
#endif
