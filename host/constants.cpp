#include "host/constants.h"

#include <map>
#include <new>

#include "frame/error_numbers.h"
#include "host/host_state.h"
#include "host/names.h"

namespace tarn {
namespace {

class ConstantNode : public Tree {
 public:
  explicit ConstantNode(std::int32_t value) : Tree(value) {}
};

using ConstantTable = std::map<std::uint16_t, ConstantNode>;

/// Never destroyed: modules may ask until the process ends.
ConstantTable& Constants() {
  static auto& table = *new ConstantTable;
  return table;
}

}  // namespace

const Tree* FindConstant(std::uint16_t nameId) {
  const auto found = Constants().find(nameId);
  return found == Constants().end() ? nullptr : &found->second;
}

bool DefineConstant(std::uint16_t nameId, std::int32_t value) try {
  Constants().insert_or_assign(nameId, ConstantNode(value));
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

void RemoveConstant(std::uint16_t nameId) { Constants().erase(nameId); }

void ForEachConstant(const std::function<void(std::uint16_t, std::int32_t)>& visit) {
  for (const auto& [nameId, node] : Constants()) visit(nameId, node.GetInt32());
}

}  // namespace tarn

void Token::SetConstant(std::uint16_t nameId, const Variable& value) {
  tarn::HostState* host = tarn::CurrentHost();
  if (host != nullptr && host->refuseConstants) return;
  if (nameId == tarn::kNoName) return;
  if (!tarn::DefineConstant(nameId, value.GetInt32Numb())) {
    TarnError(tarn::kErrorMemory);
    return;
  }
  if (host != nullptr) host->PublishConstant(nameId);
}

const Tree* Processor::GetConstant(const char* name) {
  return name == nullptr ? nullptr : tarn::FindConstant(tarn::FindNameId(name));
}
