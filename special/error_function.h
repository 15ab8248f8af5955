#ifndef TARN_SPECIAL_ERROR_FUNCTION_H
#define TARN_SPECIAL_ERROR_FUNCTION_H
#include "frame/export.h"
TARN_API double Erf(double x);
TARN_API double CErf(double x);
TARN_API double LogCErf(double x);
#endif
