#ifndef TARN_TOOLKIT_FAMILIES_H
#define TARN_TOOLKIT_FAMILIES_H

/// @file
/// The rows that each family of functions brings to the function table, in a file of its own.

#include <span>

#include "frame/module_entry.h"

namespace tarn::toolkit {

std::span<const ScriptFunction> ColumnRows();        ///< columns.cpp
std::span<const ScriptFunction> FitLineRows();       ///< fit_line.cpp
std::span<const ScriptFunction> FunctionRows();      ///< tfunc.cpp
std::span<const ScriptFunction> MatrixRows();        ///< matrix.cpp
std::span<const ScriptFunction> MinimiseRows();      ///< minimise.cpp
std::span<const ScriptFunction> PlotRows();          ///< plot.cpp
std::span<const ScriptFunction> SearchRows();        ///< search.cpp
std::span<const ScriptFunction> StatRows();          ///< stat.cpp
std::span<const ScriptFunction> VectorRows();        ///< vector.cpp
std::span<const ScriptFunction> WeightedStatRows();  ///< weighted_stat.cpp

}  // namespace tarn::toolkit

#endif
