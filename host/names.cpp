#include "host/names.h"

#include <deque>
#include <mutex>
#include <unordered_map>

namespace tarn {
namespace {

/// Identifiers start above those of the classes that host and module know by number.
constexpr std::uint16_t kFirstNameId = 257;
constexpr std::size_t kMostNames = 65535 - kFirstNameId + 1;

struct NameTable {
  std::mutex lock;
  std::deque<std::string> names;  ///< by identifier; a deque, because the index points into it
  std::unordered_map<std::string_view, std::uint16_t> identifiers;
};

/// Never destroyed: values that are destroyed at exit may still ask for names.
NameTable& Names() {
  static auto& table = *new NameTable;
  return table;
}

std::uint16_t FindIn(const NameTable& table, std::string_view name) {
  const auto found = table.identifiers.find(name);
  return found == table.identifiers.end() ? kNoName : found->second;
}

/// The name, which never moves; null for an identifier that was never given out.
const std::string* FindName(std::uint16_t nameId) {
  NameTable& table = Names();
  const std::lock_guard<std::mutex> guard(table.lock);
  const std::size_t index = static_cast<std::size_t>(nameId) - kFirstNameId;
  return index < table.names.size() ? &table.names[index] : nullptr;
}

}  // namespace

std::uint16_t FindNameId(std::string_view name) {
  NameTable& table = Names();
  const std::lock_guard<std::mutex> guard(table.lock);
  return FindIn(table, name);
}

std::uint16_t MakeNameId(std::string_view name) try {
  NameTable& table = Names();
  const std::lock_guard<std::mutex> guard(table.lock);
  if (const std::uint16_t known = FindIn(table, name); known != kNoName) return known;
  if (table.names.size() >= kMostNames) return kNoName;
  const auto identifier = static_cast<std::uint16_t>(kFirstNameId + table.names.size());
  table.names.emplace_back(name);
  table.identifiers.emplace(table.names.back(), identifier);
  return identifier;
} catch (const std::bad_alloc&) {
  return kNoName;
}

std::string NameOf(std::uint16_t nameId) {
  const std::string* name = FindName(nameId);
  return name == nullptr ? std::string() : *name;
}

const char* NameText(std::uint16_t nameId) {
  const std::string* name = FindName(nameId);
  return name == nullptr ? nullptr : name->c_str();
}

}  // namespace tarn

std::uint16_t Token::GetNameID(const char* name) {
  return name == nullptr ? tarn::kNoName : tarn::MakeNameId(name);
}
