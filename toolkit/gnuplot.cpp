#include "gnuplot.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

#include "fault.h"

namespace tarn::toolkit {
namespace {

namespace fs = std::filesystem;

constexpr int kCommandNotFound = 127;

/// A folder for the files of one run, removed with them.
class WorkFolder {
 public:
  WorkFolder() {
    std::error_code failure;
    std::string name = (fs::temp_directory_path(failure) / "tarn-plot-XXXXXX").string();
    if (failure || mkdtemp(name.data()) == nullptr) {
      throw Fault(kErrorFile, "no folder for temporary files can be made");
    }
    path_ = name;
  }
  ~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  std::string File(const char* name) const { return (path_ / name).string(); }

 private:
  fs::path path_;
};

/// The lines without blanks at their ends and without empty ones before and after.
std::string Tidied(const std::string& text) {
  std::istringstream lines(text);
  std::string tidied;
  std::string emptyLines;
  for (std::string line; std::getline(lines, line);) {
    line.erase(line.find_last_not_of(" \f\r") + 1);
    if (line.empty()) {
      if (!tidied.empty()) emptyLines += '\n';
      continue;
    }
    tidied += emptyLines + line + '\n';
    emptyLines.clear();
  }
  return tidied;
}

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A text as one word of the shell.
std::string QuotedForShell(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + '\'';
}

/// What gnuplot did not like: its last line that is not empty, without the place in the script.
std::string Complaint(std::string text) {
  text.erase(text.find_last_not_of(" \n") + 1);
  text.erase(0, text.rfind('\n') + 1);
  constexpr std::string_view kEndOfPlace = ": ";
  const std::size_t place = text.find(kEndOfPlace, text.rfind("\" line "));
  return text[0] != '"' || place == std::string::npos ? text
                                                      : text.substr(place + kEndOfPlace.size());
}

/// Whether somebody pressed Ctrl-C, which ends the program and may leave the shell to tell of it.
bool WasInterrupted(int status) {
  constexpr int kShellTells = 128;
  return (WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) ||
         (WIFEXITED(status) && WEXITSTATUS(status) == kShellTells + SIGINT);
}

}  // namespace

std::string QuotedForGnuplot(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += '\'';
    quoted += c == '\n' || c == '\0' ? ' ' : c;
  }
  return quoted + '\'';
}

std::string RunGnuplot(const std::string& commands) {
  const WorkFolder folder;
  const std::string script = folder.File("plot.gp");
  const std::string output = folder.File("output");
  const std::string complaints = folder.File("complaints");
  if (!(std::ofstream(script) << commands).flush()) {
    throw Fault(kErrorFile, "the data of the plot cannot be written to " + script);
  }
  const std::string command = "gnuplot -d " + QuotedForShell(script) + " >" +
                              QuotedForShell(output) + " 2>" + QuotedForShell(complaints);
  // NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe): every word is quoted; hosts have one thread
  const int status = std::system(command.c_str());
  if (WIFEXITED(status) && WEXITSTATUS(status) == kCommandNotFound) {
    throw Fault(kErrorFile, "the program gnuplot is missing; Debian has it as gnuplot-nox");
  }
  if (WasInterrupted(status)) throw Fault(kErrorCancel, "Progress window got cancel");
  if (status != 0) throw Fault(kErrorFile, "gnuplot: " + Complaint(Contents(complaints)));
  return Tidied(Contents(output));
}

}  // namespace tarn::toolkit
