#include "optim/climb.h"

#include "optim/climb_coord_impl.h"
#include "optim/climb_derivatives_impl.h"
#include "optim/climb_evaluate_impl.h"
#include "optim/climb_hessian_impl.h"
#include "optim/climb_line_search_impl.h"
#include "optim/climb_powell_impl.h"
#include "optim/climb_progress_impl.h"
#include "optim/climb_quasi_newton_impl.h"
#include "optim/climb_setup_impl.h"

template class T_Climb<float>;
template class T_Climb<double>;
