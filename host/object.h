#ifndef TARN_HOST_OBJECT_H
#define TARN_HOST_OBJECT_H

/// @file
/// Script objects: a class, elements, and members by name identifier.

#include <cstdint>

#include "host/container.h"

namespace tarn {

class ScriptClass;

/// A member. Nodes never move, so a member found stays where it is while others are created.
struct Member {
  Member* next;
  std::uint16_t nameId;
  Variable value;
};

}  // namespace tarn

/// A script object on the host heap.
class Object : public tarn::Container {
 public:
  /// An object without elements and members; null when the heap refuses.
  static Object* Create(const tarn::ScriptClass& scriptClass);
  /// Frees the object itself, whose values were released before.
  static void Free(Object* object);

  const tarn::ScriptClass& Class() const { return *class_; }
  /// The elements, a plain array; empty for objects that are no vectors or arrays.
  Variable& Elements() { return elements_; }
  const Variable& Elements() const { return elements_; }
  tarn::Member* FirstMember() const { return members_; }

  /// The member with that name identifier; null when there is none.
  Variable* FindMember(std::uint16_t nameId) const;
  /// The same, created empty where it does not exist; null when the heap refuses.
  Variable* FindOrCreateMember(std::uint16_t nameId);

 private:
  const tarn::ScriptClass* class_;
  Variable elements_;
  tarn::Member* members_;
  tarn::Member** lastLink_;
};

namespace tarn {

template <class Visitor>
void ForEachHeldValue(Container* container, Visitor visit) {
  if (container->kind == ContainerKind::kArray) {
    auto* header = static_cast<ArrayHeader*>(container);
    Variable* elements = ElementsOf(header);
    for (std::int64_t i = 0; i < header->count; ++i) visit(elements[i]);
    return;
  }
  auto* object = static_cast<Object*>(container);
  visit(object->Elements());
  for (Member* member = object->FirstMember(); member != nullptr; member = member->next) {
    visit(member->value);
  }
}

/// Whether a value owns a native object. A member that does is part of the object as its module
/// made it: scripts neither see nor set it.
bool IsHiddenFromScripts(const Variable& member);
/// The first member from `member` on that scripts see; null when there is none.
const Member* VisibleMember(const Member* member);

/// Makes the empty `value` an object of that class. False when the heap refuses.
bool MakeObject(Variable& value, const ScriptClass& scriptClass);

}  // namespace tarn

#endif
