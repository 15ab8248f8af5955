#define Eigen EigenNative
#define TARN_EIGEN_PEER kEigenNative
#define TARN_EIGEN_NAME "eigen native"
#define TARN_EIGEN_JACOBI kEigenNativeJacobi
#include "eigen_peer_body.h"
