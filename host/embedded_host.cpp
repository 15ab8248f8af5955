/// @file
/// The embedded host as programs use it; the part that runs scripts is embedded_host_scripts.cpp.

#include <utility>

#include "host/constants.h"
#include "host/embedded_host_implementation.h"
#include "host/function_call.h"
#include "host/heap.h"
#include "host/interpreter.h"
#include "host/module_registry.h"
#include "host/names.h"
#include "host/variable_access.h"

EmbeddedHost::EmbeddedHost() : implementation_(std::make_unique<Implementation>()) {
  tarn::OpenInterpreter(*implementation_);
}

EmbeddedHost::~EmbeddedHost() {
  tarn::SetHeapRefusal({});
  tarn::CloseInterpreter(*implementation_);
}

Processor& EmbeddedHost::GetProcessor() { return implementation_->processor; }

// Modules -----------------------------------------------------------------------------------------

bool EmbeddedHost::Load(const std::string& path) {
  std::optional<HostError> error = tarn::LoadModule(*implementation_, path);
  if (!error) return true;
  implementation_->MakePending(*std::move(error));
  return false;
}

std::vector<std::string> EmbeddedHost::ModuleDescriptions() const {
  std::vector<std::string> descriptions;
  for (const tarn::LoadedModule& module : implementation_->modules) {
    descriptions.push_back(module.description);
  }
  return descriptions;
}

std::vector<std::string> EmbeddedHost::Signatures() const {
  std::vector<std::string> signatures;
  for (const tarn::RegisteredFunction* function : implementation_->functions.All()) {
    signatures.push_back(function->signature.text);
  }
  return signatures;
}

void EmbeddedHost::SetModuleErrorOffset(std::uint16_t offset) {
  implementation_->moduleErrorOffset = offset;
}

// Calls -------------------------------------------------------------------------------------------

bool EmbeddedHost::Call(const std::string& function, std::span<Variable> arguments,
                        Variable* result) {
  tarn::HostState& host = *implementation_;
  const tarn::ProgramCall call(host);
  Variable value;
  std::optional<HostError> error = tarn::CallFunction(host, function, arguments, value);
  if (result != nullptr) VariableAccess::Move(VariableAccess::Resolve(*result), value);
  if (!error) return true;
  host.MakePending(*std::move(error));
  return false;
}

EmbeddedHost::Handler EmbeddedHost::FindHandler(const std::string& function) const {
  const tarn::RegisteredFunction* registered = implementation_->functions.Find(function);
  return registered == nullptr ? nullptr : registered->handler;
}

// Errors ------------------------------------------------------------------------------------------

bool EmbeddedHost::HasError() const { return implementation_->processor.pendingError != 0; }

HostError EmbeddedHost::LastError() const { return implementation_->lastError; }

HostError EmbeddedHost::TakeError() {
  const bool pending = std::exchange(implementation_->processor.pendingError, 0) != 0;
  return pending ? implementation_->lastError : HostError{};
}

std::int64_t EmbeddedHost::RaisedErrorCount() const { return implementation_->raisedErrors; }

void EmbeddedHost::ForgetConstant(const std::string& name) {
  const std::uint16_t nameId = tarn::FindNameId(name);
  tarn::RemoveConstant(nameId);
  implementation_->PublishConstant(nameId);
}

void EmbeddedHost::RefuseConstants(bool refuse) { implementation_->refuseConstants = refuse; }

// Uniform source ----------------------------------------------------------------------------------

void EmbeddedHost::Seed(std::uint64_t seed) { implementation_->builtinSource.Seed(seed); }

void EmbeddedHost::SetUniformSource(std::function<double()> source) {
  implementation_->uniformSource = std::move(source);
}

std::int64_t EmbeddedHost::DrawCount() const { return implementation_->draws; }

// Output, interpreter and heap --------------------------------------------------------------------

void EmbeddedHost::SetOutput(std::function<void(std::string_view)> sink) {
  implementation_->output = std::move(sink);
}

void EmbeddedHost::HideOwner(bool hide) { implementation_->ownerHidden = hide; }

void EmbeddedHost::SetProgressWatcher(
    std::function<void(std::int32_t progress, std::string_view caption)> watcher) {
  implementation_->progressWatcher = std::move(watcher);
}

void EmbeddedHost::SetIdleWork(std::function<void()> work) {
  implementation_->idleWork = std::move(work);
}

void EmbeddedHost::RequestStop() { implementation_->SetStopRequested(true); }

void EmbeddedHost::RequestCancel() { implementation_->SetCancelRequested(true); }

void EmbeddedHost::SetHeapFailure(std::function<bool(std::int64_t)> refuse) {
  tarn::SetHeapRefusal(std::move(refuse));
}

std::int64_t EmbeddedHost::HeapRequestCount() const { return tarn::HeapRequests(); }

std::int64_t EmbeddedHost::LiveBlockCount() {
  VariableAccess::ClearScratchElements();
  return tarn::HeapBlocks();
}
