// Eigen-decomposition of a symmetric matrix by cyclic Jacobi rotations.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

/// Diagonalises the symmetric n x n matrix `a` (row-major; its part above the diagonal is
/// destroyed). On return `values` holds the n eigenvalues (unsorted) and `vectors` the
/// row-major n x n matrix whose column j is the unit eigenvector of values[j]; `*rotations`
/// the count of rotations applied. Returns true when converged within 50 sweeps.
///
/// After 50 sweeps without convergence, when `*rotations` holds exactly 50 the process
/// prints "\nplus de 50 iterations pour diagonaliser la matrice" to stdout and exits with
/// status 1; otherwise the call returns false with the values reached.
/// n < 1 returns true with nothing done; a null pointer (with n >= 1) returns false.
PLUMVALE_EXPORT bool Jacobi(double* a, int n, double* values, double* vectors, int* rotations);
