#ifndef TARN_SPECIAL_BESSEL_FIRST_SECOND_H
#define TARN_SPECIAL_BESSEL_FIRST_SECOND_H
namespace tarn {
double BesselJ(double x, double order);
double BesselY(double x, double order);
double BesselJDerivative(double x, double order);
double BesselYDerivative(double x, double order);
}  // namespace tarn
#endif
