/// @file
/// tarn-reference: writes docs/script-reference.md to standard output.

#include <cstdio>

#include "app/help_text.h"

int main() {
  std::fputs(tarn::RenderReference().c_str(), stdout);
  return std::fclose(stdout) == 0 ? 0 : 1;
}
