#ifndef TARN_LINALG_FORWARD_H
#define TARN_LINALG_FORWARD_H

/// @file
/// Names of the class templates of vectors and matrices, which refer to each other. The visibility
/// of a template is that of its first declaration.

#include "frame/export.h"

template <class Element>
class TARN_API T_Matrix;
template <class Element>
class TARN_API T_MatVector;
template <class Element>
class TARN_API T_MatVectorCol;
template <class Element>
class TARN_API T_MatVectorRow;

#endif
