/// @file
/// The part of the embedded host that runs scripts.

#include "host/embedded_host_implementation.h"
#include "host/interpreter.h"

namespace {

bool Finish(tarn::HostState& host, std::optional<HostError> error) {
  if (!error) return true;
  host.MakePending(*std::move(error));
  return false;
}

}  // namespace

bool EmbeddedHost::Evaluate(std::string_view text, Variable* value, const std::string& chunkName) {
  return Finish(*implementation_, tarn::RunText(*implementation_, text, chunkName, value));
}

bool EmbeddedHost::RunFile(const std::string& path, std::span<const std::string> arguments) {
  return Finish(*implementation_, tarn::RunScriptFile(*implementation_, path, arguments));
}

bool EmbeddedHost::IsIncomplete(std::string_view text) {
  return tarn::IsIncompleteText(*implementation_, text);
}

std::vector<std::string> EmbeddedHost::Complete(const std::string& prefix) {
  return tarn::CompleteName(*implementation_, prefix);
}
