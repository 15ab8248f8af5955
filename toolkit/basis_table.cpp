#include "basis_table.h"

#include <algorithm>
#include <cmath>

namespace tarn::toolkit {
namespace {

/// What must be left of a function beside those before it, as a share: less is rounding.
constexpr double kLeastShare = 1e-13;

/// Squared weights of the points, the largest of them 1.
Numbers WeightsOf(const Numbers& variances) {
  const double least = *std::min_element(variances.begin(), variances.end());
  Numbers weights;
  for (const double variance : variances) weights.push_back(least / variance);
  return weights;
}

[[noreturn]] void RefuseDependent(std::size_t term) {
  const std::string name = "basis[" + std::to_string(term + 1) + ']';
  const std::string what =
      term == 0 ? " is 0 at all points" : " is a combination of the functions before it";
  throw Fault(kErrorSingular, name + what + (term == 0 ? "" : " at these points"));
}

}  // namespace

double BasisTable::Product(std::size_t a, std::size_t b, const Numbers& weights) const {
  double sum = 0.0;
  for (std::size_t i = 0; i < points_; ++i) sum += At(a, i) * At(b, i) * weights[i];
  return sum;
}

double BasisTable::Norm(std::size_t term, const Numbers& weights) const {
  return std::sqrt(Product(term, term, weights));
}

double BasisTable::Largest(std::size_t term) const {
  double largest = 0.0;
  for (std::size_t i = 0; i < points_; ++i) largest = std::max(largest, std::fabs(At(term, i)));
  return largest;
}

void BasisTable::Divide(std::size_t term, double divisor) {
  for (std::size_t i = 0; i < points_; ++i) At(term, i) /= divisor;
}

/// Takes the parts along the functions before it out of a function: twice, since the first time
/// leaves rounding errors of the size of what was taken out.
void BasisTable::Reduce(std::size_t term, const Numbers& weights) {
  for (int pass = 0; pass < 2; ++pass) {
    for (std::size_t j = 0; j < term; ++j) {
      const double part = Product(j, term, weights);
      Factor(j, term) += part;
      for (std::size_t i = 0; i < points_; ++i) At(term, i) -= part * At(j, i);
    }
  }
}

/// Modified Gram-Schmidt, each function divided by its largest value first so that no square
/// overflows, and the weights by the largest of them; `factors_` gets both back at the end.
void BasisTable::Orthonormalise(const Numbers& variances) {
  const Numbers weights = WeightsOf(variances);
  const Numbers ones(points_, 1.0);
  Numbers scales;
  for (std::size_t term = 0; term < terms_; ++term) {
    scales.push_back(Largest(term));
    if (scales[term] == 0.0) RefuseDependent(term);
    Divide(term, scales[term]);
    const double weightedNorm = Norm(term, weights);
    const double plainNorm = Norm(term, ones);
    Reduce(term, weights);
    const double left = Norm(term, weights);
    if (!(left > kLeastShare * weightedNorm)) RefuseDependent(term);
    Factor(term, term) = left;
    Divide(term, left);
    weightedLogGain_ += std::log(weightedNorm / left);
    plainLogGain_ += std::log(plainNorm / Norm(term, ones) / left);
  }
  const double deviation = std::sqrt(*std::min_element(variances.begin(), variances.end()));
  for (std::size_t term = 0; term < terms_; ++term) {
    for (std::size_t j = 0; j <= term; ++j) Factor(j, term) *= scales[term] / deviation;
    for (std::size_t i = 0; i < points_; ++i) At(term, i) *= deviation;
  }
}

Numbers BasisTable::Restored(Numbers coefficients) const {
  for (std::size_t row = terms_; row-- > 0;) {
    for (std::size_t term = row + 1; term < terms_; ++term) {
      coefficients[row] -= Factor(row, term) * coefficients[term];
    }
    coefficients[row] /= Factor(row, row);
  }
  return coefficients;
}

std::unique_ptr<DenseMatrix> BasisTable::Restored(const DenseMatrix& covariance) const {
  const int terms = static_cast<int>(terms_);
  auto restored = MakeMatrix(terms, terms);
  Numbers line(terms_);
  for (int j = 0; j < terms; ++j) {
    for (int i = 0; i < terms; ++i) line[static_cast<std::size_t>(i)] = covariance(i, j);
    restored->SetColumn(Restored(line).data(), j);
  }
  for (int i = 0; i < terms; ++i) {
    const double* row = (*restored)[i];
    restored->SetRow(Restored(Numbers(row, row + terms_)).data(), i);
  }
  return restored;
}

}  // namespace tarn::toolkit
