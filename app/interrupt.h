#ifndef TARN_APP_INTERRUPT_H
#define TARN_APP_INTERRUPT_H

/// @file
/// Ctrl-C: cancels what the running script does, which the script may catch; a second one ends the
/// script. At the prompt it drops what is being typed, but never ends the prompt.

#include <string>

#include "host/embedded_host.h"

namespace tarn {

/// What interrupt signals do beyond ending the running script.
enum class InterruptMode {
  kScript,  ///< a third one kills the program, for a script that does not end
  kPrompt   ///< any number may come
};

/// While one of these exists, interrupt signals act on the running script instead of the program.
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

/// Whether the host's pending error is the one that an interrupt signal brought about.
bool IsEndedByInterrupt(const EmbeddedHost& host);
/// The text of the host's pending error, which is cleared. An error that an interrupt signal
/// brought about reads "interrupted".
std::string TakeErrorText(EmbeddedHost& host);

/// Ends the program the way an interrupt signal does, so that the shell sees why.
[[noreturn]] void DieOfInterrupt();

}  // namespace tarn

#endif
