#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

namespace tarn {
namespace {

constexpr char kUsage[] = "tarn [OPTIONS] [FILE [ARGS...]]";
constexpr char kDescription[] =
    "Runs scripts with the functions of the module Tarn_base_math and of its companion\n"
    "Tarn_toolkit.\n"
    "\n"
    "FILE is a script; - stands for standard input. Everything after FILE belongs to the\n"
    "script, which finds it in the table arg. Without FILE and -e, a terminal gets a prompt,\n"
    "and a pipe is read as a script.\n";
constexpr char kFooter[] =
    "At the prompt and in scripts, help() lists the functions and help(\"Beta_I\") tells about "
    "one.\n"
    "\n"
    "Environment:\n"
    "  TARN_MODULE       the module to load; --module comes first\n"
    "  TARN_TOOLKIT      the companion module to load; --toolkit comes first\n"
    "  XDG_STATE_HOME    the history of the prompt is tarn/history there, or in ~/.local/state\n"
    "\n"
    "Exit status: 0 success, 1 a script failed, 2 the command line is wrong or names a file that\n"
    "cannot be used.";

/// The library's help with a usage line that shows FILE and ARGS, which the parser does not know.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App*, std::string) const override {
    return std::string("Usage: ") + kUsage + '\n';
  }
};

void DefineOptions(CLI::App& parser, CommandLine& commandLine) {
  const auto formatter = std::make_shared<HelpFormatter>();
  formatter->column_width(26);
  parser.formatter(formatter);
  parser.footer(kFooter);
  parser.set_help_flag("-h,--help", "print this help");
  parser.add_option("-e,--execute", commandLine.texts, "run TEXT; repeatable, FILE comes after")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  parser.add_flag("-i,--interactive", commandLine.interactive, "open the prompt after the scripts")
      ->disable_flag_override();
  parser.add_flag("--list", commandLine.list, "print the signatures of all functions")
      ->disable_flag_override();
  parser
      .add_option("--seed", commandLine.seed,
                  "start the random numbers from N (0 to 2^64 - 1);\nwithout it they are the same "
                  "in every run")
      ->type_name("N")
      ->check(CLI::NonNegativeNumber);
  parser.add_option("--module", commandLine.modulePath, "load the module from PATH")
      ->type_name("PATH");
  auto* toolkit = parser.add_option("--toolkit", commandLine.toolkitPath,
                                    "load the companion module from PATH; without it the one\n"
                                    "beside the module, if there is one");
  toolkit->type_name("PATH");
  parser
      .add_flag("--no-toolkit", commandLine.noToolkit, "load the module alone, without companion")
      ->disable_flag_override()
      ->excludes(toolkit);
  parser.add_flag("--version", commandLine.version, "print what the modules say about themselves")
      ->disable_flag_override();
  // The first word that is no option is FILE, and what follows is the script's.
  parser.prefix_command();
}

int ReportUsage(const std::string& problem) {
  std::cerr << "tarn: " << problem << "\nUsage: " << kUsage << "\nTry: tarn --help\n";
  return kExitUsage;
}

}  // namespace

std::optional<int> ParseCommandLine(int argc, const char* const* argv, CommandLine& commandLine) {
  CLI::App parser(kDescription);
  DefineOptions(parser, commandLine);
  try {
    parser.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << parser.help() << std::flush;
    return kExitSuccess;
  } catch (const CLI::ParseError& error) {
    return ReportUsage(error.what());
  }
  std::vector<std::string> words = parser.remaining();
  if (!words.empty() && words.front() == "--") {
    words.erase(words.begin());
  } else if (!words.empty() && words.front().size() > 1 && words.front().front() == '-') {
    return ReportUsage("there is no option " + words.front());
  }
  if (words.empty()) return std::nullopt;
  commandLine.file = words.front();
  commandLine.arguments.assign(words.begin() + 1, words.end());
  return std::nullopt;
}

}  // namespace tarn
