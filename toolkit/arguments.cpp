#include "arguments.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "results.h"

namespace tarn::toolkit {
namespace {

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  if (text.size() > kLongest) return '"' + std::string(text.substr(0, kLongest)) + "...\"";
  return '"' + std::string(text) + '"';
}

std::string Listed(Names names) {
  std::string list;
  for (const std::string_view name : names) {
    if (!list.empty()) list += ", ";
    list += Quoted(name);
  }
  return list;
}

/// `; did you mean "..."?`, or the whole list where nothing resembles the word.
std::string Suggestion(std::string_view word, Names names) {
  if (const auto nearest = NearestName(word, names)) {
    return "; did you mean " + Quoted(*nearest) + "?";
  }
  return "; known are " + Listed(names);
}

/// What a value is, in words.
std::string KindText(const Variable& value) {
  if (std::strcmp(value.KindName(), "Options") != 0) return value.KindName();
  return value.GetMemberName(0) == nullptr ? "an empty table" : "a table with names";
}

bool IsEmpty(const Variable& value) { return std::strcmp(value.KindName(), "nothing") == 0; }

}  // namespace

std::string NumberText(double number) {
  if (std::isnan(number)) return "nan";
  char text[32];
  std::snprintf(text, sizeof(text), "%.15g", number);
  return text;
}

std::string CountText(std::int64_t count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

// Kinds -------------------------------------------------------------------------------------------

void Input::Refuse(const std::string& what) const { toolkit::Refuse(name_ + ' ' + what); }

void Input::RefuseKind(const std::string& wanted) const {
  const std::string got = IsNumber() ? NumberText(value_->GetDoubleNumb()) : KindText(*value_);
  Refuse("must be " + wanted + ", got " + got);
}

bool Input::IsOfKind(const char* kind) const { return std::strcmp(value_->KindName(), kind) == 0; }

bool Input::IsArray() const {
  return value_->IsInheritFrom(VARCLASS_ARRAY) != 0 || value_->IsInheritFrom(VARCLASS_VECTOR) != 0;
}

// Numbers -----------------------------------------------------------------------------------------

double Input::Number() const {
  if (!IsNumber()) RefuseKind("a number");
  return value_->GetDoubleNumb();
}

double Input::FiniteNumber() const {
  const double number = Number();
  if (!std::isfinite(number)) RefuseKind("a finite number");
  return number;
}

double Input::PositiveNumber() const {
  const double number = FiniteNumber();
  if (!(number > 0.0)) RefuseKind("above 0");
  return number;
}

int Input::Integer(int lowest, int highest) const {
  const double number = Number();
  if (number == std::trunc(number) && number >= lowest && number <= highest) {
    return static_cast<int>(number);
  }
  const std::string range = highest == std::numeric_limits<int>::max()
                                ? "from " + std::to_string(lowest) + " on"
                                : std::to_string(lowest) + " to " + std::to_string(highest);
  RefuseKind("a whole number " + range);
}

bool Input::Flag() const {
  const double number = IsNumber() ? value_->GetDoubleNumb() : -1.0;
  if (number != 0.0 && number != 1.0) RefuseKind("true or false");
  return number != 0.0;
}

// Texts and functions -----------------------------------------------------------------------------

std::string Input::Text() const {
  if (!IsText()) RefuseKind("a text");
  const char* text = *value_;
  return text == nullptr ? "" : text;
}

Variable& Input::Function() const {
  if (!IsFunction()) RefuseKind("a function");
  return *value_;
}

int Input::Choice(Names names) const {
  const std::string text = Text();
  int place = 0;
  for (const std::string_view name : names) {
    if (text == name) return place;
    ++place;
  }
  Refuse("has the unknown value " + Quoted(text) + Suggestion(text, names));
}

// Arrays ------------------------------------------------------------------------------------------

int Input::Length(int fewest) const {
  if (!IsArray()) RefuseKind("an array");
  const std::int64_t length = value_->GetDim();
  if (length > std::numeric_limits<int>::max()) {
    Refuse("has " + std::to_string(length) + " elements, more than can be worked on");
  }
  if (length < fewest) {
    Refuse("must have at least " + CountText(fewest, "element") + ", has " +
           std::to_string(length));
  }
  return static_cast<int>(length);
}

Input Input::Element(int index) const {
  return {(*value_)[index], name_ + '[' + std::to_string(index + 1) + ']'};
}

Numbers Input::Array(int fewest) const {
  const int length = Length(fewest);
  Numbers numbers(static_cast<std::size_t>(length));
  const Variable* elements = value_->GetArray();
  for (int i = 0; i < length; ++i) {
    if (elements[i].IsNumber() == 0) Element(i).RefuseKind("a number");
    numbers[static_cast<std::size_t>(i)] = elements[i].GetDoubleNumb();
  }
  return numbers;
}

Numbers Input::FiniteArray(int fewest) const {
  Numbers numbers = Array(fewest);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!std::isfinite(numbers[i])) Element(static_cast<int>(i)).RefuseKind("a finite number");
  }
  return numbers;
}

void Input::CheckLength(std::size_t count, const std::string& like) const {
  const auto length = static_cast<std::size_t>(Length());
  if (length == count) return;
  Refuse("has " + CountText(static_cast<std::int64_t>(length), "element") + ", but " + like +
         " has " + std::to_string(count));
}

Numbers Input::ArrayOfLength(std::size_t count, const std::string& like) const {
  CheckLength(count, like);
  return Array();
}

void Input::ReadBound(Numbers& bounds) const {
  if (!IsArray() || value_->GetDim() != 2) Refuse("must be a pair {lower, upper}");
  const double lower = Element(0).FiniteNumber();
  const double upper = Element(1).FiniteNumber();
  if (upper < lower) {
    Refuse("has upper " + NumberText(upper) + " below lower " + NumberText(lower));
  }
  if (!std::isfinite(upper - lower)) {
    Refuse("is too wide, from " + NumberText(lower) + " to " + NumberText(upper));
  }
  bounds.push_back(lower);
  bounds.push_back(upper);
}

Numbers Input::Bounds() const {
  const int length = Length(1);
  Numbers bounds;
  for (int i = 0; i < length; ++i) Element(i).ReadBound(bounds);
  return bounds;
}

// Options -----------------------------------------------------------------------------------------

Options::Options(Variable& value, Names known, std::string place)
    : value_(&value), place_(std::move(place)) {
  if (IsEmpty(value)) return;
  const std::string where = place_.empty() ? "" : place_ + ": ";
  if (value.GetObject() == nullptr || value.GetDim() > 0) {
    toolkit::Refuse(where + "options need names, as in {" + std::string(*known.begin()) +
                    " = ...}");
  }
  const char* name = value.GetMemberName(0);
  for (std::int64_t i = 1; name != nullptr; name = value.GetMemberName(i++)) {
    bool isKnown = false;
    for (const std::string_view candidate : known) isKnown = isKnown || candidate == name;
    if (!isKnown) {
      toolkit::Refuse(where + "unknown option " + Quoted(name) + Suggestion(name, known));
    }
  }
}

std::string Options::NameOf(const char* name) const {
  return place_.empty() ? name : place_ + '.' + name;
}

bool Options::Has(const char* name) const {
  return HasMember(*value_, name) && !IsEmpty((*value_)(name));
}

Input Options::Required(const char* name) const {
  if (!Has(name)) toolkit::Refuse(NameOf(name) + " is missing");
  return {(*value_)(name), NameOf(name)};
}

std::optional<Input> Options::Find(const char* name) const {
  if (!Has(name)) return std::nullopt;
  return Required(name);
}

int Options::Integer(const char* name, int otherwise, int lowest, int highest) const {
  const auto found = Find(name);
  return found ? found->Integer(lowest, highest) : otherwise;
}

bool Options::Flag(const char* name, bool otherwise) const {
  const auto found = Find(name);
  return found ? found->Flag() : otherwise;
}

int Options::Choice(const char* name, int otherwise, Names names) const {
  const auto found = Find(name);
  return found ? found->Choice(names) : otherwise;
}

double Options::PositiveNumber(const char* name, double otherwise) const {
  const auto found = Find(name);
  return found ? found->PositiveNumber() : otherwise;
}

}  // namespace tarn::toolkit
