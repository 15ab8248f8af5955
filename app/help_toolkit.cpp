#include "app/help_toolkit.h"

#include <vector>

#include "app/help_toolkit_parts.h"

namespace tarn {
namespace {

std::vector<HelpEntry> JoinParts() {
  std::vector<HelpEntry> entries;
  for (const std::span<const HelpEntry> part :
       {LinearHelpEntries(), FunctionHelpEntries(), SampleHelpEntries(), SearchHelpEntries()}) {
    entries.insert(entries.end(), part.begin(), part.end());
  }
  return entries;
}

}  // namespace

std::span<const HelpEntry> ToolkitHelpEntries() {
  static const std::vector<HelpEntry> entries = JoinParts();
  return entries;
}

}  // namespace tarn
