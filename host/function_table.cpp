#include "host/function_table.h"

#include <utility>

namespace tarn {

const RegisteredFunction& FunctionTable::Add(Signature signature, ScriptHandler handler) {
  auto function = std::make_unique<RegisteredFunction>();
  function->signature = std::move(signature);
  function->handler = handler;
  const RegisteredFunction& added = *everAdded_.emplace_back(std::move(function));
  const auto [place, isNew] = places_.emplace(added.signature.name, order_.size());
  if (isNew) {
    order_.push_back(&added);
  } else {
    order_[place->second] = &added;
  }
  return added;
}

const RegisteredFunction* FunctionTable::Find(std::string_view name) const {
  const auto found = places_.find(name);
  return found == places_.end() ? nullptr : order_[found->second];
}

}  // namespace tarn
