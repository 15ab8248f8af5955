/// @file
/// Life, assignment and structure of script values.

#include <array>
#include <cstring>
#include <utility>

#include "frame/host.h"
#include "host/names.h"
#include "host/object.h"
#include "host/owned_object.h"
#include "host/script_class.h"
#include "host/variable_access.h"

using Access = VariableAccess;

namespace tarn {
namespace {

/// What an index out of range or a member of a non-object answers with: an empty element that
/// nothing reads. There are several, so that a caller who holds one of them keeps it for a while.
struct ScratchElements {
  std::array<Variable, 8> elements;
  std::size_t next = 0;
};

thread_local ScratchElements scratch;

[[gnu::noinline, gnu::cold]] Variable& ScratchElement() {
  scratch.next = (scratch.next + 1) % scratch.elements.size();
  Variable& element = scratch.elements[scratch.next];
  element.Clear();
  return element;
}

// Numbers are stored and elements looked up once per element of an array, so the common cases are
// a few instructions and the rest is kept out of their way.

[[gnu::noinline]] Variable& MakePlainSlowly(Variable& value) {
  Variable& target = Access::Resolve(value);
  Access::Release(target);
  return target;
}

/// The value to store a number in, its old content freed.
inline Variable& MakePlain(Variable& value) {
  return Access::IsPlain(value) ? value : MakePlainSlowly(value);
}

/// The elements of a value that is no plain array itself; null when there are none.
[[gnu::noinline]] Variable* FindElements(const Variable& reference) {
  const Variable& value = Access::Resolve(reference);
  if (value.IsObject()) return ArrayElements(Access::ObjectOf(value)->Elements());
  return Access::Type(value) == kArray ? ArrayElements(value) : nullptr;
}

inline Variable* ElementsOfValue(const Variable& value) {
  return Access::Type(value) == kArray ? ArrayElements(value) : FindElements(value);
}

void StoreInteger(Variable& value, std::int64_t number) {
  Access::Payload payload;
  payload.integer = number;
  Access::Overwrite(MakePlain(value), kInteger, payload);
}

void StoreReal(Variable& value, double number) {
  Access::Payload payload;
  payload.real = number;
  Access::Overwrite(MakePlain(value), kReal, payload);
}

}  // namespace
}  // namespace tarn

Variable::Variable() : typeWord_(tarn::kEmpty), reserved_(0), payload_{} {}

Variable::Variable(const Variable& other) : Variable() {
  if (Access::IsPlain(other)) {
    Access::Overwrite(*this, other);
  } else {
    Access::DeepCopy(*this, Access::Resolve(other));
  }
}

Variable::Variable(std::int32_t value) : Variable(std::int64_t{value}) {}

Variable::Variable(std::int64_t value) : Variable() { tarn::StoreInteger(*this, value); }

Variable::Variable(PVARTYPE type, std::int64_t count) : Variable() { Init(type, count); }

Variable::~Variable() { Access::Release(*this); }

void Variable::Init(PVARTYPE type, std::int64_t count) {
  Variable& target = Access::Resolve(*this);
  Access::Release(target);
  switch (static_cast<std::uint32_t>(type)) {
    case tarn::kArray:
      Access::OverwriteBlock(target, type, tarn::AllocateElements(count));
      return;
    case tarn::kBytes:
      Access::OverwriteBlock(target, type, count < 1 ? nullptr : tarn::AllocateCharacters(count));
      return;
    case tarn::kInteger:
    case tarn::kReal:
    case tarn::kPointer:
      Access::Overwrite(target, type, Payload{});
      return;
    default:
      return;
  }
}

void Variable::Clear() { Access::Release(*this); }

Variable& Variable::operator=(const Variable& other) {
  if (Access::IsPlain(other) && Access::IsPlain(*this)) {
    Access::Overwrite(*this, other);
    return *this;
  }
  Variable& target = Access::Resolve(*this);
  const Variable& source = Access::Resolve(other);
  if (&target == &source) return *this;
  // The source may be an element of the target or the other way round: copy first, free later.
  Variable copy;
  Access::DeepCopy(copy, source);
  Access::Move(target, copy);
  return *this;
}

Variable& Variable::operator=(std::int32_t value) {
  tarn::StoreInteger(*this, value);
  return *this;
}

Variable& Variable::operator=(std::int64_t value) {
  tarn::StoreInteger(*this, value);
  return *this;
}

Variable& Variable::operator=(float value) {
  tarn::StoreReal(*this, static_cast<double>(value));
  return *this;
}

Variable& Variable::operator=(double value) {
  tarn::StoreReal(*this, value);
  return *this;
}

Variable& Variable::operator=(Variable* target) {
  Variable* end = target == nullptr ? nullptr : &Access::Resolve(*target);
  Access::Release(*this);
  if (end == nullptr || end == this) return *this;
  Payload payload;
  payload.target = end;
  Access::Overwrite(*this, tarn::kReference, payload);
  return *this;
}

Variable& Variable::operator[](std::int64_t index) {
  Variable* elements = tarn::ElementsOfValue(*this);
  if (elements != nullptr && index >= 0 && index < tarn::HeaderOf(elements)->count) {
    return elements[index];
  }
  return tarn::ScratchElement();
}

Variable& Variable::operator()(const char* name) {
  Object* object = GetObject();
  if (object == nullptr || name == nullptr) return tarn::ScratchElement();
  const std::uint16_t nameId = Token::GetNameID(name);
  Variable* member = nameId == tarn::kNoName ? nullptr : object->FindOrCreateMember(nameId);
  return member == nullptr ? tarn::ScratchElement() : *member;
}

Variable::operator char*() const {
  const Variable& value = Access::Resolve(*this);
  const bool hasCharacters = value.typeWord_ == tarn::kText || value.typeWord_ == tarn::kBytes;
  return hasCharacters ? static_cast<char*>(value.payload_.block) : nullptr;
}

std::int64_t Variable::GetDim() const {
  const Variable& value = Access::Resolve(*this);
  if (value.typeWord_ == tarn::kBytes) {
    const auto* bytes = static_cast<const char*>(value.payload_.block);
    return bytes == nullptr ? 0 : tarn::CharacterCount(bytes);
  }
  const Variable* elements = tarn::ElementsOfValue(value);
  return elements == nullptr ? 0 : tarn::HeaderOf(elements)->count;
}

Variable* Variable::GetArray() const { return tarn::ElementsOfValue(*this); }

int Variable::IsInheritFrom(std::uint16_t classId) const {
  const Variable& value = Access::Resolve(*this);
  if (value.typeWord_ == tarn::kArray) return classId == VARCLASS_ARRAY ? 1 : 0;
  const VarClass* scriptClass = value.GetClass();
  return scriptClass == nullptr ? 0 : scriptClass->IsInheritFrom(classId);
}

const VarClass* Variable::GetClass() const {
  const Object* object = GetObject();
  return object == nullptr ? nullptr : &object->Class();
}

Object* Variable::GetObject() const {
  const Variable& value = Access::Resolve(*this);
  return value.IsObject() ? Access::ObjectOf(value) : nullptr;
}

void Variable::SetCppPointer(void* pointer) {
  Access::OverwriteBlock(tarn::MakePlain(*this), tarn::kPointer, pointer);
}

void* Variable::GetCppPointer() const {
  const Variable& value = Access::Resolve(*this);
  if (value.typeWord_ != tarn::kPointer) return nullptr;
  return Access::IsOwner(value) ? Access::Owned(value)->object : value.payload_.block;
}

void Variable::SetOwnedObject(TarnAss* object) {
  // Made first: the value may be what keeps the object's surroundings alive.
  tarn::OwnedObject* owned = object == nullptr ? nullptr : tarn::MakeOwnedObject(object);
  Variable& target = Access::Resolve(*this);
  Access::Release(target);
  if (owned != nullptr) {
    Access::OverwriteOwned(target, owned);
  } else {
    delete object;
  }
}

void VariableAccess::ClearScratchElements() {
  for (Variable& element : tarn::scratch.elements) element.Clear();
}

void VariableAccess::SetText(Variable& value, std::string_view text) {
  char* characters = tarn::AllocateCharacters(static_cast<std::int64_t>(text.size()));
  if (characters != nullptr) std::memcpy(characters, text.data(), text.size());
  Variable& target = tarn::MakePlain(value);
  if (characters == nullptr) {
    OverwriteEmpty(target);
  } else {
    OverwriteBlock(target, tarn::kText, characters);
  }
}

void VariableAccess::SetComplex(Variable& value, tarn::ComplexNumber number) {
  auto* block = static_cast<tarn::ComplexNumber*>(HMALLOC(sizeof(number)));
  if (block != nullptr) *block = number;
  Variable& target = tarn::MakePlain(value);
  if (block == nullptr) {
    OverwriteEmpty(target);
  } else {
    OverwriteBlock(target, tarn::kComplex, block);
  }
}

std::string_view VariableAccess::Text(const Variable& value) {
  const Variable& resolved = Resolve(value);
  const char* characters = resolved;
  if (characters == nullptr) return {};
  return {characters, static_cast<std::size_t>(tarn::CharacterCount(characters))};
}

tarn::ComplexNumber VariableAccess::Complex(const Variable& value) {
  return *static_cast<const tarn::ComplexNumber*>(Resolve(value).payload_.block);
}

Object* VariableAccess::ObjectOf(const Variable& value) {
  return static_cast<Object*>(value.payload_.block);
}
