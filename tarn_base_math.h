#ifndef TARN_BASE_MATH_H
#define TARN_BASE_MATH_H

/// @file
/// Everything that the module `Tarn_base_math` exports, in one header.

#include "arrays/median.h"
#include "arrays/search.h"
#include "arrays/sort.h"
#include "arrays/typed_array.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"
#include "linalg/vector_set.h"
#include "optim/bisection.h"
#include "optim/climb.h"
#include "optim/golden_section.h"
#include "optim/line_lsqm2.h"
#include "special/bessel_modified.h"
#include "special/beta.h"
#include "special/error_function.h"
#include "special/f_test.h"
#include "special/gamma.h"
#include "special/random.h"
#include "special/random_lock.h"
#include "stat/float_tables.h"
#include "stat/stat.h"
#include "stat/stat_weighted.h"
#include "tfunc/tfunc.h"

#endif
