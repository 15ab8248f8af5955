#ifndef TARN_TESTS_APP_RUN_COMMAND_H
#define TARN_TESTS_APP_RUN_COMMAND_H

// Runs the command as a shell would, and says what became of it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

struct CommandResult {
  int status = -1;  // exit status; -1 where a signal ended the command
  int signal = 0;
  std::string out;
  std::string err;
};

struct CommandSetup {
  std::string program = TARN_COMMAND;
  std::string input;                               // what standard input holds
  std::map<std::string, std::string> environment;  // variables changed; empty values are removed
  std::string folder;                              // working folder; empty: that of the test
  std::string outputPath;                          // standard output goes there instead
  bool errorsToOutput = false;                     // as 2>&1
  bool closedOutput = false;                       // standard output is a pipe without a reader
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A folder of the test's own, removed at its end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarn-test-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(*this / name, std::ios::binary) << text;
    return *this / name;
  }

 private:
  std::filesystem::path path_;
};

namespace run_command_detail {

inline std::string Contents(std::FILE* file) {
  std::rewind(file);
  std::string text;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
  std::fclose(file);
  return text;
}

inline void SetEnvironment(const std::map<std::string, std::string>& variables) {
  for (const auto& [name, value] : variables) {
    if (value.empty()) {
      unsetenv(name.c_str());
    } else {
      setenv(name.c_str(), value.c_str(), 1);
    }
  }
}

inline int OpenOutput(const CommandSetup& setup, std::FILE* out) {
  if (setup.closedOutput) {
    int ends[2];
    if (pipe(ends) != 0) _exit(99);
    close(ends[0]);
    return ends[1];
  }
  return setup.outputPath.empty() ? fileno(out) : open(setup.outputPath.c_str(), O_WRONLY);
}

[[noreturn]] inline void Become(const CommandSetup& setup, std::vector<std::string> words,
                                std::FILE* in, std::FILE* out, std::FILE* err) {
  dup2(fileno(in), STDIN_FILENO);
  dup2(OpenOutput(setup, out), STDOUT_FILENO);
  dup2(setup.errorsToOutput ? STDOUT_FILENO : fileno(err), STDERR_FILENO);
  SetEnvironment(setup.environment);
  if (!setup.folder.empty() && chdir(setup.folder.c_str()) != 0) _exit(99);
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  execv(setup.program.c_str(), argv.data());
  _exit(99);
}

}  // namespace run_command_detail

inline CommandResult RunTarn(const std::vector<std::string>& arguments,
                             const CommandSetup& setup = {}) {
  std::FILE* in = std::tmpfile();
  std::FILE* out = std::tmpfile();
  std::FILE* err = std::tmpfile();
  std::fwrite(setup.input.data(), 1, setup.input.size(), in);
  std::fflush(in);
  std::rewind(in);
  std::vector<std::string> words = {setup.program};
  words.insert(words.end(), arguments.begin(), arguments.end());

  const pid_t child = fork();
  if (child == 0) run_command_detail::Become(setup, words, in, out, err);
  int status = 0;
  waitpid(child, &status, 0);
  std::fclose(in);
  CommandResult result;
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  result.out = run_command_detail::Contents(out);
  result.err = run_command_detail::Contents(err);
  return result;
}

#endif
