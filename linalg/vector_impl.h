#ifndef TARN_LINALG_VECTOR_IMPL_H
#define TARN_LINALG_VECTOR_IMPL_H

/// @file
/// Construction, size, filling and host conversion of `T_MatVector`.

#include <algorithm>
#include <cstring>

#include "frame/host.h"
#include "linalg/element_storage.h"
#include "linalg/vector.h"

template <class Element>
Element T_MatVector<Element>::Dump = 0;

// Storage -----------------------------------------------------------------------------------------

template <class Element>
void T_MatVector<Element>::FreeOwned() {
  if (owns_data != 0) delete[] data;
}

/// Replaces the storage by `n` elements of array new; null is what is left of a refused request.
template <class Element>
void T_MatVector<Element>::Adopt(Element* storage, std::int64_t n) {
  FreeOwned();
  data = storage;
  dim = storage != nullptr ? static_cast<std::int32_t>(n) : 0;
  owns_data = 1;
}

/// The source may lie in the present storage, so that is freed last.
template <class Element>
void T_MatVector<Element>::ReplaceByCopy(const Element* p, std::int64_t n) {
  if (n == dim) {
    tarn::CopyElements(data, p, n);
  } else {
    Adopt(n > 0 ? tarn::NewElementCopy(p, n) : nullptr, n);
  }
}

template <class Element>
template <class Source>
void T_MatVector<Element>::ReplaceByConversion(const Source* p, int n) {
  if (n <= 0) return;
  Adopt(tarn::NewZeroElements<Element>(n), n);
  if (p == nullptr) return;
  for (int i = 0; i < dim; ++i) data[i] = static_cast<Element>(p[i]);
}

// Construction ------------------------------------------------------------------------------------

template <class Element>
T_MatVector<Element>::T_MatVector() : dim(0), data(nullptr), owns_data(1) {}

template <class Element>
T_MatVector<Element>::T_MatVector(int n) : T_MatVector() {
  SetDim(n);
}

template <class Element>
T_MatVector<Element>::T_MatVector(const T_MatVector& other) : T_MatVector() {
  ReplaceByCopy(other.data, other.dim);
}

template <class Element>
T_MatVector<Element>::T_MatVector(const Element* p, int n) : T_MatVector() {
  ReplaceByCopy(p, n);
}

template <class Element>
T_MatVector<Element>::T_MatVector(Element* p, int n, int wrap) : T_MatVector() {
  if (wrap != 0) {
    SetDim(n, p);
  } else {
    ReplaceByCopy(p, n);
  }
}

template <class Element>
T_MatVector<Element>::T_MatVector(const int* p, int n) : T_MatVector() {
  ReplaceByConversion(p, n);
}

template <class Element>
T_MatVector<Element>::T_MatVector(const OtherElement* p, int n) : T_MatVector() {
  ReplaceByConversion(p, n);
}

template <class Element>
T_MatVector<Element>::~T_MatVector() {
  FreeOwned();
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator=(const T_MatVector& other) {
  if (this != &other) ReplaceByCopy(other.data, other.dim);
  return *this;
}

// Size, filling and comparison --------------------------------------------------------------------

template <class Element>
void T_MatVector<Element>::SetDim(int n) {
  if (n == dim && n != 0) return;
  if (n == 0) return Adopt(nullptr, 0);
  Element* const resized = tarn::NewZeroElements<Element>(n);
  if (resized == nullptr) return;
  tarn::CopyElements(resized, data, std::min(n, dim));
  Adopt(resized, n);
}

template <class Element>
void T_MatVector<Element>::SetDim(int n, Element* p) {
  if (owns_data != 0 && tarn::PointsInto(data, dim, p)) return SetDim(n);
  const int count = p != nullptr ? std::max(n, 0) : 0;
  tarn::CopyElements(p, data, std::min(count, dim));
  FreeOwned();
  data = p;
  dim = count;
  owns_data = 0;
}

template <class Element>
void T_MatVector<Element>::Set(Element value) {
  tarn::FillElements(data, value, dim);
}

template <class Element>
void T_MatVector<Element>::Set(const Element* p, int n) {
  ReplaceByCopy(p, n);
}

template <class Element>
void T_MatVector<Element>::Clear() {
  tarn::ClearElements(data, dim);
}

template <class Element>
void T_MatVector<Element>::Reset() {
  FreeOwned();
  data = nullptr;
  dim = 0;
}

template <class Element>
int T_MatVector<Element>::operator==(const T_MatVector& b) const {
  if (dim != b.dim) return 0;
  if (dim == 0) return 1;
  return std::memcmp(data, b.data, static_cast<std::size_t>(dim) * sizeof(Element)) == 0 ? 1 : 0;
}

// Host conversion ---------------------------------------------------------------------------------

/// Storage for `n` numbers of a host array and the spare element behind them.
template <class Element>
void T_MatVector<Element>::AdoptForHost(std::int64_t n) {
  Adopt(tarn::FitsDimension(n) ? tarn::NewElements<Element>(n + 1) : nullptr, n);
}

template <class Element>
void T_MatVector<Element>::FillFromHost(const Variable& v) {
  const Variable* const numbers = v.GetArray();
  if (numbers == nullptr) return Clear();
  for (int i = 0; i < dim; ++i) data[i] = tarn::HostNumber<Element>(numbers[i]);
}

template <class Element>
T_MatVector<Element>::T_MatVector(Variable& v) : T_MatVector() {
  AdoptForHost(std::max<std::int64_t>(v.GetDim(), 0));
  FillFromHost(v);
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator=(Variable& v) {
  const std::int64_t n = std::max<std::int64_t>(v.GetDim(), 0);
  if (n != dim) AdoptForHost(n);
  FillFromHost(v);
  return *this;
}

template <class Element>
void T_MatVector<Element>::FillHostArray(Variable& v) const {
  Variable* const target = v.GetArray();
  if (target == nullptr) return;
  const std::int64_t count = std::min<std::int64_t>(dim, v.GetDim());
  for (std::int64_t i = 0; i < count; ++i) target[i] = data[i];
}

template <class Element>
void T_MatVector<Element>::ExportToMVector(Variable& v) const {
  Processor* const processor = GetOwner();
  if (processor == nullptr) return;
  VarRegister dimension;
  dimension = static_cast<int>(dim);
  processor->MakeInstance(v, "MVector", &dimension, 1);
  FillHostArray(v);
}

template <class Element>
void T_MatVector<Element>::ExportToVector(Variable& v) const {
  v.Init(VARTYPE_ARRAY, dim);
  FillHostArray(v);
}

#endif
