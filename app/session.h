#ifndef TARN_APP_SESSION_H
#define TARN_APP_SESSION_H

#include "app/command_line.h"

namespace tarn {

/// Does what the command line asks for: loads the module, runs scripts, opens the prompt. Errors go
/// to standard error. Returns the exit status.
int RunSession(const CommandLine& commandLine);

}  // namespace tarn

#endif
