#ifndef TARN_STAT_NATIVE_VALUES_H
#define TARN_STAT_NATIVE_VALUES_H

/// @file
/// Native functions and the arrays that they work on as script values.

#include "frame/host.h"

namespace tarn {

/// A value that holds a native function, for the searches and the minimiser to call.
template <class Result, class... Arguments>
Variable NativeFunction(Result (*function)(Arguments...)) {
  Variable value;
  value.SetCppPointer(reinterpret_cast<void*>(function));
  return value;
}

/// A value that holds the address of another one, which must outlive it.
///
/// Searches copy the extra parameter of their function. A copied array needs memory that may be
/// refused; a copied address does not, so that no function is ever called without its arguments.
inline Variable AddressOf(Variable& value) {
  Variable address;
  address.SetCppPointer(&value);
  return address;
}

/// The value whose address `extra`, the extra parameter that a search hands over, holds.
inline Variable& ValueAt(void* extra) {
  return *static_cast<Variable*>(static_cast<Variable*>(extra)->GetCppPointer());
}

}  // namespace tarn

#endif
