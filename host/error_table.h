#ifndef TARN_HOST_ERROR_TABLE_H
#define TARN_HOST_ERROR_TABLE_H

/// @file
/// Error numbers and their texts. The table belongs to the process: a module registers its errors
/// once and keeps the numbers.

namespace tarn {

// Numbers fixed by this host besides those of frame/error_numbers.h.
inline constexpr int kNoError = 0;
inline constexpr int kErrorScript = 4;  ///< a script does not compile or failed by itself
inline constexpr int kErrorModule = 5;  ///< a file is no module that can be loaded
inline constexpr int kErrorFile = 6;    ///< a file cannot be read or does not hold what it should
inline constexpr int kErrorCancel = 1000;  ///< "Progress window got cancel"

/// The text of a number; an empty one for a number without text. Valid for ever.
const char* ErrorText(int number);

/// Gives a text a number of its own; `kNoError` when all 16-bit numbers are taken or memory is
/// exhausted.
int RegisterErrorText(const char* text);

}  // namespace tarn

#endif
