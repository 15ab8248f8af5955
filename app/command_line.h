#ifndef TARN_APP_COMMAND_LINE_H
#define TARN_APP_COMMAND_LINE_H

/// @file
/// What the user asked for on the command line.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarn {

// Exit statuses of the command.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitScriptError = 1;  ///< a script failed
inline constexpr int kExitUsage = 2;  ///< wrong command line, or a file that it names is unusable

struct CommandLine {
  std::vector<std::string> texts;          ///< script texts of -e, in order
  std::optional<std::string> file;         ///< script file; "-" is standard input
  std::vector<std::string> arguments;      ///< arguments of the script
  std::optional<std::string> modulePath;   ///< the module instead of the one beside the program
  std::optional<std::string> toolkitPath;  ///< the same for the companion module
  bool noToolkit = false;                  ///< do not load the companion module
  std::optional<std::uint64_t> seed;       ///< where the uniform source starts
  bool list = false;                       ///< print the signatures
  bool version = false;                    ///< print what the module says about itself
  bool interactive = false;                ///< open the prompt after the scripts
};

/// Parses the command line. Returns the exit status where there is nothing more to do: help was
/// printed, or the command line is wrong and standard error says why.
std::optional<int> ParseCommandLine(int argc, const char* const* argv, CommandLine& commandLine);

}  // namespace tarn

#endif
