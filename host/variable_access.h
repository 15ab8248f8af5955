#ifndef TARN_HOST_VARIABLE_ACCESS_H
#define TARN_HOST_VARIABLE_ACCESS_H

/// @file
/// How this host represents a `Variable`.
///
/// Numbers and native pointers live in the value itself; everything else is a block of the host
/// heap. Empty values and numbers own nothing, so the operations that run once per element of an
/// array test for them first. A native pointer may be owned: the payload is then an `OwnedObject`,
/// and the second word of the value is `kOwned`; it is 0 in every other value.

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
  kReference = 4,          ///< payload: the value referred to
  kFunction = 5,           ///< payload: a counted `ScriptFunctionHandle`
  kComplex = 6,            ///< payload: a `ComplexNumber` on the host heap
  kText = 7,               ///< payload: characters behind a `TextHeader`, zero-terminated
  kBytes = VARTYPE_BYTES,  ///< payload: as text; null for no bytes
  kArray = VARTYPE_ARRAY,  ///< payload: elements behind an `ArrayHeader`; null for no elements
  kVectorObject = 0x0800,  ///< payload: an `Object` whose class derives from 42
  kPlainObject = 0x8000    ///< payload: any other `Object`
};

/// Second word of a value that owns the native object it points to.
inline constexpr std::uint32_t kOwned = 1;

struct OwnedObject;

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

  /// Whether the value is empty or a number.
  static bool IsPlain(const Variable& value) {
    return value.typeWord_ == tarn::kReal || value.typeWord_ <= tarn::kInteger;
  }

  static bool IsOwner(const Variable& value) { return value.reserved_ == tarn::kOwned; }
  static tarn::OwnedObject* Owned(const Variable& value) {
    return static_cast<tarn::OwnedObject*>(value.payload_.block);
  }

  /// Overwrites the words without freeing what they owned.
  static void Overwrite(Variable& value, std::uint32_t type, Payload payload) {
    value.typeWord_ = type;
    value.payload_ = payload;
  }
  static void Overwrite(Variable& value, const Variable& words) {
    value.reserved_ = words.reserved_;
    Overwrite(value, words.typeWord_, words.payload_);
  }
  static void OverwriteBlock(Variable& value, std::uint32_t type, void* block) {
    value.typeWord_ = type;
    value.payload_.block = block;
  }
  static void OverwriteEmpty(Variable& value) {
    value.typeWord_ = tarn::kEmpty;
    value.reserved_ = 0;
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
    const Payload payload = source.payload_;
    const std::uint32_t type = source.typeWord_;
    const std::uint32_t ownership = source.reserved_;
    OverwriteEmpty(source);
    Release(target);
    Overwrite(target, type, payload);
    target.reserved_ = ownership;
  }
  /// Makes the empty `target` a deep copy of `source`. False, and `target` empty, when the heap
  /// refuses a block.
  static bool DeepCopy(Variable& target, const Variable& source);
  /// Makes the empty `target` hold the same array or object as `source`, which is not copied; a
  /// change through one is seen through the other. Everything else is copied.
  static bool Share(Variable& target, const Variable& source);

  /// Frees what was stored in the elements that answered an index out of range in this thread.
  static void ClearScratchElements();

  /// Makes the empty `value` share in the ownership of a native object, one use of which it takes.
  static void OverwriteOwned(Variable& value, tarn::OwnedObject* owned) {
    OverwriteBlock(value, tarn::kPointer, owned);
    value.reserved_ = tarn::kOwned;
  }

  static void SetText(Variable& value, std::string_view text);
  static void SetComplex(Variable& value, tarn::ComplexNumber number);

  static std::string_view Text(const Variable& value);
  static tarn::ComplexNumber Complex(const Variable& value);
  static Object* ObjectOf(const Variable& value);

 private:
  static void ReleaseBlock(Variable& value);
};

#endif
