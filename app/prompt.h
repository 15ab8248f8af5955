#ifndef TARN_APP_PROMPT_H
#define TARN_APP_PROMPT_H

/// @file
/// The prompt: reads statements and expressions, runs them, prints the values of expressions.

#include "host/embedded_host.h"

namespace tarn {

/// Runs the prompt until the end of input. An input goes on over further lines as long as lines can
/// complete it; an error ends the input, an interrupt the running script or what is being typed,
/// but neither of them the prompt. Values are printed by the script function `show`.
void RunPrompt(EmbeddedHost& host);

/// Whether the script function is compiled as an expression, or a list of them. An error that is
/// pending stays so.
bool IsExpression(EmbeddedHost& host, const std::string& text);

}  // namespace tarn

#endif
