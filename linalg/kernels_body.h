// The kernels of one instruction set. Included by one source file per set, which is compiled for
// that set and defines before the inclusion
//   TARN_KERNEL_BYTES    width of a vector register in bytes
//   TARN_KERNEL_ROWS     rows and
//   TARN_KERNEL_VECTORS  vectors per row of the tile that a product keeps in registers
//   TARN_KERNEL_DEPTH    inner indices per packed panel
//   TARN_KERNEL_GROUPS   groups of rows that a sum over rows keeps going side by side
//   TARN_KERNEL_CHOLESKY_VECTORS
//                        vectors of rows of a Cholesky factor that are computed side by side
//
// Everything here has internal linkage and calls no function of another header: code compiled for a
// wide instruction set must never become the one copy that other files link to.

#ifndef TARN_LINALG_KERNELS_BODY_H
#define TARN_LINALG_KERNELS_BODY_H

#include "linalg/kernels_cholesky_body.h"
#include "linalg/kernels_columns_body.h"
#include "linalg/kernels_elementwise_body.h"
#include "linalg/kernels_product_body.h"
#include "linalg/kernels_rotation_body.h"
#include "linalg/kernels_rows_body.h"
#include "linalg/kernels_solve_body.h"

namespace tarn {
namespace {

template <class Element>
constexpr KernelTable<Element> kTableOfThisSet = {
    .setProduct = SetProduct<Element>,
    .addProduct = AddProduct<Element>,
    .subtractProduct = SubtractProduct<Element>,
    .addRowProducts = AddRowProducts<Element>,
    .addRowSquares = AddRowSquares<Element>,
    .sumColumnProducts = SumColumnProducts<Element>,
    .addOuterProduct = AddOuterProduct<Element>,
    .rotateChain = RotateChain<Element>,
    .rotateTwoChains = RotateTwoChains<Element>,
    .transpose = Transpose<Element>,
    .eliminatePanel = EliminatePanel<Element>,
    .solveUnitLower = SolveUnitLower<Element>,
    .solveUpper = SolveUpper<Element>,
    .choleskyRows = kCholeskyRows<Element>,
    .factorizeCholeskyRows = FactorizeCholeskyRows<Element>,
    .scale = Scale<Element>,
    .shift = Shift<Element>,
    .add = Add<Element>,
    .subtract = Subtract<Element>,
    .multiply = Multiply<Element>,
    .divide = Divide<Element>,
    .addScaled = AddScaled<Element>,
    .largest = Largest<Element>,
    .smallest = Smallest<Element>,
    .largestMagnitude = LargestMagnitude<Element>};

}  // namespace
}  // namespace tarn

#endif
