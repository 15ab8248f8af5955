#ifndef TARN_SPECIAL_BETA_H
#define TARN_SPECIAL_BETA_H
#include "frame/export.h"
TARN_API double Beta_I(double a, double b, double x);
TARN_API double LnBeta_I(double a, double b, double x);
TARN_API double Beta(double a, double b);
TARN_API double LnBeta(double a, double b);
namespace tarn {
double BetaContFrac(double a, double b, double x);
double LnBetaContFrac(double a, double b, double x);
}  // namespace tarn
#endif
