#ifndef TARN_TESTS_PROBLEMS_NIST_NONLINEAR_H
#define TARN_TESTS_PROBLEMS_NIST_NONLINEAR_H

/// @file
/// Nonlinear regression problems of the NIST Statistical Reference Datasets
/// (https://www.itl.nist.gov/div898/strd): the models as written there, and a reader of the
/// published files, which hold data, two starts, and certified parameters and standard deviations.

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

namespace problems {

/// A model y = f(x; b) of `parameters` parameters. Where `logResponse` is set, it is the logarithm
/// of the response that the model describes.
struct NonlinearModel {
  const char* name;
  int parameters;
  double (*f)(const double* x, const double* b);
  bool logResponse = false;
};

namespace nist {

inline double Wave(double x, double period, double cosine, double sine) {
  const double angle = 2 * std::numbers::pi * x / period;
  return cosine * std::cos(angle) + sine * std::sin(angle);
}

inline double Peak(double x, double height, double centre, double width) {
  return height * std::exp(-(x - centre) * (x - centre) / (width * width));
}

}  // namespace nist

/// The models, from lower to higher difficulty as graded there.
inline const std::vector<NonlinearModel>& NistNonlinearModels() {
  using P = const double*;
  static const std::vector<NonlinearModel> models = {
      {"Misra1a", 2, [](P x, P b) { return b[0] * (1 - std::exp(-b[1] * x[0])); }},
      {"Chwirut2", 3, [](P x, P b) { return std::exp(-b[0] * x[0]) / (b[1] + b[2] * x[0]); }},
      {"Misra1b", 2,
       [](P x, P b) {
         const double u = 1 + b[1] * x[0] / 2;
         return b[0] * (1 - 1 / (u * u));
       }},
      {"DanWood", 2, [](P x, P b) { return b[0] * std::pow(x[0], b[1]); }},
      {"Gauss1", 8,
       [](P x, P b) {
         return b[0] * std::exp(-b[1] * x[0]) + nist::Peak(x[0], b[2], b[3], b[4]) +
                nist::Peak(x[0], b[5], b[6], b[7]);
       }},
      {"Kirby2", 5,
       [](P x, P b) {
         return (b[0] + x[0] * (b[1] + x[0] * b[2])) / (1 + x[0] * (b[3] + x[0] * b[4]));
       }},
      {"Hahn1", 7,
       [](P x, P b) {
         return (b[0] + x[0] * (b[1] + x[0] * (b[2] + x[0] * b[3]))) /
                (1 + x[0] * (b[4] + x[0] * (b[5] + x[0] * b[6])));
       }},
      {"Nelson", 3, [](P x, P b) { return b[0] - b[1] * x[0] * std::exp(-b[2] * x[1]); }, true},
      {"MGH17", 5,
       [](P x, P b) {
         return b[0] + b[1] * std::exp(-x[0] * b[3]) + b[2] * std::exp(-x[0] * b[4]);
       }},
      {"Misra1c", 2, [](P x, P b) { return b[0] * (1 - 1 / std::sqrt(1 + 2 * b[1] * x[0])); }},
      {"Roszman1", 4,
       [](P x, P b) {
         return b[0] - b[1] * x[0] - std::atan(b[2] / (x[0] - b[3])) / std::numbers::pi;
       }},
      {"ENSO", 9, [](P x, P b) {
         return b[0] + nist::Wave(x[0], 12, b[1], b[2]) + nist::Wave(x[0], b[3], b[4], b[5]) +
                nist::Wave(x[0], b[6], b[7], b[8]);
       }}};
  return models;
}

/// A published file.
struct NonlinearData {
  std::vector<double> starts[2];
  std::vector<double> certified;
  std::vector<double> deviations;  ///< certified standard deviations of the parameters
  std::vector<double> y;
  std::vector<std::vector<double>> x;

  int Parameters() const { return static_cast<int>(certified.size()); }
  int Points() const { return static_cast<int>(y.size()); }
};

/// Reads a file of the published form; no points when it is not there.
inline NonlinearData ReadNonlinearData(const std::string& path, bool logResponse) {
  NonlinearData data;
  std::ifstream file(path);
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    const auto equals = line.find('=');
    if (number > 40 && number <= 60 && equals != std::string::npos) {
      std::istringstream row(line.substr(equals + 1));
      double values[4] = {};
      if (!(row >> values[0] >> values[1] >> values[2] >> values[3])) continue;
      data.starts[0].push_back(values[0]);
      data.starts[1].push_back(values[1]);
      data.certified.push_back(values[2]);
      data.deviations.push_back(values[3]);
    } else if (number > 60) {
      std::istringstream row(line);
      double y = 0;
      if (!(row >> y)) continue;
      data.y.push_back(logResponse ? std::log(y) : y);
      data.x.emplace_back();
      for (double value = 0; row >> value;) data.x.back().push_back(value);
    }
  }
  return data;
}

/// A box that knows nothing of the answer: up to ten times the larger start of each parameter, on
/// both sides of 0.
inline std::vector<double> WideBox(const NonlinearData& data) {
  std::vector<double> bounds;
  for (std::size_t k = 0; k < data.certified.size(); ++k) {
    const double reach = 10 * std::max(std::fabs(data.starts[0][k]), std::fabs(data.starts[1][k]));
    bounds.insert(bounds.end(), {-reach, reach});
  }
  return bounds;
}

inline double ResidualSumOfSquares(const NonlinearModel& model, const NonlinearData& data,
                                   const double* b) {
  double sum = 0;
  for (std::size_t i = 0; i < data.y.size(); ++i) {
    const double r = data.y[i] - model.f(data.x[i].data(), b);
    sum += r * r;
  }
  return sum;
}

}  // namespace problems

#endif
