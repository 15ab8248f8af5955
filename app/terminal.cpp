#include "app/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace tarn {

std::size_t TerminalWidth(int descriptor) {
  constexpr std::size_t kDefaultWidth = 80;
  winsize size = {};
  const bool known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kDefaultWidth;
}

bool CanRedrawLines(int descriptor) {
  const char* terminal = std::getenv("TERM");
  return isatty(descriptor) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

}  // namespace tarn
