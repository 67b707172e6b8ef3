// Matrix4x4 inverse by Crout LU decomposition with implicit (scaled) partial pivoting.
#include <PlumvaleBaseCore/math/Matrix4x4.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Math {

namespace {

// The double machine epsilon: a smaller pivot magnitude means the matrix is singular.
constexpr double kTinyPivot = 2.220446049250313e-16;

// Two lanes of a row (GCC/Clang vector extension: one SSE2 register on x86-64, plain
// scalar code elsewhere). A matrix row is a pair of them: lanes 0-1 and 2-3.
typedef double Pair __attribute__((vector_size(16)));

struct Lanes {
    Pair lo, hi;
};

// Every array below is indexed only by constants once the loops are unrolled, so the whole
// decomposition stays in registers.
struct Factors {
    Lanes row[4];       // U on and right of the diagonal; the lanes left of it are scratch
    double lower[4][4]; // L below the diagonal (its unit diagonal is implied)
    int perm[4];
    double scale[4];
    double invPivot[4];
};

// Lane j of a row; j is a constant wherever it is called once the loops are unrolled.
double lane(const Lanes& r, int j) {
    return j < 2 ? r.lo[j] : r.hi[j - 2];
}

// Loads the rows of the column-major matrix and their implicit scales; false when a row is
// all zero.
[[gnu::always_inline]] inline bool load(const double* m, Factors& f) {
    double big[4];
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) {
        f.row[r].lo = Pair{m[r], m[r + 4]};
        f.row[r].hi = Pair{m[r + 8], m[r + 12]};
        f.perm[r] = r;
        big[r] = std::max(std::max(std::fabs(m[r]), std::fabs(m[r + 4])),
                          std::max(std::fabs(m[r + 8]), std::fabs(m[r + 12])));
    }
    if (big[0] == 0 || big[1] == 0 || big[2] == 0 || big[3] == 0) return false;
    // Two rows per division: the divider is the scarcest unit here.
    const Pair one = {1, 1};
    const Pair s01 = one / Pair{big[0], big[1]};
    const Pair s23 = one / Pair{big[2], big[3]};
    f.scale[0] = s01[0];
    f.scale[1] = s01[1];
    f.scale[2] = s23[0];
    f.scale[3] = s23[1];
    return true;
}

// Moves row I to position J (and J to I) when I is the pivot; the recursion keeps every index
// a constant.
template <int J, int I>
void exchange(Factors& f, int pivot) {
    if constexpr (I < 4) {
        if (pivot == I) {
            std::swap(f.row[I], f.row[J]);
            for (int k = 0; k < J; ++k)
                std::swap(f.lower[I][k], f.lower[J][k]);
            std::swap(f.perm[I], f.perm[J]);
            std::swap(f.scale[I], f.scale[J]);
            return;
        }
        exchange<J, I + 1>(f, pivot);
    }
}

// One column step of the decomposition below.
template <int J>
[[gnu::always_inline]] inline bool eliminate(Factors& f) {
    double big = -1;
    int pivot = J;
#pragma GCC unroll 4
    for (int i = J; i < 4; ++i) {
        const double weighted = f.scale[i] * std::fabs(lane(f.row[i], J));
        // A later row wins a tie.
        if (weighted >= big) {
            big = weighted;
            pivot = i;
        }
    }
    // Transforms, the usual input, keep their pivots on the diagonal, so this branch is
    // almost always predicted.
    if (pivot != J) exchange<J, J + 1>(f, pivot);
    const double p = lane(f.row[J], J);
    if (std::fabs(p) < kTinyPivot) return false;
    f.invPivot[J] = 1.0 / p;
    // The multipliers go to L; the rows below subtract the whole pivot row, whose lanes left
    // of the diagonal only spoil scratch lanes. Without masks or blends nothing but a
    // multiplication and a subtraction stands between one pivot and the next.
    const Lanes upper = f.row[J];
#pragma GCC unroll 4
    for (int i = J + 1; i < 4; ++i) {
        const double l = lane(f.row[i], J) * f.invPivot[J];
        f.lower[i][J] = l;
        const Pair ls = {l, l};
        if constexpr (J == 0) f.row[i].lo -= ls * upper.lo; // lanes 0 and 1 are scratch later
        f.row[i].hi -= ls * upper.hi;
    }
    return true;
}

// Crout decomposition with implicit pivoting: L (unit diagonal) and U, rows exchanged as the
// pivots demand, so that row i of the factors is row perm[i] of the input. Returns false where
// the decomposition raises Singularity.
//
// The updates are applied column after column to whole rows below the pivot instead of being
// gathered as dot products: every entry still receives the same subtractions in the same
// order, so the factors are the classic left-looking ones bit for bit.
[[gnu::always_inline]] inline bool decompose(const double* m, Factors& f) {
    return load(m, f) && eliminate<0>(f) && eliminate<1>(f) && eliminate<2>(f) && eliminate<3>(f);
}

} // namespace

void Matrix4x4::inverse() {
    if (m_identity) return;
    Factors f;
    if (!decompose(m, f)) throw Singularity();
    // Solve L U Y = I for the four columns at once, a row of Y at a time: forward with L,
    // then back with U. Then X = Y P: column i of Y is column perm[i] of the inverse. Every
    // column is solved on its own, so this gives the same bits as solving against P.
    Lanes x[4] = {{Pair{1, 0}, Pair{0, 0}},
                  {Pair{0, 1}, Pair{0, 0}},
                  {Pair{0, 0}, Pair{1, 0}},
                  {Pair{0, 0}, Pair{0, 1}}};
#pragma GCC unroll 4
    for (int i = 1; i < 4; ++i) {
#pragma GCC unroll 4
        for (int j = 0; j < i; ++j) {
            const double l = f.lower[i][j];
            x[i].lo -= Pair{l, l} * x[j].lo;
            x[i].hi -= Pair{l, l} * x[j].hi;
        }
    }
    // Back with U, a row of Y at a time. Each row is divided by its pivot before the terms of
    // the rows below are taken off (with those terms divided by it too), so that the only
    // division on the path from the last pivot is the first one; the nearest row is taken
    // last for the same reason.
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
        x[i].lo *= Pair{f.invPivot[i], f.invPivot[i]};
        x[i].hi *= Pair{f.invPivot[i], f.invPivot[i]};
    }
#pragma GCC unroll 4
    for (int i = 2; i >= 0; --i) {
#pragma GCC unroll 4
        for (int j = 3; j > i; --j) {
            const double u = lane(f.row[i], j) * f.invPivot[i];
            x[i].lo -= Pair{u, u} * x[j].lo;
            x[i].hi -= Pair{u, u} * x[j].hi;
        }
    }
    double y[16];
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) {
        y[4 * r] = x[r].lo[0];
        y[4 * r + 1] = x[r].lo[1];
        y[4 * r + 2] = x[r].hi[0];
        y[4 * r + 3] = x[r].hi[1];
    }
#pragma GCC unroll 4
    for (int c = 0; c < 4; ++c) {
        double* column = m + 4 * f.perm[c];
#pragma GCC unroll 4
        for (int r = 0; r < 4; ++r)
            column[r] = y[4 * r + c];
    }
}

bool Matrix4x4::isSingular() const {
    if (m_identity) return false;
    Factors f;
    return !decompose(m, f);
}

} // namespace Math
