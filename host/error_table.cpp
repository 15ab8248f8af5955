#include "host/error_table.h"

#include <map>
#include <mutex>
#include <new>
#include <string>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "host/host_state.h"

namespace tarn {
namespace {

/// 65535 is not given out: as a module's offset it means "none".
constexpr int kLastErrorNumber = 65534;

struct ErrorTable {
  std::mutex lock;
  std::map<int, std::string> texts = {
      {kErrorMemory, "Memory exhausted."},
      {kErrorArgument, "Bad argument."},
      {kErrorScript, "Script error."},
      {kErrorModule, "Module cannot be loaded."},
      {kErrorFile, "File cannot be used."},
      {kErrorSingular, "Division by zero or singular system."},
      {kErrorLogarithm, "Value or weight is not positive in a logarithmic correlation."},
      {kErrorCancel, "Progress window got cancel"},
  };
  int next = kErrorCancel + 1;
};

/// Never destroyed: texts handed out stay valid until the process ends.
ErrorTable& Errors() {
  static auto& table = *new ErrorTable;
  return table;
}

}  // namespace

const char* ErrorText(int number) {
  ErrorTable& table = Errors();
  const std::lock_guard<std::mutex> guard(table.lock);
  const auto found = table.texts.find(number);
  return found == table.texts.end() ? "" : found->second.c_str();
}

int RegisterErrorText(const char* text) try {
  ErrorTable& table = Errors();
  const std::lock_guard<std::mutex> guard(table.lock);
  if (table.next > kLastErrorNumber) return kNoError;
  table.texts.emplace(table.next, text);
  return table.next++;
} catch (const std::bad_alloc&) {
  return kNoError;
}

}  // namespace tarn

int Owner::RegisterError(const char* message) {
  return tarn::RegisterErrorText(message == nullptr ? "" : message);
}

const char* Owner::GetErrorName(int number) const { return tarn::ErrorText(number); }
