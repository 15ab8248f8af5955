#ifndef TARN_SPECIAL_RANDOM_H
#define TARN_SPECIAL_RANDOM_H
#include "frame/export.h"
TARN_API double RandGauss(double mean, double sigma);
TARN_API double RandPoisson(double mean);
TARN_API double RandBinominal(double p, int n);
#endif
