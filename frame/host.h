#ifndef TARN_FRAME_HOST_H
#define TARN_FRAME_HOST_H

/// @file
/// Host interface, part two: interpreter, errors, names, heap, uniform source.
///
/// Together with host_value.h this is everything that the module imports besides the C and C++
/// run-time libraries. Choices left to a host by its nature and fixed here:
///  - a `Variable` that holds a native pointer has type word 2 (`VARTYPE_CPP_POINTER`), an empty
///    one 0;
///  - `TarnError` records number and message as the last error raised, sets the processor's
///    pending-error flag and returns to its caller, who must return at once;
///  - `Processor::PrintText` is the text output, `pendingError` the pending-error flag and
///    `stopRequested` the second flag beside it: somebody asked for the running script to stop.

#include <cstddef>
#include <cstdint>

#include "frame/host_value.h"

/// Definition node of a script constant in the host's tree of definitions.
class Tree {
 public:
  std::int32_t GetInt32() const { return value_; }  ///< Value of the constant.

 protected:
  explicit Tree(std::int32_t value) : value_(value) {}  ///< For the host, which makes the nodes.
  ~Tree() = default;

  std::int32_t value_;  ///< the value
};

/// The interpreter in its role of error owner.
class TARN_HOST_API Owner {
 public:
  /// Registers a new error message and returns its error number.
  int RegisterError(const char* message);
  /// Number of the last error raised; 0 when there was none.
  std::uint16_t GetLastError() const;
  /// Message text of an error number; an empty text for a number that nobody registered.
  const char* GetErrorName(int number) const;
};

/// The interpreter in its role of name table.
class TARN_HOST_API Token {
 public:
  /// The 16-bit identifier of a name, the same for every call with that name.
  static std::uint16_t GetNameID(const char* name);
  /// Defines a script constant; a constant that exists is redefined.
  void SetConstant(std::uint16_t nameId, const Variable& value);
};

/// The interpreter in its role of idle pump.
class TARN_HOST_API Engine {
 public:
  /// Lets the host process pending user-interface work during a long computation.
  void FlushIdle();
};

/// The interpreter. One is current at a time; `GetOwner()` returns it.
class TARN_HOST_API Processor : public Owner, public Token, public Engine {
 public:
  /// The definition node of a script constant, or null when no such constant exists. The node
  /// belongs to the host and is valid until the constant is redefined.
  const Tree* GetConstant(const char* name);

  /// Creates in `value` a new object of the named script class from `count` constructor arguments.
  /// Returns non-zero on success; otherwise an error is pending and `value` is empty.
  int MakeInstance(Variable& value, const char* className, VarRegister* arguments, int count);

  /// Calls a script function value without converting the arguments. Non-zero on success.
  int RunFunctionAsIs(VarRegister& result, Variable& function, VarRegister* arguments, int count);

  /// Calls a named method of the object in `object`, converting the arguments to the declared
  /// parameter types; the method's value goes to `result`. Non-zero on success.
  int RunMethod(VarRegister& object, const char* method, VarRegister* arguments, int count,
                Variable& result);
  /// The same, without conversion.
  int RunMethodAsIs(VarRegister& object, const char* method, VarRegister* arguments, int count,
                    Variable& result);
  /// The same two calls for a caller that holds the object in a `Variable` and wants the value in a
  /// register.
  int RunMethod(VarRegister& result, const char* method, VarRegister* arguments, int count,
                Variable* object);
  /// The second of them, without conversion.
  int RunMethodAsIs(VarRegister& result, const char* method, VarRegister* arguments, int count,
                    Variable* object);

  /// Text output: prints a zero-terminated text as it stands.
  virtual void PrintText(const char* text) = 0;

  std::int32_t pendingError = 0;   ///< non-zero: an error was raised and not handled yet
  std::int32_t stopRequested = 0;  ///< non-zero: the running script was asked to stop

 protected:
  virtual ~Processor();
};

/// A growing text buffer of the host.
class TARN_HOST_API Buffer {
 public:
  /// An empty buffer that has room for `initialSize` characters to start with.
  explicit Buffer(std::int64_t initialSize);
  ~Buffer();
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  /// Appends text formatted as by `printf`; returns the number of characters appended, or a
  /// negative number when nothing could be appended. `flags` is reserved to the host.
  int Printf(int flags, const char* format, ...);
  /// The text so far, zero-terminated; valid until the next `Printf`.
  const char* GetText() const;

 private:
  char* text_;
  std::int64_t length_;
  std::int64_t capacity_;
};

/// Base class of native objects that script code can see. Every derived class has `PlaceHolder` in
/// its first virtual slot and never overrides it.
class TARN_HOST_API TarnAss {
 protected:
  virtual void PlaceHolder();  ///< Keeps the first virtual slot; does nothing.

 public:
  TarnAss();
  TarnAss(const TarnAss& other);             ///< There is nothing to copy.
  TarnAss& operator=(const TarnAss& other);  ///< There is nothing to copy.
  virtual ~TarnAss();
};

/// Raises the script error with that number.
TARN_HOST_API void TarnError(int number);
/// Raises the script error with that number and an explanatory text.
TARN_HOST_API void TarnError(int number, const char* message);

/// The module's first error number in the host's numbering, or 65535 when the host has no block of
/// numbers for the module. The handle is the one that the platform's loader gives to a module.
TARN_HOST_API std::uint16_t GetErrorOffset(void* moduleHandle);

/// The current processor; null when there is none.
TARN_HOST_API Processor* GetOwner();

/// A uniform deviate in [0, limit). Not safe to call from two threads at once: callers hold the
/// module's random lock.
TARN_HOST_API double Rand(double limit);

/// Host heap. Null on failure; a size of 0 gives a valid block.
TARN_HOST_API void* HMALLOC(std::size_t bytes);
TARN_HOST_API void* HMALLOCZ(std::size_t bytes);  ///< As `HMALLOC`, zero-filled.
/// Resizes a block (null: allocates one). On failure null, and the old block stays valid.
TARN_HOST_API void* HREALLOC(void* block, std::size_t bytes);
TARN_HOST_API void HFREE(void* block);  ///< Frees a block; null does nothing.

#endif
