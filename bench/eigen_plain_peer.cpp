#define Eigen EigenPlain
#define TARN_EIGEN_PEER kEigenPlain
#define TARN_EIGEN_NAME "eigen"
#define TARN_EIGEN_JACOBI kEigenPlainJacobi
#include "eigen_peer_body.h"
