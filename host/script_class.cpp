#include "host/script_class.h"

#include <map>
#include <memory>
#include <new>

#include "frame/error_numbers.h"
#include "host/names.h"

int VarClass::IsInheritFrom(std::uint16_t classId) const {
  for (const VarClass* ancestor = this; ancestor != nullptr; ancestor = ancestor->base_) {
    if (ancestor->id_ == classId) return 1;
  }
  return 0;
}

namespace tarn {
namespace {

using ClassesByName = std::map<std::string, std::unique_ptr<const ScriptClass>, std::less<>>;

/// Classes that modules brought along. Never destroyed: objects of these classes may live until the
/// process ends.
ClassesByName& ModuleClasses() {
  static auto& classes = *new ClassesByName;
  return classes;
}

}  // namespace

ScriptClass::ScriptClass(const char* name, const VarClass* base, Constructor constructor,
                         std::span<const ScriptMethod> methods)
    : VarClass(MakeNameId(name), base), name_(name), constructor_(constructor), methods_(methods) {}

const ScriptMethod* ScriptClass::FindMethod(std::string_view name) const {
  for (const ScriptMethod& method : methods_) {
    if (name == method.name) return &method;
  }
  return nullptr;
}

bool ScriptClass::Construct(Variable& value, VarRegister* arguments, int count) const {
  Variable made;
  if (!MakeObject(made, *this)) {
    TarnError(kErrorMemory);
    return false;
  }
  if (!constructor_(*made.GetObject(), arguments, count)) return false;
  VariableAccess::Move(value, made);
  return true;
}

const ScriptClass* FindScriptClass(std::string_view name) {
  for (const ScriptClass* scriptClass : ScriptClasses()) {
    if (name == scriptClass->Name()) return scriptClass;
  }
  const auto found = ModuleClasses().find(name);
  return found == ModuleClasses().end() ? nullptr : found->second.get();
}

const ScriptClass* FindOrMakeScriptClass(const std::string& name) try {
  if (const ScriptClass* known = FindScriptClass(name)) return known;
  if (MakeNameId(name) == kNoName) return nullptr;
  const auto place = ModuleClasses().emplace(name, nullptr).first;
  place->second = std::make_unique<const ScriptClass>(
      place->first.c_str(), nullptr, ConstructWithoutMembers, std::span<const ScriptMethod>());
  return place->second.get();
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace tarn
