#include "host/embedded_host.h"

#include <utility>

#include "frame/error_numbers.h"
#include "host/constants.h"
#include "host/error_table.h"
#include "host/function_call.h"
#include "host/heap.h"
#include "host/host_state.h"
#include "host/names.h"
#include "host/variable_access.h"

struct EmbeddedHost::Implementation : tarn::HostState {};

EmbeddedHost::EmbeddedHost() : implementation_(std::make_unique<Implementation>()) {}

EmbeddedHost::~EmbeddedHost() = default;

Processor& EmbeddedHost::GetProcessor() { return implementation_->processor; }

// Modules -----------------------------------------------------------------------------------------

bool EmbeddedHost::Load(const std::string& path) try {
  tarn::HostState& host = *implementation_;
  tarn::OpenedModule opened = tarn::OpenModule(path);
  opened.module.errorOffset = host.moduleErrorOffset;
  for (tarn::LoadedModule& known : host.modules) {
    if (known.library != opened.module.library) continue;
    known.errorOffset = opened.module.errorOffset;
    return true;
  }
  host.modules.push_back(opened.module);
  opened.initialise(&host.processor);
  for (auto& [signature, handler] : opened.functions) {
    host.functions.Add(std::move(signature), handler);
  }
  return true;
} catch (const tarn::ModuleError& error) {
  implementation_->Raise(tarn::kErrorModule, error.what());
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
  const tarn::RegisteredFunction* registered = host.functions.Find(function);
  if (registered == nullptr) {
    host.Raise(tarn::kErrorArgument, ("there is no function " + function).c_str());
    return false;
  }
  const auto refuse = [&](const std::string& problem) {
    HostError error{tarn::kErrorArgument, tarn::ErrorText(tarn::kErrorArgument), problem, function,
                    ""};
    host.Raise(std::move(error));
    return false;
  };
  const std::vector<tarn::Parameter>& parameters = registered->signature.parameters;
  if (parameters.size() != arguments.size()) {
    return refuse(tarn::CountProblem(parameters.size(), arguments.size()));
  }
  tarn::ArgumentRegisters registers(arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string problem = tarn::SetArgument(registers[i], parameters[i], arguments[i], i + 1);
    if (!problem.empty()) return refuse(problem);
  }
  VarRegister resultRegister;
  const bool succeeded = RunHandler(host, *registered, resultRegister, registers.Get());
  if (result != nullptr) VariableAccess::Move(*result, resultRegister.GetVar());
  return succeeded;
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

void EmbeddedHost::RequestStop() { implementation_->SetStopRequested(true); }

void EmbeddedHost::SetHeapFailure(std::function<bool(std::int64_t)> refuse) {
  tarn::SetHeapRefusal(std::move(refuse));
}

std::int64_t EmbeddedHost::HeapRequestCount() const { return tarn::HeapRequests(); }

std::int64_t EmbeddedHost::LiveBlockCount() { return tarn::HeapBlocks(); }
