#ifndef TARN_APP_PROGRESS_BAR_H
#define TARN_APP_PROGRESS_BAR_H

/// @file
/// What progress windows show, in the last line of a terminal.

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

#include "host/embedded_host.h"

namespace tarn {

/// The line for a progress in percent and a caption, at most `width` characters wide:
/// " 42% [##########              ] Residue = 0.001". White space around the caption is dropped,
/// control characters in it are blanks.
std::string ProgressLine(std::int32_t progress, std::string_view caption, std::size_t width);

/// A line that is drawn over itself, ten times a second at most, and taken away again.
class ProgressBar {
 public:
  /// Where the bar is drawn, and the time in seconds.
  struct Surroundings {
    std::function<void(std::string_view)> write;
    std::function<std::size_t()> width;
    std::function<double()> now;
  };

  explicit ProgressBar(Surroundings surroundings) : around_(std::move(surroundings)) {}

  /// Draws the bar unless it was drawn just before. A progress of 100 ends the computation and
  /// takes the bar away.
  void Show(std::int32_t progress, std::string_view caption);
  /// Takes the bar away, so that something else can be written.
  void Erase();

 private:
  Surroundings around_;
  double lastDrawn_ = -std::numeric_limits<double>::infinity();
  bool isVisible_ = false;
};

/// While one of these exists, progress windows of the host show a bar on standard error, if that is
/// a terminal; text output takes the bar away.
class ProgressDisplay {
 public:
  explicit ProgressDisplay(EmbeddedHost& host);
  ~ProgressDisplay();
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;

 private:
  EmbeddedHost& host_;
  ProgressBar bar_;
};

}  // namespace tarn

#endif
