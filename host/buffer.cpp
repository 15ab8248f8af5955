/// @file
/// The growing text buffer, and the base class of script-visible native objects.

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "frame/host.h"

namespace {

/// Room for `needed` characters and a terminator, at least doubled; null when the heap refuses.
char* Grow(char* text, std::int64_t& capacity, std::int64_t needed) {
  const std::int64_t wanted = std::max(needed + 1, 2 * capacity);
  auto* grown = static_cast<char*>(HREALLOC(text, static_cast<std::size_t>(wanted)));
  if (grown != nullptr) capacity = wanted;
  return grown;
}

}  // namespace

Buffer::Buffer(std::int64_t initialSize) : text_(nullptr), length_(0), capacity_(0) {
  text_ = Grow(nullptr, capacity_, std::clamp<std::int64_t>(initialSize, 0, 1 << 30));
  if (text_ != nullptr) text_[0] = '\0';
}

Buffer::~Buffer() { HFREE(text_); }

int Buffer::Printf(int /*flags*/, const char* format, ...) {
  if (format == nullptr) return -1;
  std::va_list arguments;
  va_start(arguments, format);
  const int count = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  if (count < 0) return count;
  if (length_ + count + 1 > capacity_ || text_ == nullptr) {
    char* grown = Grow(text_, capacity_, length_ + count);
    if (grown == nullptr) return -1;
    text_ = grown;
  }
  va_start(arguments, format);
  std::vsnprintf(text_ + length_, static_cast<std::size_t>(count) + 1, format, arguments);
  va_end(arguments);
  length_ += count;
  return count;
}

const char* Buffer::GetText() const { return text_ == nullptr ? "" : text_; }

void TarnAss::PlaceHolder() {}

TarnAss::TarnAss() = default;

TarnAss::TarnAss(const TarnAss& /*other*/) {}

TarnAss& TarnAss::operator=(const TarnAss& /*other*/) { return *this; }

TarnAss::~TarnAss() = default;
