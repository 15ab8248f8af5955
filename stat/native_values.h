#ifndef TARN_STAT_NATIVE_VALUES_H
#define TARN_STAT_NATIVE_VALUES_H

/// @file
/// Native functions as script values.

#include "frame/host.h"

namespace tarn {

/// A value that holds a native function, for the searches and the minimiser to call.
template <class Result, class... Arguments>
Variable NativeFunction(Result (*function)(Arguments...)) {
  Variable value;
  value.SetCppPointer(reinterpret_cast<void*>(function));
  return value;
}

}  // namespace tarn

#endif
