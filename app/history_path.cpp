#include "app/history_path.h"

#include <cstdlib>
#include <filesystem>

namespace tarn {

std::string HistoryPath() {
  namespace fs = std::filesystem;
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  fs::path folder;
  // As with all XDG base directories, a relative path counts as not set.
  if (state != nullptr && fs::path(state).is_absolute()) {
    folder = fs::path(state) / "tarn";
  } else if (home != nullptr && *home != '\0') {
    folder = fs::path(home) / ".local" / "state" / "tarn";
  } else {
    return "";
  }
  std::error_code failure;
  fs::create_directories(folder, failure);
  return failure ? "" : (folder / "history").string();
}

}  // namespace tarn
