#ifndef TARN_APP_HISTORY_PATH_H
#define TARN_APP_HISTORY_PATH_H

#include <string>

namespace tarn {

/// Where the history is kept: tarn/history in $XDG_STATE_HOME, or in $HOME/.local/state where that
/// is not set. The folder is made. Empty where it cannot be, or where there is no home.
std::string HistoryPath();

}  // namespace tarn

#endif
