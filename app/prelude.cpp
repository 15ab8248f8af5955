#include "app/prelude.h"

#include <cctype>

#include "app/help_text.h"

namespace tarn {

extern const char* const kPreludeSource;  // prelude.lua, compiled in

namespace {

std::string WithoutLastNewline(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

/// Script text that defines the locals which the prelude reads.
std::string HelpTables() {
  std::string script = "local helpIndex = " + QuoteForScript(WithoutLastNewline(RenderIndex()));
  script += " local helpTexts = {";
  for (const HelpEntry& entry : HelpEntries()) {
    script += std::string(entry.Name()) + " = ";
    script += QuoteForScript(WithoutLastNewline(RenderEntry(entry))) + ", ";
  }
  return script + "} ";
}

}  // namespace

bool InstallPrelude(EmbeddedHost& host) {
  return host.Evaluate(HelpTables() + kPreludeSource, nullptr, "prelude");
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
