#ifndef TARN_APP_TERMINAL_H
#define TARN_APP_TERMINAL_H

#include <cstddef>

namespace tarn {

/// Width in characters of the terminal behind a file descriptor; 80 where it does not tell.
std::size_t TerminalWidth(int descriptor);

/// Whether a file descriptor is a terminal in which lines can be written over.
bool CanRedrawLines(int descriptor);

}  // namespace tarn

#endif
