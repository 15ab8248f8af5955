#include "host/container.h"

#include <cstring>

#include "frame/host.h"
#include "host/object.h"
#include "host/owned_object.h"
#include "host/script_function.h"

namespace tarn {
namespace {

constexpr std::int64_t kMostElements = std::int64_t{1} << 40;
constexpr std::int64_t kMostCharacters = std::int64_t{1} << 44;

Container* ContainerOf(const Variable& value) {
  switch (VariableAccess::Type(value)) {
    case kArray: {
      Variable* elements = ArrayElements(value);
      return elements == nullptr ? nullptr : HeaderOf(elements);
    }
    case kVectorObject:
    case kPlainObject:
      return VariableAccess::ObjectOf(value);
    default:
      return nullptr;
  }
}

void FreeMembers(Object* object) {
  Member* member = object->FirstMember();
  while (member != nullptr) {
    Member* const next = member->next;
    HFREE(member);
    member = next;
  }
}

/// Frees a block whose values were released before.
void FreeContainer(Container* container) {
  if (container->kind == ContainerKind::kArray) {
    HFREE(static_cast<ArrayHeader*>(container));
    return;
  }
  auto* object = static_cast<Object*>(container);
  FreeMembers(object);
  Object::Free(object);
}

/// One deep copy: blocks are made at once, their contents filled from a work list.
class DeepCopier {
 public:
  bool Run(Variable& target, const Variable& source) {
    bool complete = CopyValue(target, source, nullptr);
    while (complete && pending_ != nullptr) {
      Container* copy = pending_;
      pending_ = copy->next;
      complete = Fill(copy);
    }
    if (!complete) VariableAccess::Release(target);
    return complete;
  }

 private:
  bool CopyValue(Variable& target, const Variable& source, const Container* parent) {
    if (VariableAccess::IsPlain(source)) {
      VariableAccess::Overwrite(target, source);
      return true;
    }
    return CopyBlock(target, source, parent);
  }

  bool CopyBlock(Variable& target, const Variable& source, const Container* parent) {
    switch (VariableAccess::Type(source)) {
      case kReference:
        return CopyReferredValue(target, VariableAccess::Resolve(source), parent);
      case kPointer:
        if (VariableAccess::IsOwner(source)) AddUse(VariableAccess::Owned(source));
        VariableAccess::Overwrite(target, source);
        return true;
      case kFunction:
        AddUse(static_cast<ScriptFunctionHandle*>(VariableAccess::Data(source).block));
        VariableAccess::Overwrite(target, source);
        return true;
      case kComplex:
        VariableAccess::SetComplex(target, VariableAccess::Complex(source));
        return VariableAccess::Type(target) == kComplex;
      case kText:
      case kBytes:
        return CopyCharacters(target, source);
      default:
        return CopyContainer(target, source, parent);
    }
  }

  /// A value inside an array may refer to that array. Such a circle has no deep copy; the element
  /// that closes it becomes empty.
  bool CopyReferredValue(Variable& target, const Variable& source, const Container* parent) {
    const Container* referred = ContainerOf(source);
    for (const Container* copy = parent; copy != nullptr && referred != nullptr;
         copy = copy->parent) {
      if (copy->original == referred) return true;
    }
    return CopyValue(target, source, parent);
  }

  static bool CopyCharacters(Variable& target, const Variable& source) {
    const auto* characters = static_cast<const char*>(VariableAccess::Data(source).block);
    char* copy = nullptr;
    if (characters != nullptr) {
      const std::int64_t length = CharacterCount(characters);
      copy = AllocateCharacters(length);
      if (copy == nullptr) return false;
      std::memcpy(copy, characters, static_cast<std::size_t>(length));
    }
    VariableAccess::OverwriteBlock(target, VariableAccess::Type(source), copy);
    return true;
  }

  bool CopyContainer(Variable& target, const Variable& source, const Container* parent) {
    const Container* original = ContainerOf(source);
    void* block = nullptr;
    Container* copy = nullptr;
    if (original != nullptr && original->kind == ContainerKind::kArray) {
      Variable* elements = AllocateElements(ArrayCount(source));
      if (elements == nullptr) return false;
      block = elements;
      copy = HeaderOf(elements);
    } else if (original != nullptr) {
      Object* object = Object::Create(static_cast<const Object*>(original)->Class());
      if (object == nullptr) return false;
      block = object;
      copy = object;
    }
    VariableAccess::OverwriteBlock(target, VariableAccess::Type(source), block);
    if (copy != nullptr) Enqueue(copy, original, parent);
    return true;
  }

  void Enqueue(Container* copy, const Container* original, const Container* parent) {
    copy->original = original;
    copy->parent = parent;
    copy->next = pending_;
    pending_ = copy;
  }

  bool Fill(Container* copy) {
    if (copy->kind == ContainerKind::kArray) return FillArray(static_cast<ArrayHeader*>(copy));
    return FillObject(static_cast<Object*>(copy));
  }

  bool FillArray(ArrayHeader* copy) {
    const Variable* source = ElementsOf(static_cast<const ArrayHeader*>(copy->original));
    Variable* target = ElementsOf(copy);
    for (std::int64_t i = 0; i < copy->count; ++i) {
      if (!CopyValue(target[i], source[i], copy)) return false;
    }
    return true;
  }

  bool FillObject(Object* copy) {
    const auto* source = static_cast<const Object*>(copy->original);
    if (!CopyValue(copy->Elements(), source->Elements(), copy)) return false;
    for (const Member* member = source->FirstMember(); member != nullptr; member = member->next) {
      Variable* target = copy->FindOrCreateMember(member->nameId);
      if (target == nullptr || !CopyValue(*target, member->value, copy)) return false;
    }
    return true;
  }

  Container* pending_ = nullptr;
};

}  // namespace

Variable* AllocateElements(std::int64_t count) {
  if (count < 1 || count > kMostElements) return nullptr;
  const std::size_t size = sizeof(ArrayHeader) + static_cast<std::size_t>(count) * sizeof(Variable);
  auto* header = static_cast<ArrayHeader*>(HMALLOCZ(size));
  if (header == nullptr) return nullptr;
  header->kind = ContainerKind::kArray;
  header->uses = 1;
  header->count = count;
  return ElementsOf(header);
}

bool HasElements(const Variable& value) {
  return value.IsInheritFrom(VARCLASS_ARRAY) != 0 || value.IsInheritFrom(VARCLASS_VECTOR) != 0;
}

bool CopyElements(Variable& target, const Variable& source) {
  const std::int64_t count = source.GetDim();
  Variable copy(VARTYPE_ARRAY, count);
  if (copy.GetDim() != count) return false;
  Variable* to = copy.GetArray();
  const Variable* from = source.GetArray();
  for (std::int64_t i = 0; i < count; ++i) {
    if (!VariableAccess::DeepCopy(to[i], from[i])) return false;
  }
  VariableAccess::Move(target, copy);
  return true;
}

char* AllocateCharacters(std::int64_t length) {
  if (length < 0 || length > kMostCharacters) return nullptr;
  auto* header =
      static_cast<TextHeader*>(HMALLOCZ(sizeof(TextHeader) + static_cast<std::size_t>(length) + 1));
  if (header == nullptr) return nullptr;
  header->length = length;
  return reinterpret_cast<char*>(header) + sizeof(TextHeader);
}

std::int64_t CharacterCount(const char* characters) {
  return reinterpret_cast<const TextHeader*>(characters - sizeof(TextHeader))->length;
}

void FreeCharacters(char* characters) {
  if (characters != nullptr) HFREE(characters - sizeof(TextHeader));
}

void ReleaseContainer(Container* container) {
  if (container == nullptr || --container->uses != 0) return;
  container->next = nullptr;
  Container* pending = container;
  while (pending != nullptr) {
    Container* const dying = pending;
    pending = dying->next;
    ForEachHeldValue(dying, [&pending](Variable& value) {
      if (VariableAccess::IsPlain(value)) return;
      Container* const held = ContainerOf(value);
      if (held == nullptr) {
        VariableAccess::Release(value);
      } else if (--held->uses == 0) {
        held->next = pending;
        pending = held;
      }
    });
    FreeContainer(dying);
  }
}

}  // namespace tarn

bool VariableAccess::DeepCopy(Variable& target, const Variable& source) {
  return tarn::DeepCopier().Run(target, source);
}

bool VariableAccess::Share(Variable& target, const Variable& source) {
  const Variable& value = Resolve(source);
  tarn::Container* container = tarn::ContainerOf(value);
  if (container == nullptr) return DeepCopy(target, value);
  ++container->uses;
  Overwrite(target, value);
  return true;
}

void VariableAccess::ReleaseBlock(Variable& value) {
  void* block = value.payload_.block;
  switch (value.typeWord_) {
    case tarn::kReference:
      return;
    case tarn::kPointer:
      if (IsOwner(value)) tarn::DropUse(Owned(value));
      return;
    case tarn::kFunction:
      tarn::DropUse(static_cast<tarn::ScriptFunctionHandle*>(block));
      return;
    case tarn::kComplex:
      HFREE(block);
      return;
    case tarn::kText:
    case tarn::kBytes:
      tarn::FreeCharacters(static_cast<char*>(block));
      return;
    default:
      tarn::ReleaseContainer(tarn::ContainerOf(value));
  }
}
