#include "app/session.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>

#include "app/interrupt.h"
#include "app/module_path.h"
#include "app/prelude.h"
#include "app/progress_bar.h"
#include "app/prompt.h"
#include "host/embedded_host.h"

namespace tarn {
namespace {

constexpr char kStandardInput[] = "-";

/// Prints what went wrong, behind all output so far.
void Complain(const std::string& problem) {
  std::fflush(stdout);
  std::fprintf(stderr, "tarn: %s\n", problem.c_str());
}

bool Load(EmbeddedHost& host, const std::string& path) {
  if (host.Load(path)) return true;
  Complain(TakeErrorText(host));
  return false;
}

bool LoadModule(EmbeddedHost& host, const std::optional<std::string>& chosen) {
  const std::string path = FindModule(chosen);
  if (!path.empty()) return Load(host, path);
  Complain("the module is not beside the program; name it with --module or TARN_MODULE");
  return false;
}

/// The companion module, which need not be there unless it is named.
bool LoadToolkit(EmbeddedHost& host, const CommandLine& commandLine) {
  if (commandLine.noToolkit) return true;
  const std::string path = FindToolkit(commandLine.toolkitPath);
  return path.empty() || Load(host, path);
}

/// Script text from standard input; a first line that begins with `#` is for the shell.
std::string ReadStandardInput() {
  const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
  return std::string(text.starts_with('#') ? "--" : "").append(text);
}

/// Makes the arguments known to a script that does not come from a file.
bool SetArguments(EmbeddedHost& host, const CommandLine& commandLine) {
  std::string script = "arg = {[0] = " + QuoteForScript(commandLine.file.value_or(kStandardInput));
  for (const std::string& argument : commandLine.arguments) {
    script += ", " + QuoteForScript(argument);
  }
  return host.Evaluate(script + "}", nullptr, "arguments");
}

bool RunFileOrInput(EmbeddedHost& host, const CommandLine& commandLine) {
  if (*commandLine.file != kStandardInput) {
    return host.RunFile(*commandLine.file, commandLine.arguments);
  }
  const std::string text = ReadStandardInput();
  return SetArguments(host, commandLine) && host.Evaluate(text, nullptr, "stdin");
}

/// Runs the texts, then the file. False with a pending error when one of them fails.
bool RunScripts(EmbeddedHost& host, const CommandLine& commandLine) {
  for (const std::string& text : commandLine.texts) {
    if (!host.Evaluate(text, nullptr, "-e")) return false;
  }
  return !commandLine.file || RunFileOrInput(host, commandLine);
}

/// Runs all scripts and reports the error that ended them.
int RunScriptsToEnd(EmbeddedHost& host, const CommandLine& commandLine) {
  const InterruptScope interrupts(InterruptMode::kScript);
  bool succeeded = false;
  {
    const RunningScript running(host);
    const ProgressDisplay progress(host);
    succeeded = RunScripts(host, commandLine);
  }
  if (succeeded) return kExitSuccess;
  const bool byInterrupt = IsEndedByInterrupt(host);
  Complain(TakeErrorText(host));
  if (byInterrupt) DieOfInterrupt();
  return kExitScriptError;
}

bool CanOpen(const std::string& path) {
  if (path == kStandardInput || std::ifstream(path)) return true;
  Complain("cannot open " + path + ": " + std::strerror(errno));
  return false;
}

void PrintLines(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::printf("%s\n", line.c_str());
}

int RunWithHost(EmbeddedHost& host, CommandLine commandLine) {
  if (!LoadModule(host, commandLine.modulePath) || !LoadToolkit(host, commandLine)) {
    return kExitUsage;
  }
  if (commandLine.version) PrintLines(host.ModuleDescriptions());
  if (commandLine.list) PrintLines(host.Signatures());
  if (commandLine.version || commandLine.list) return kExitSuccess;

  if (!InstallPrelude(host)) {
    Complain(TakeErrorText(host));
    return kExitScriptError;
  }
  if (commandLine.seed) host.Seed(*commandLine.seed);
  const bool nothingToRun = commandLine.texts.empty() && !commandLine.file;
  if (nothingToRun && isatty(STDIN_FILENO) == 0) commandLine.file.emplace(kStandardInput);
  const int status = RunScriptsToEnd(host, commandLine);
  if (commandLine.interactive || (nothingToRun && !commandLine.file)) RunPrompt(host);
  return status;
}

/// Whether all output arrived.
bool FinishOutput() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
  std::fprintf(stderr, "tarn: cannot write the output: %s\n", std::strerror(errno));
  return false;
}

}  // namespace

int RunSession(const CommandLine& commandLine) {
  if (commandLine.file && !CanOpen(*commandLine.file)) return kExitUsage;
  int status = kExitSuccess;
  {
    EmbeddedHost host;
    status = RunWithHost(host, commandLine);
  }
  if (!FinishOutput() && status == kExitSuccess) status = kExitScriptError;
  return status;
}

}  // namespace tarn
