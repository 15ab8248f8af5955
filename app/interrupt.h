#ifndef TARN_APP_INTERRUPT_H
#define TARN_APP_INTERRUPT_H

/// @file
/// Ctrl-C: ends the running script, or what is being typed, but not the prompt.

#include <string>

#include "host/embedded_host.h"

namespace tarn {

/// What an interrupt signal does beyond ending the running script.
enum class InterruptMode {
  kScript,  ///< a second one kills the program, for a script that does not end
  kPrompt   ///< any number may come
};

/// While one of these exists, interrupt signals end the running script instead of the program.
class InterruptScope {
 public:
  explicit InterruptScope(InterruptMode mode);
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;
};

/// While one of these exists, a script of that host is running.
class RunningScript {
 public:
  explicit RunningScript(EmbeddedHost& host);
  ~RunningScript();
  RunningScript(const RunningScript&) = delete;
  RunningScript& operator=(const RunningScript&) = delete;
};

/// Whether an interrupt signal came since the last `TakeInterrupt`.
bool IsInterrupted();
/// The same, and forgets it.
bool TakeInterrupt();

/// The text of the host's pending error, which is cleared. An error that an interrupt signal
/// brought about reads "interrupted".
std::string TakeErrorText(EmbeddedHost& host);

/// Ends the program the way an interrupt signal does, so that the shell sees why.
[[noreturn]] void DieOfInterrupt();

}  // namespace tarn

#endif
