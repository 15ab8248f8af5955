#ifndef TARN_SPECIAL_GAMMA_H
#define TARN_SPECIAL_GAMMA_H
#include "frame/export.h"
TARN_API double LnGamma(double x);
TARN_API double Gamma_P(double a, double x);
TARN_API double Gamma_Q(double a, double x);
TARN_API double LnGamma_P(double a, double x);
TARN_API double LnGamma_Q(double a, double x);
namespace tarn {
double GammaSeries(double a, double x);
double LnGammaSeries(double a, double x);
double GammaContFrac(double a, double x);
double LnGammaContFrac(double a, double x);
}  // namespace tarn
#endif
