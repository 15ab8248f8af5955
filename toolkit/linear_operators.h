#ifndef TARN_TOOLKIT_LINEAR_OPERATORS_H
#define TARN_TOOLKIT_LINEAR_OPERATORS_H

#include "handler.h"

namespace tarn::toolkit {

// The operators of vectors and matrices, for the rows of both: the interpreter calls those of
// whichever operand has some. Operands are numbers, vectors (arrays of numbers count as such) and
// matrices.
void AddOperands(const Call& call);
void SubtractOperands(const Call& call);
void MultiplyOperands(const Call& call);
void DivideOperands(const Call& call);
void NegateOperand(const Call& call);

}  // namespace tarn::toolkit

#endif
