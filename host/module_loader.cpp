#include "host/module_loader.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

namespace tarn {
namespace {

struct LibraryCloser {
  void operator()(void* library) const { dlclose(library); }
};
using Library = std::unique_ptr<void, LibraryCloser>;

Library OpenLibrary(const std::string& path) {
  Library library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!library) {
    const char* reason = dlerror();
    throw ModuleError(reason == nullptr ? path + ": cannot be opened" : reason);
  }
  return library;
}

/// Whether the symbol belongs to the library itself: the loader also looks into the libraries that
/// it depends on, which may be modules of their own.
bool IsOwnSymbol(void* library, const Dl_info& symbol) {
  link_map* map = nullptr;
  if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr) return false;
  return std::strcmp(map->l_name, symbol.dli_fname) == 0;
}

struct EntryTable {
  const TarnEntry* entries;
  void* baseAddress;
};

EntryTable FindEntries(void* library, const std::string& path) {
  void* symbol = dlsym(library, "tarn_ordinals");
  Dl_info place = {};
  if (symbol == nullptr || dladdr(symbol, &place) == 0 || !IsOwnSymbol(library, place)) {
    throw ModuleError(path + ": is no module, it has no entry table tarn_ordinals");
  }
  return {static_cast<const TarnEntry*>(symbol), place.dli_fbase};
}

template <class Entry>
Entry EntryAt(const EntryTable& table, TarnOrdinal ordinal, const std::string& path) {
  const TarnEntry entry = table.entries[ordinal];
  if (entry == nullptr) {
    throw ModuleError(path + ": entry number " + std::to_string(ordinal) + " is missing");
  }
  return reinterpret_cast<Entry>(entry);
}

/// Takes digits off the beginning of a text. False when there are fewer than `fewest`.
bool TakeDigits(std::string_view& text, std::size_t fewest) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count >= fewest;
}

bool TakePoint(std::string_view& text) {
  if (!text.starts_with('.')) return false;
  text.remove_prefix(1);
  return true;
}

/// Whether a text has the form "words |TARN version:5.09.02".
bool IsDescription(std::string_view text) {
  constexpr std::string_view kVersion = " |TARN version:";
  const std::size_t end = text.find(kVersion);
  if (end == std::string_view::npos) return false;
  const std::string_view words = text.substr(0, end);
  if (words.find_first_not_of(' ') == std::string_view::npos) return false;
  text.remove_prefix(end + kVersion.size());
  return TakeDigits(text, 1) && TakePoint(text) && TakeDigits(text, 2) && TakePoint(text) &&
         TakeDigits(text, 2) && text.empty();
}

std::string DescriptionOf(TarnDescribeModule describe, const std::string& path) {
  std::array<char, 256> text = {};
  describe(text.data(), static_cast<std::int32_t>(text.size() - 1));
  if (!IsDescription(text.data())) {
    throw ModuleError(path + ": does not describe itself as a module, but as \"" + text.data() +
                      "\"");
  }
  return text.data();
}

std::vector<std::pair<Signature, ScriptHandler>> FunctionsOf(TarnGetScriptFunctions get,
                                                             const std::string& path) {
  std::vector<std::pair<Signature, ScriptHandler>> functions;
  const ScriptFunction* row = get();
  if (row == nullptr) throw ModuleError(path + ": has no table of script functions");
  for (; row->handler != nullptr; ++row) {
    const char* text = row->signature == nullptr ? "" : row->signature;
    std::optional<Signature> signature = ParseSignature(text);
    if (!signature) {
      throw ModuleError(path + ": row " + std::to_string(functions.size() + 1) +
                        " of its function table has the signature \"" + text +
                        "\", which cannot be parsed");
    }
    functions.emplace_back(*std::move(signature), row->handler);
  }
  if (row->signature != nullptr && *row->signature != '\0') {
    throw ModuleError(path + ": row " + std::to_string(functions.size() + 1) +
                      " of its function table, \"" + row->signature + "\", has no handler");
  }
  return functions;
}

}  // namespace

OpenedModule OpenModule(const std::string& path) {
  Library library = OpenLibrary(path);
  const EntryTable table = FindEntries(library.get(), path);
  EntryAt<TarnGetAuxTable>(table, TARN_ORDINAL_GET_AUX_TABLE, path);
  OpenedModule opened;
  opened.initialise = EntryAt<TarnInitModule>(table, TARN_ORDINAL_INIT_MODULE, path);
  opened.module.description =
      DescriptionOf(EntryAt<TarnDescribeModule>(table, TARN_ORDINAL_DESCRIBE_MODULE, path), path);
  opened.functions = FunctionsOf(
      EntryAt<TarnGetScriptFunctions>(table, TARN_ORDINAL_GET_SCRIPT_FUNCTIONS, path), path);
  opened.module.baseAddress = table.baseAddress;
  opened.module.errorOffset = 65535;
  opened.module.library = library.release();
  return opened;
}

}  // namespace tarn
