#include "linalg/vector_set.h"

#include <algorithm>
#include <new>

#include "frame/host.h"
#include "linalg/element_storage.h"

namespace {

/// `n` empty vectors; null when `n` is negative or they are refused.
T_MatVectorCol<double>* NewVectors(std::int64_t n) {
  if (n < 0 || !tarn::FitsDimension(n)) return nullptr;
  return new (std::nothrow) T_MatVectorCol<double>[static_cast<std::size_t>(n)];
}

/// Length of the vectors made from a host array of arrays; one that no vector can have gives -1.
int VectorLength(Variable& v) {
  const std::int64_t first = v.GetDim() > 0 ? v[0].GetDim() : 0;
  return tarn::FitsDimension(first) ? static_cast<int>(std::max<std::int64_t>(first, 1)) : -1;
}

void FillVector(T_MatVectorCol<double>& vector, const Variable& row) {
  const Variable* const numbers = row.GetArray();
  if (numbers == nullptr) return;
  const std::int64_t length = std::min<std::int64_t>(vector.Dim(), row.GetDim());
  for (int j = 0; j < length; ++j) vector[j] = numbers[j].GetDoubleNumb();
}

}  // namespace

MatVectorColSet::MatVectorColSet(int n) : items(NewVectors(n)), count(items != nullptr ? n : 0) {}

MatVectorColSet::MatVectorColSet(Variable& v) : items(nullptr), count(0) {
  const std::int64_t rows = std::max<std::int64_t>(v.GetDim(), 1);
  if (!tarn::FitsDimension(rows)) return;
  count = static_cast<std::int32_t>(rows);
  items = NewVectors(rows);
  if (items == nullptr) return;
  const int length = VectorLength(v);
  for (int i = count - 1; i >= 0; --i) items[i].SetDim(length);
  for (int i = 0; i < v.GetDim(); ++i) FillVector(items[i], v[i]);
}

MatVectorColSet::MatVectorColSet(const MatVectorColSet& other)
    : items(NewVectors(other.count)), count(other.count) {
  CopyVectors(other);
}

MatVectorColSet::~MatVectorColSet() { delete[] items; }

MatVectorColSet& MatVectorColSet::operator=(const MatVectorColSet& other) {
  if (this == &other) return *this;
  if (count != other.count) {
    delete[] items;
    items = NewVectors(other.count);
    if (items != nullptr) count = other.count;
  }
  CopyVectors(other);
  return *this;
}

void MatVectorColSet::CopyVectors(const MatVectorColSet& other) {
  if (items == nullptr || other.items == nullptr) return;
  for (int i = 0; i < count; ++i) items[i] = other.items[i];
}
