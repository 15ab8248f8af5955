/// @file
/// A library without entry table. It is linked with a module, whose table must not be taken for
/// its own.

#include "frame/export.h"

TARN_EXPORTED int tarn_test_no_module();

int tarn_test_no_module() { return 1; }
