#ifndef TARN_HOST_CONTAINER_H
#define TARN_HOST_CONTAINER_H

/// @file
/// Storage of the values that hold other values: arrays and objects, and of text and bytes.

#include <cstddef>
#include <cstdint>

#include "host/variable_access.h"

namespace tarn {

enum class ContainerKind : std::uint32_t { kArray, kObject };

/// Head of every block that holds values. The links make it possible to copy and to free nested
/// values of any depth without recursion and without more memory.
struct Container {
  ContainerKind kind;
  std::uint32_t uses;         ///< values that share the block; see `VariableAccess::Share`
  Container* next;            ///< work list of a copy or release under way
  const Container* original;  ///< while copying: what this block will be a copy of
  const Container* parent;    ///< while copying: the copy that holds this one
};

/// Head of an array; the elements follow it.
struct alignas(16) ArrayHeader : Container {
  std::int64_t count;
};

/// Head of text and bytes; the characters follow it.
struct alignas(16) TextHeader {
  std::int64_t length;
};

/// A block for `count` empty elements; null when the heap refuses or the size cannot be had.
Variable* AllocateElements(std::int64_t count);
inline ArrayHeader* HeaderOf(Variable* elements) {
  return reinterpret_cast<ArrayHeader*>(reinterpret_cast<char*>(elements) - sizeof(ArrayHeader));
}
inline const ArrayHeader* HeaderOf(const Variable* elements) {
  return reinterpret_cast<const ArrayHeader*>(reinterpret_cast<const char*>(elements) -
                                              sizeof(ArrayHeader));
}
inline Variable* ElementsOf(ArrayHeader* header) {
  return reinterpret_cast<Variable*>(reinterpret_cast<char*>(header) + sizeof(ArrayHeader));
}
inline const Variable* ElementsOf(const ArrayHeader* header) {
  return reinterpret_cast<const Variable*>(reinterpret_cast<const char*>(header) +
                                           sizeof(ArrayHeader));
}

/// The elements of a value that is an array, null for none.
inline Variable* ArrayElements(const Variable& value) {
  return static_cast<Variable*>(VariableAccess::Data(value).block);
}
inline std::int64_t ArrayCount(const Variable& value) {
  const Variable* elements = ArrayElements(value);
  return elements == nullptr ? 0 : HeaderOf(elements)->count;
}

/// Whether a value is an array, a vector value or an array object, which have elements.
bool HasElements(const Variable& value);

/// Makes `target` a plain array of copies of the elements of `source`. False, and `target`
/// unchanged, when the heap refuses.
bool CopyElements(Variable& target, const Variable& source);

/// A block for `length` characters, zero-filled and one longer; null when the heap refuses.
char* AllocateCharacters(std::int64_t length);
std::int64_t CharacterCount(const char* characters);
void FreeCharacters(char* characters);

/// Gives one use of the block back; the last one frees it with everything in it.
void ReleaseContainer(Container* container);

/// Calls `visit(Variable&)` for every value that the block holds directly.
template <class Visitor>
void ForEachHeldValue(Container* container, Visitor visit);

}  // namespace tarn

#endif
