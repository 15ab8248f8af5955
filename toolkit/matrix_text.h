#ifndef TARN_TOOLKIT_MATRIX_TEXT_H
#define TARN_TOOLKIT_MATRIX_TEXT_H

#include <string>

#include "linear.h"

namespace tarn::toolkit {

/// The matrix as lines of aligned columns, six digits each; of a large one the first ten rows and
/// columns and its shape.
std::string MatrixText(const DenseMatrix& matrix);

}  // namespace tarn::toolkit

#endif
