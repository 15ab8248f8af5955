#ifndef TARN_HOST_VARIABLE_ACCESS_H
#define TARN_HOST_VARIABLE_ACCESS_H

/// @file
/// How this host represents a `Variable`.
///
/// Numbers and native pointers live in the value itself; everything else is a block of the host
/// heap. Type words up to `kLastPlain` own nothing, so the operations that run once per element of
/// an array test for them first.

#include <cstdint>
#include <string_view>

#include "frame/host_value.h"

namespace tarn {

/// Every type word of this host. Those without a `VARTYPE_` name are its own choice.
enum TypeCode : std::uint32_t {
  kEmpty = VARTYPE_EMPTY,
  kInteger = 1,
  kPointer = VARTYPE_CPP_POINTER,
  kReal = 3,
  kLastPlain = kReal,
  kReference = 4,          ///< payload: the value referred to
  kFunction = 5,           ///< payload: a counted `ScriptFunctionHandle`
  kComplex = 6,            ///< payload: a `ComplexNumber` on the host heap
  kText = 7,               ///< payload: characters behind a `TextHeader`, zero-terminated
  kBytes = VARTYPE_BYTES,  ///< payload: as text; null for no bytes
  kArray = VARTYPE_ARRAY,  ///< payload: elements behind an `ArrayHeader`; null for no elements
  kVectorObject = 0x0800,  ///< payload: an `Object` whose class derives from 42
  kPlainObject = 0x8000    ///< payload: any other `Object`
};

struct ComplexNumber {
  double real;
  double imaginary;
};

}  // namespace tarn

/// The host's own door to a `Variable`: the raw words, references not followed.
struct VariableAccess {
  using Payload = Variable::Payload;

  static std::uint32_t Type(const Variable& value) { return value.typeWord_; }
  static Payload& Data(Variable& value) { return value.payload_; }
  static const Payload& Data(const Variable& value) { return value.payload_; }

  static bool IsPlain(const Variable& value) { return value.typeWord_ <= tarn::kLastPlain; }

  /// Overwrites the words without freeing what they owned.
  static void Overwrite(Variable& value, std::uint32_t type, Payload payload) {
    value.typeWord_ = type;
    value.payload_ = payload;
  }
  static void Overwrite(Variable& value, const Variable& words) {
    Overwrite(value, words.typeWord_, words.payload_);
  }
  static void OverwriteBlock(Variable& value, std::uint32_t type, void* block) {
    value.typeWord_ = type;
    value.payload_.block = block;
  }
  static void OverwriteEmpty(Variable& value) {
    value.typeWord_ = tarn::kEmpty;
    value.payload_.integer = 0;
  }

  /// The value at the end of a chain of references. Chains end: a reference is made to the end of
  /// the chain it is given, and to nothing where that is the reference itself.
  static Variable& Resolve(Variable& value) {
    Variable* end = &value;
    while (end->typeWord_ == tarn::kReference) end = end->payload_.target;
    return *end;
  }
  static const Variable& Resolve(const Variable& value) {
    const Variable* end = &value;
    while (end->typeWord_ == tarn::kReference) end = end->payload_.target;
    return *end;
  }

  /// Frees what the value owns (a reference owns nothing) and leaves it empty.
  static void Release(Variable& value) {
    if (!IsPlain(value)) ReleaseBlock(value);
    OverwriteEmpty(value);
  }
  /// Moves the words of `source`, which becomes empty, into `target`, whose old content is freed.
  static void Move(Variable& target, Variable& source) {
    Payload payload = source.payload_;
    const std::uint32_t type = source.typeWord_;
    OverwriteEmpty(source);
    Release(target);
    Overwrite(target, type, payload);
  }
  /// Makes the empty `target` a deep copy of `source`. False, and `target` empty, when the heap
  /// refuses a block.
  static bool DeepCopy(Variable& target, const Variable& source);
  /// Makes the empty `target` hold the same array or object as `source`, which is not copied; a
  /// change through one is seen through the other. Everything else is copied.
  static bool Share(Variable& target, const Variable& source);

  /// Frees what was stored in the elements that answered an index out of range in this thread.
  static void ClearScratchElements();

  static void SetText(Variable& value, std::string_view text);
  static void SetComplex(Variable& value, tarn::ComplexNumber number);

  static std::string_view Text(const Variable& value);
  static tarn::ComplexNumber Complex(const Variable& value);
  static Object* ObjectOf(const Variable& value);

 private:
  static void ReleaseBlock(Variable& value);
};

#endif
