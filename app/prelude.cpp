#include "app/prelude.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <vector>

#include "app/help_text.h"
#include "app/help_toolkit.h"

namespace tarn {

extern const char* const kPreludeSource;  // prelude.lua, compiled in

namespace {

std::string WithoutLastNewline(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

/// The entries of the functions that the host's modules have.
std::vector<HelpEntry> EntriesOf(const EmbeddedHost& host) {
  std::vector<HelpEntry> entries;
  for (const std::span<const HelpEntry> all : {HelpEntries(), ToolkitHelpEntries()}) {
    std::ranges::copy_if(all, std::back_inserter(entries), [&host](const HelpEntry& entry) {
      return host.FindHandler(std::string(entry.Name())) != nullptr;
    });
  }
  return entries;
}

/// Script text that defines the locals which the prelude reads.
std::string HelpTables(std::span<const HelpEntry> entries) {
  std::string script =
      "local helpIndex = " + QuoteForScript(WithoutLastNewline(RenderIndex(entries)));
  script += " local helpTexts = {";
  for (const HelpEntry& entry : entries) {
    script.append("[").append(QuoteForScript(entry.Name())).append("] = ");
    script += QuoteForScript(WithoutLastNewline(RenderEntry(entry))) + ", ";
  }
  return script + "} ";
}

}  // namespace

bool InstallPrelude(EmbeddedHost& host) {
  return host.Evaluate(HelpTables(EntriesOf(host)) + kPreludeSource, nullptr, "prelude");
}

std::string QuoteForScript(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isprint(byte) != 0 && c != '"' && c != '\\') {
      quoted += c;
    } else {
      // Always three digits, so that digits which follow do not belong to the escape.
      const std::string code = std::to_string(byte);
      quoted += '\\' + std::string(3 - code.size(), '0') + code;
    }
  }
  return quoted + '"';
}

}  // namespace tarn
