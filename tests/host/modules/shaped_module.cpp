/// @file
/// A module that is shaped by the environment: what is wrong with it, how it describes itself, the
/// signature of its only row.

#include <cstdlib>
#include <cstring>

#include "frame/module_entry.h"

namespace {

const char* Setting(const char* name, const char* otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : value;
}

bool IsBroken(const char* how) { return std::strcmp(Setting("TARN_TEST_BROKEN", ""), how) == 0; }

void Handler(VarRegister& result, VarRegister* /*arguments*/) { result = 1; }

char* Describe(char* destination, std::int32_t length) {
  const char* text = Setting("TARN_TEST_DESCRIPTION", "Shaped module |TARN version:1.00.00");
  return std::strncpy(destination, text, static_cast<std::size_t>(length));
}

const ScriptFunction* Functions() {
  static ScriptFunction rows[3];
  if (IsBroken("no table")) return nullptr;
  rows[0] = {Handler, "FirstOfShaped(any)"};
  rows[1] = {Handler, Setting("TARN_TEST_SIGNATURE", "Shaped(any)")};
  rows[2] = {nullptr, ""};
  if (IsBroken("null signature")) rows[1].signature = nullptr;
  if (IsBroken("null handler")) rows[1].handler = nullptr;
  return rows;
}

const void* AuxTable() {
  static const char block[40] = {};
  return block;
}

void Initialise(Processor* /*processor*/) {
  if (IsBroken("error in initialisation")) TarnError(10, "no licence to start");
}

}  // namespace

const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT] = {
    nullptr,
    nullptr,
    reinterpret_cast<TarnEntry>(&Describe),
    reinterpret_cast<TarnEntry>(&Functions),
    reinterpret_cast<TarnEntry>(&AuxTable),
    reinterpret_cast<TarnEntry>(&Initialise),
};
