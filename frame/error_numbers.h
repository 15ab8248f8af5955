#ifndef TARN_FRAME_ERROR_NUMBERS_H
#define TARN_FRAME_ERROR_NUMBERS_H

/// @file
/// Host error numbers that the module raises with `TarnError`. Their texts stand in the host's own
/// error table. One more number, that of `ERR_SOLUTION_NOT_FOUND`, is registered at run time; see
/// `GetSolutionNotFoundError()` in frame/module_state.h.

namespace tarn {

inline constexpr int kErrorMemory = 1;      ///< memory exhausted
inline constexpr int kErrorArgument = 3;    ///< bad argument, wrong shape or failed iteration
inline constexpr int kErrorSingular = 10;   ///< singular system or division by zero
inline constexpr int kErrorLogarithm = 88;  ///< bad value in a logarithmic correlation

}  // namespace tarn

#endif
