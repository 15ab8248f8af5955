/// @file
/// The command `tarn`.

#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>

#include "app/command_line.h"
#include "app/session.h"

int main(int argc, char** argv) {
  // A reader that goes away ends the program quietly, also where the parent ignores the signal.
  std::signal(SIGPIPE, SIG_DFL);
  // The encoding of what is typed; numbers keep their decimal point.
  std::setlocale(LC_CTYPE, "");
  try {
    tarn::CommandLine commandLine;
    if (const auto status = tarn::ParseCommandLine(argc, argv, commandLine)) return *status;
    return tarn::RunSession(commandLine);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "tarn: %s\n", failure.what());
    return tarn::kExitScriptError;
  }
}
