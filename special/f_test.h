#ifndef TARN_SPECIAL_F_TEST_H
#define TARN_SPECIAL_F_TEST_H
#include "frame/export.h"
TARN_API double FTest(double* data1, int n1, double* data2, int n2, double& f);
#endif
