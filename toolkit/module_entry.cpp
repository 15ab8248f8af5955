/// @file
/// The four entries of the module, and its function table joined from the rows of the families.

#include "frame/module_entry.h"

#include <cstring>
#include <vector>

#include "families.h"

namespace tarn::toolkit {
namespace {

constexpr char kDescription[] = "TARN Toolkit v5.0 |TARN version:5.09.02";
constexpr unsigned char kAuxTable[40] = {};

char* DescribeModule(char* destination, std::int32_t length) {
  if (length > 0) std::strncpy(destination, kDescription, static_cast<std::size_t>(length));
  return destination;
}

std::vector<ScriptFunction> JoinFamilies() {
  std::vector<ScriptFunction> rows;
  for (const auto& family :
       {VectorRows(), MatrixRows(), FunctionRows(), StatRows(), WeightedStatRows(), ColumnRows(),
        MinimiseRows(), SearchRows(), FitLineRows(), PlotRows()})
    rows.insert(rows.end(), family.begin(), family.end());
  rows.push_back({nullptr, ""});
  return rows;
}

/// The table; a table without rows where the memory for it is refused.
const ScriptFunction* GetScriptFunctions() try {
  // Never destroyed: the host calls its rows until the process ends.
  static const auto& rows = *new std::vector<ScriptFunction>(JoinFamilies());
  return rows.data();
} catch (...) {
  static const ScriptFunction kNone = {nullptr, ""};
  return &kNone;
}

const void* GetAuxTable() { return kAuxTable; }

/// Nothing to prepare: the base module registers what the classes need.
void InitModule(Processor* /*processor*/) {}

}  // namespace
}  // namespace tarn::toolkit

const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT] = {
    nullptr,
    nullptr,
    reinterpret_cast<TarnEntry>(&tarn::toolkit::DescribeModule),
    reinterpret_cast<TarnEntry>(&tarn::toolkit::GetScriptFunctions),
    reinterpret_cast<TarnEntry>(&tarn::toolkit::GetAuxTable),
    reinterpret_cast<TarnEntry>(&tarn::toolkit::InitModule),
};
