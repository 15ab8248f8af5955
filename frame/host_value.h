#ifndef TARN_FRAME_HOST_VALUE_H
#define TARN_FRAME_HOST_VALUE_H

/// @file
/// Host interface, part one: script values.
///
/// These classes belong to the host library. The module only calls the operations declared here;
/// whoever writes another host defines them (see docs/host-interface.md for the full contract).
/// The object layouts are fixed, because elements of an array are contiguous `Variable` objects
/// that both sides index: a `Variable` is 16 bytes, its first 32-bit word the type word.

#include <cstdint>

#include "frame/export.h"

class TarnAss;  ///< Base class of native objects, declared in frame/host.h.
class Object;   ///< A script object; opaque to the module, handed out by `Variable::GetObject`.
struct VariableAccess;  ///< The host's own door to the representation of a `Variable`.

/// The host's enumeration of value types. Only the codes listed here have a meaning that the module
/// relies on; a host gives all others its own meanings.
enum PVARTYPE : std::uint32_t {
  VARTYPE_EMPTY = 0,            ///< no value
  VARTYPE_CPP_POINTER = 2,      ///< a native pointer, as stored by `Variable::SetCppPointer`
  VARTYPE_BYTES = 512,          ///< a byte block; the element count is its size in bytes
  VARTYPE_ARRAY = 1024,         ///< a plain array
  VARTYPE_OBJECT_BITS = 0x8800  ///< any of these bits: an object value, which has a `VarClass`
};

/// Identifiers of the classes whose meaning host and module share. The identifier of any other
/// class is that of its name, `Token::GetNameID(name)`.
enum VARCLASS_ID : std::uint16_t {
  VARCLASS_ARRAY = 1,   ///< array base class
  VARCLASS_VECTOR = 42  ///< vector values: objects that count as one number element-wise
};

/// Descriptor of a script class.
class TARN_HOST_API VarClass {
 public:
  /// Non-zero when the class is, or derives from, the class with the given identifier.
  int IsInheritFrom(std::uint16_t classId) const;

 protected:
  /// For the host: a class of that identifier, derived from `baseClass` or, where that is null,
  /// from none.
  VarClass(std::uint16_t classId, const VarClass* baseClass) : id_(classId), base_(baseClass) {}
  ~VarClass() = default;

 private:
  std::uint16_t id_;
  const VarClass* base_;
};

/// A dynamically typed script value.
///
/// A value owns what it holds; copies are deep. A value that was assigned a `Variable*` is a
/// reference: every operation but assignment of another pointer, `Clear` and the destructor acts on
/// the value referred to, which must outlive the reference.
class TARN_HOST_API Variable {
 public:
  /// An empty value.
  Variable();
  /// A deep copy.
  Variable(const Variable& other);
  /// An integer value.
  explicit Variable(std::int32_t value);
  /// An integer value.
  explicit Variable(std::int64_t value);
  /// A value of the given type with `count` elements; see `Init`.
  Variable(PVARTYPE type, std::int64_t count);
  ~Variable();

  /// Re-creates the value in place: `VARTYPE_ARRAY` with `count` empty elements, `VARTYPE_BYTES`
  /// with `count` zero bytes. When the host heap refuses, the value has the type but no elements.
  void Init(PVARTYPE type, std::int64_t count);
  /// Empties the value.
  void Clear();

  /// Deep assignment: the target becomes a copy of the source, object class and members included.
  Variable& operator=(const Variable& other);
  Variable& operator=(std::int32_t value);  ///< Stores an integer.
  Variable& operator=(std::int64_t value);  ///< Stores an integer.
  Variable& operator=(float value);         ///< Stores a real number.
  Variable& operator=(double value);        ///< Stores a real number.
  Variable& operator=(Variable* target);    ///< Makes this a reference to `*target`.

  /// Element at a zero-based index of an array, vector value or array object. Outside the range the
  /// host answers with an element of its own that nothing reads.
  Variable& operator[](std::int64_t index);
  /// Member of an object value by name, created empty where it does not exist yet.
  Variable& operator()(const char* name);
  /// The text of a text value, the bytes of a byte block; null for everything else.
  operator char*() const;  // NOLINT(google-explicit-constructor): part of the host contract

  /// Number of elements of an array or vector value, of bytes of a byte block; 0 for other values.
  std::int64_t GetDim() const;
  /// The first of the contiguous elements; null when there are none.
  Variable* GetArray() const;
  /// The value converted to a number; what no number can be made of gives 0.
  double GetDoubleNumb() const;
  float GetFloatNumb() const;         ///< `GetDoubleNumb` rounded to single precision.
  std::int32_t GetInt32Numb() const;  ///< Truncated towards zero; 0 outside the range and for NaN.
  /// Non-zero when the value is a plain (real or integer) number.
  int IsNumber() const;
  /// Non-zero when the value's type derives from the class with the given identifier.
  int IsInheritFrom(std::uint16_t classId) const;
  /// The class of an object value; null for other values.
  const VarClass* GetClass() const;
  /// The script object of an object value; null for other values.
  Object* GetObject() const;
  /// A new value: the complex conjugate of numbers, element by element of arrays and vector values,
  /// of the ordinates of tabulated functions; a copy of anything else.
  Variable Conjugate() const;
  /// Stores a native pointer, so that script code can hand it back to native code.
  void SetCppPointer(void* pointer);
  /// Hands a native object over to the value, which points to it from now on. Copies of the value
  /// point to the same object; the last of them deletes it through its virtual destructor. When the
  /// host heap refuses, the object is deleted at once and the value is empty, as it is for null.
  void SetOwnedObject(TarnAss* object);
  /// The pointer stored by `SetCppPointer`, or the `TarnAss*` handed to `SetOwnedObject`; null for
  /// every other kind of value.
  void* GetCppPointer() const;

  /// Name of the member of an object at a zero-based index, in the order in which the members were
  /// created; null past the end and for other values. The text stays valid.
  const char* GetMemberName(std::int64_t index) const;
  /// What the value is, in a word that errors can quote: "number", "text", "array", "function",
  /// "nothing" for an empty value, "complex", "bytes", "pointer", the name of the class of an
  /// object. The text stays valid.
  const char* KindName() const;

  /// The type word of this very object (a reference is not followed; registers resolve them).
  std::uint32_t TypeWord() const { return typeWord_; }
  /// Whether the type word marks an object value.
  bool IsObject() const { return (typeWord_ & VARTYPE_OBJECT_BITS) != 0; }

 private:
  friend struct VariableAccess;
  union Payload {
    double real;
    std::int64_t integer;
    void* block;
    Variable* target;
  };

  std::uint32_t typeWord_;
  std::uint32_t reserved_;  ///< free for the host
  Payload payload_;
};

static_assert(sizeof(Variable) == 16, "elements of host arrays are 16 bytes apart");

/// The register through which a script handler receives an argument and returns its result.
///
/// A register holds a value of its own or, after `PointTo`, refers to an existing one; reading and
/// assigning then act on the value referred to.
class TARN_HOST_API VarRegister {
 public:
  VarRegister();
  ~VarRegister();
  VarRegister(const VarRegister&) = delete;
  VarRegister& operator=(const VarRegister&) = delete;

  /// The value held or referred to. References are followed, so the value is never one itself.
  Variable& GetVar();
  /// `GetVar()`
  operator Variable&() { return GetVar(); }  // NOLINT(google-explicit-constructor)
  /// `GetVar().GetDoubleNumb()`
  operator double();  // NOLINT(google-explicit-constructor)
  /// `GetVar().GetFloatNumb()`
  operator float();  // NOLINT(google-explicit-constructor)
  /// `GetVar().GetInt32Numb()`
  operator int();  // NOLINT(google-explicit-constructor)

  VarRegister& operator=(double value);      ///< Stores a real number.
  VarRegister& operator=(int value);         ///< Stores an integer.
  VarRegister& operator=(const char* text);  ///< Stores a copy of the text; null: nothing.

  /// Makes the register refer to `*value`, which the caller keeps alive.
  void PointTo(Variable* value);
  /// Marks the register as passing its value by reference, so that a script function may change it.
  void SetRef();
  /// Whether `SetRef` was called.
  bool IsRef() const { return byReference_ != 0; }

 private:
  Variable own_;
  Variable* target_;
  std::int32_t byReference_;
};

#endif
