#ifndef TARN_FRAME_MODULE_ENTRY_H
#define TARN_FRAME_MODULE_ENTRY_H

/// @file
/// The four entries by which a host uses the module. They have no exported names: a PE library
/// exports them as ordinals 2 to 5; where the object format has no ordinals the module exports the
/// one array `tarn_ordinals`, indexed by ordinal.

#include <cstdint>

#include "frame/host.h"

/// A script function: writes to the result register, reads one register per declared parameter.
using ScriptHandler = void (*)(VarRegister& result, VarRegister* arguments);

/// One row of the script function table. The signature text names the function and its parameter
/// kinds, "Name(kind, kind)", each kind one of "any", "number", "int", "refer object Vector"; the
/// embedded host takes more from other modules, see docs/host.md. The table ends with the row
/// {null, ""}.
struct ScriptFunction {
  ScriptHandler handler;  ///< null in the last row
  const char* signature;  ///< name and parameter kinds
};

/// Numbers of the entries.
enum TarnOrdinal : std::uint32_t {
  TARN_ORDINAL_DESCRIBE_MODULE = 2,
  TARN_ORDINAL_GET_SCRIPT_FUNCTIONS = 3,
  TARN_ORDINAL_GET_AUX_TABLE = 4,
  TARN_ORDINAL_INIT_MODULE = 5,
  TARN_ORDINAL_COUNT = 6
};

/// An entry before it is cast to what it is.
using TarnEntry = void (*)();
/// Entry 2, `tarn::DescribeModule`.
using TarnDescribeModule = char* (*)(char* destination, std::int32_t length);
/// Entry 3, `tarn::GetScriptFunctions`.
using TarnGetScriptFunctions = const ScriptFunction* (*)();
/// Entry 4, `tarn::GetAuxTable`.
using TarnGetAuxTable = const void* (*)();
/// Entry 5, `tarn::InitModule`.
using TarnInitModule = void (*)(Processor* processor);

namespace tarn {

/// Ordinal 2. Copies the description "TARN Support DLL v5.0 |TARN version:5.09.02" to `destination`
/// as `strncpy` does: at most `length` characters, no terminator when the text fills the length,
/// zero bytes behind the text otherwise. A negative length writes nothing. Returns `destination`.
char* DescribeModule(char* destination, std::int32_t length);

/// Ordinal 3. The script function table, 41 rows and the terminator; static, never changes.
const ScriptFunction* GetScriptFunctions();

/// Ordinal 4. The auxiliary table: 40 zero bytes, which a host reads as a table without entries.
const void* GetAuxTable();

/// Ordinal 5. Makes the module ready for `processor`: learns the number of the script constant
/// `ERR_SOLUTION_NOT_FOUND`, defining the constant and registering its error where the host has
/// none yet, and creates the random lock. Does nothing for a null processor or once the number is
/// known; if the host lost the constant just defined, a later call tries again.
void InitModule(Processor* processor);

}  // namespace tarn

#if !defined(_WIN32)
/// The entries indexed by ordinal; elements 0 and 1 are null. Cast with the types above.
extern "C" TARN_API const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT];
#endif

#endif
