#ifndef TARN_SPECIAL_BESSEL_MODIFIED_H
#define TARN_SPECIAL_BESSEL_MODIFIED_H
#include <optional>

#include "frame/export.h"
TARN_API double BesselI0(double x);
TARN_API double BesselI1(double x);
TARN_API double BesselIn(double x, double n);
TARN_API double LnBesselIn(double x, double n);
TARN_API double BesselIpn(double x, double n);
TARN_API double LnBesselIpn(double x, double n);
TARN_API double BesselK0(double x);
TARN_API double BesselK1(double x);
TARN_API double BesselKn(double x, double n);
TARN_API double BesselKpn(double x, double n);
namespace tarn {
std::optional<double> BesselIInt(int n, double x);
std::optional<double> BesselKInt(int n, double x);
}  // namespace tarn
#endif
