#include "app/module_path.h"

#include <cstdlib>
#include <filesystem>

namespace tarn {
namespace {

namespace fs = std::filesystem;

/// A module of the project: its library, and the environment variable that names another.
struct ModuleNames {
  const char* file;
  const char* variable;
};

#if defined(_WIN32)
constexpr ModuleNames kModule = {"Tarn_base_math.dll", "TARN_MODULE"};
constexpr ModuleNames kToolkit = {"Tarn_toolkit.dll", "TARN_TOOLKIT"};
#else
constexpr ModuleNames kModule = {"libTarn_base_math.so", "TARN_MODULE"};
constexpr ModuleNames kToolkit = {"libTarn_toolkit.so", "TARN_TOOLKIT"};
#endif

/// Folder of the running program; empty when the system does not tell.
fs::path ProgramFolder() {
  std::error_code failure;
  const fs::path program = fs::read_symlink("/proc/self/exe", failure);
  return failure ? fs::path() : program.parent_path();
}

std::string Find(const std::optional<std::string>& chosen, const ModuleNames& names) {
  if (chosen) return *chosen;
  if (const char* named = std::getenv(names.variable); named != nullptr && *named != '\0') {
    return named;
  }
  const fs::path folder = ProgramFolder();
  for (const fs::path& candidate : {folder / ".." / "lib" / names.file, folder / names.file}) {
    std::error_code failure;
    if (fs::exists(candidate, failure)) return candidate.lexically_normal().string();
  }
  return "";
}

}  // namespace

std::string FindModule(const std::optional<std::string>& chosen) { return Find(chosen, kModule); }

std::string FindToolkit(const std::optional<std::string>& chosen) { return Find(chosen, kToolkit); }

}  // namespace tarn
