#include "app/module_path.h"

#include <cstdlib>
#include <filesystem>

namespace tarn {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr char kModuleFile[] = "Tarn_base_math.dll";
#else
constexpr char kModuleFile[] = "libTarn_base_math.so";
#endif

/// Folder of the running program; empty when the system does not tell.
fs::path ProgramFolder() {
  std::error_code failure;
  const fs::path program = fs::read_symlink("/proc/self/exe", failure);
  return failure ? fs::path() : program.parent_path();
}

}  // namespace

std::string FindModule(const std::optional<std::string>& chosen) {
  if (chosen) return *chosen;
  if (const char* named = std::getenv("TARN_MODULE"); named != nullptr && *named != '\0') {
    return named;
  }
  const fs::path folder = ProgramFolder();
  for (const fs::path& candidate : {folder / ".." / "lib" / kModuleFile, folder / kModuleFile}) {
    std::error_code failure;
    if (fs::exists(candidate, failure)) return candidate.lexically_normal().string();
  }
  return "";
}

}  // namespace tarn
