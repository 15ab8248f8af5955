#include "host/host_state.h"

#include <atomic>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <utility>

namespace tarn {
namespace {

HostState* currentHost = nullptr;
std::uint64_t hostsMade = 0;

/// The flag is part of the host interface and so a plain integer.
std::atomic_ref<std::int32_t> StopFlag(const HostProcessor& processor) {
  return std::atomic_ref<std::int32_t>(const_cast<std::int32_t&>(processor.stopRequested));
}

}  // namespace

HostState::HostState() : processor(*this), serial(++hostsMade) {
  if (currentHost != nullptr) throw std::runtime_error("another embedded host exists");
  currentHost = this;
}

HostState::~HostState() { currentHost = nullptr; }

void HostState::Write(std::string_view text) {
  if (output) {
    output(text);
  } else {
    std::fwrite(text.data(), 1, text.size(), stdout);
  }
}

double HostState::DrawUniform() {
  ++draws;
  return uniformSource ? uniformSource() : builtinSource.Next();
}

void HostState::NoteForgotten(int registryKey) try {
  forgottenKeys.push_back(registryKey);
} catch (const std::bad_alloc&) {
  // The function then stays in the registry until the interpreter ends.
}

bool HostState::StopRequested() const { return StopFlag(processor).load() != 0; }

void HostState::SetStopRequested(bool requested) { StopFlag(processor).store(requested ? 1 : 0); }

HostState* CurrentHost() { return currentHost; }

void HostProcessor::PrintText(const char* text) {
  if (text != nullptr) host_.Write(text);
}

}  // namespace tarn

Processor* GetOwner() {
  tarn::HostState* host = tarn::CurrentHost();
  return host == nullptr || host->ownerHidden ? nullptr : &host->processor;
}
