/// @file
/// A library that needs a symbol that exists nowhere.

#include "frame/export.h"

int tarn_test_defined_nowhere();

TARN_EXPORTED int tarn_test_unresolved();

int tarn_test_unresolved() { return tarn_test_defined_nowhere(); }
