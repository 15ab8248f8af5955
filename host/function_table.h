#ifndef TARN_HOST_FUNCTION_TABLE_H
#define TARN_HOST_FUNCTION_TABLE_H

/// @file
/// The registered script functions of a host.

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/module_entry.h"
#include "host/signature.h"

namespace tarn {

struct RegisteredFunction {
  Signature signature;
  ScriptHandler handler;
};

class FunctionTable {
 public:
  /// Registers a function. One with the same name is replaced in its place; calls of the old one
  /// that are under way are not disturbed.
  const RegisteredFunction& Add(Signature signature, ScriptHandler handler);
  /// The function of that name; null when there is none.
  const RegisteredFunction* Find(std::string_view name) const;
  /// All functions in order of registration.
  std::span<const RegisteredFunction* const> All() const { return order_; }

 private:
  std::vector<std::unique_ptr<RegisteredFunction>> everAdded_;
  std::vector<const RegisteredFunction*> order_;
  std::map<std::string, std::size_t, std::less<>> places_;  ///< in `order_`
};

}  // namespace tarn

#endif
