/// @file
/// Options of the address sanitizer for tests that load several modules. Every module exports its
/// entries under the same name, which the sanitizer would take for one object defined twice.

#include "frame/export.h"

extern "C" TARN_EXPORTED const char* __asan_default_options();

extern "C" const char* __asan_default_options() { return "detect_odr_violation=0"; }
