#include "app/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "app/terminal.h"

namespace tarn {
namespace {

constexpr double kSecondsBetweenDrawings = 0.1;
constexpr std::size_t kBarWidth = 24;
constexpr char kEraseLine[] = "\r\033[K";

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < ' ' || byte == 0x7f;
}

/// Whether a byte of UTF-8 text goes on with the character before it.
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

/// The caption on one line, without white space at its ends.
std::string Trimmed(std::string_view caption) {
  std::string text(caption);
  std::ranges::replace_if(text, IsControl, ' ');
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

/// The first `width` characters of UTF-8 text.
std::string Shortened(std::string_view text, std::size_t width) {
  std::size_t characters = 0;
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    if (!IsContinuation(text[end]) && characters++ == width) break;
  }
  return std::string(text.substr(0, end));
}

double Now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(time).count();
}

ProgressBar::Surroundings TerminalOfErrors() {
  return {[](std::string_view text) {
            // What the script has written so far comes first.
            std::fflush(stdout);
            std::fwrite(text.data(), 1, text.size(), stderr);
          },
          [] { return TerminalWidth(STDERR_FILENO); }, Now};
}

}  // namespace

std::string ProgressLine(std::int32_t progress, std::string_view caption, std::size_t width) {
  const auto percent = static_cast<std::size_t>(std::clamp(progress, 0, 100));
  char number[8];
  std::snprintf(number, sizeof(number), "%3zu%%", percent);
  const std::size_t filled = percent * kBarWidth / 100;
  std::string line = number;
  line += " [" + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + ']';
  if (const std::string text = Trimmed(caption); !text.empty()) line += ' ' + text;
  return Shortened(line, width);
}

void ProgressBar::Show(std::int32_t progress, std::string_view caption) {
  if (progress >= 100) return Erase();
  const double now = around_.now();
  if (now - lastDrawn_ < kSecondsBetweenDrawings) return;
  lastDrawn_ = now;
  isVisible_ = true;
  // One column stays free: a full line would move the cursor to the next.
  const std::size_t width = std::max<std::size_t>(around_.width(), 1) - 1;
  around_.write(kEraseLine + ProgressLine(progress, caption, width));
}

void ProgressBar::Erase() {
  if (!isVisible_) return;
  isVisible_ = false;
  around_.write(kEraseLine);
}

ProgressDisplay::ProgressDisplay(EmbeddedHost& host) : host_(host), bar_(TerminalOfErrors()) {
  if (!CanRedrawLines(STDERR_FILENO)) return;
  host_.SetProgressWatcher(
      [this](std::int32_t progress, std::string_view caption) { bar_.Show(progress, caption); });
  host_.SetOutput([this](std::string_view text) {
    bar_.Erase();
    std::fwrite(text.data(), 1, text.size(), stdout);
  });
}

ProgressDisplay::~ProgressDisplay() {
  host_.SetProgressWatcher({});
  host_.SetOutput({});
  bar_.Erase();
}

}  // namespace tarn
