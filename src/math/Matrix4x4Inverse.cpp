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
typedef long long PairMask __attribute__((vector_size(16)));

struct Rows {
    Pair lo[4];
    Pair hi[4];
};

Pair select(PairMask mask, Pair yes, Pair no) {
    return reinterpret_cast<Pair>((reinterpret_cast<PairMask>(yes) & mask) |
                                  (reinterpret_cast<PairMask>(no) & ~mask));
}

constexpr long long laneIf(bool b) {
    return b ? -1 : 0;
}

// Loads the rows of the column-major matrix.
void load(const double* m, Rows& a) {
    for (int r = 0; r < 4; ++r) {
        a.lo[r] = Pair{m[r], m[r + 4]};
        a.hi[r] = Pair{m[r + 8], m[r + 12]};
    }
}

double lane(const Rows& a, int row, int j) {
    return j < 2 ? a.lo[row][j] : a.hi[row][j - 2];
}

// One column step of the decomposition below; J is a template argument so that every loop
// has constant bounds and unrolls completely.
template <int J>
bool eliminate(Rows& a, int perm[4], double scale[4], double invPivot[4]) {
    double big = -1;
    int pivot = J;
    double reciprocal[4];
    for (int i = J; i < 4; ++i) {
        const double v = lane(a, i, J);
        // Every candidate's reciprocal is taken while the pivot is being chosen, which keeps
        // the division off the path from the choice to the row updates.
        reciprocal[i] = 1.0 / v;
        const double weighted = scale[i] * std::fabs(v);
        // A later row wins a tie. Integer masking keeps the choice free of branches, which
        // random pivots would mispredict.
        pivot += (i - pivot) & -static_cast<int>(weighted >= big);
        big = std::max(big, weighted);
    }
    const Pair pivotLo = a.lo[pivot], pivotHi = a.hi[pivot];
    a.lo[pivot] = a.lo[J];
    a.hi[pivot] = a.hi[J];
    a.lo[J] = pivotLo;
    a.hi[J] = pivotHi;
    std::swap(perm[pivot], perm[J]);
    std::swap(scale[pivot], scale[J]);
    const double p = J < 2 ? pivotLo[J % 2] : pivotHi[J % 2];
    if (std::fabs(p) < kTinyPivot) return false;
    invPivot[J] = reciprocal[pivot];
    // The pivot row right of the diagonal: lanes at and left of it hold L and must not reach
    // the rows below, which take their own L entry in lane J instead.
    constexpr PairMask rightLo = {laneIf(0 > J), laneIf(1 > J)};
    constexpr PairMask rightHi = {laneIf(2 > J), laneIf(3 > J)};
    constexpr PairMask atLo = {laneIf(0 == J), laneIf(1 == J)};
    constexpr PairMask atHi = {laneIf(2 == J), laneIf(3 == J)};
    const Pair upperLo = select(rightLo, pivotLo, Pair{0, 0});
    const Pair upperHi = select(rightHi, pivotHi, Pair{0, 0});
    for (int i = J + 1; i < 4; ++i) {
        const double l = lane(a, i, J) * invPivot[J];
        const Pair ls = {l, l};
        a.lo[i] = select(atLo, ls, a.lo[i] - ls * upperLo);
        a.hi[i] = select(atHi, ls, a.hi[i] - ls * upperHi);
    }
    return true;
}

// Crout decomposition with implicit pivoting, in place: L (unit diagonal) below the
// diagonal, U on and above it, rows exchanged as the pivots demand, so that row i of the
// factors is row perm[i] of the input. The reciprocals of U's diagonal go to `invPivot`.
// Returns false where the decomposition raises Singularity.
//
// The updates are applied column after column to whole rows below the pivot instead of being
// gathered as dot products: every entry still receives the same subtractions in the same
// order, so the factors are the classic left-looking ones bit for bit.
bool decompose(Rows& a, int perm[4], double invPivot[4]) {
    double scale[4];
    for (int i = 0; i < 4; ++i) {
        const double big = std::max(std::max(std::fabs(a.lo[i][0]), std::fabs(a.lo[i][1])),
                                    std::max(std::fabs(a.hi[i][0]), std::fabs(a.hi[i][1])));
        if (big == 0) return false;
        scale[i] = 1.0 / big;
        perm[i] = i;
    }
    return eliminate<0>(a, perm, scale, invPivot) && eliminate<1>(a, perm, scale, invPivot) &&
           eliminate<2>(a, perm, scale, invPivot) && eliminate<3>(a, perm, scale, invPivot);
}

} // namespace

void Matrix4x4::inverse() {
    if (m_identity) return;
    Rows lu;
    int perm[4];
    double invPivot[4];
    load(m, lu);
    if (!decompose(lu, perm, invPivot)) throw Singularity();
    // Solve L U X = P for the four columns at once, a row of X at a time: forward with L,
    // then back with U. Row i of P has its 1 in column perm[i].
    const Pair one = {1, 1};
    Pair xLo[4], xHi[4];
    for (int i = 0; i < 4; ++i) {
        const double unit = perm[i];
        Pair lo = select(Pair{0, 1} == Pair{unit, unit}, one, Pair{0, 0});
        Pair hi = select(Pair{2, 3} == Pair{unit, unit}, one, Pair{0, 0});
        for (int j = 0; j < i; ++j) {
            const double l = lane(lu, i, j);
            lo -= Pair{l, l} * xLo[j];
            hi -= Pair{l, l} * xHi[j];
        }
        xLo[i] = lo;
        xHi[i] = hi;
    }
    for (int i = 3; i >= 0; --i) {
        Pair lo = xLo[i], hi = xHi[i];
        for (int j = i + 1; j < 4; ++j) {
            const double u = lane(lu, i, j);
            lo -= Pair{u, u} * xLo[j];
            hi -= Pair{u, u} * xHi[j];
        }
        xLo[i] = lo * Pair{invPivot[i], invPivot[i]};
        xHi[i] = hi * Pair{invPivot[i], invPivot[i]};
    }
    for (int r = 0; r < 4; ++r) {
        m[r] = xLo[r][0];
        m[r + 4] = xLo[r][1];
        m[r + 8] = xHi[r][0];
        m[r + 12] = xHi[r][1];
    }
}

bool Matrix4x4::isSingular() const {
    if (m_identity) return false;
    Rows lu;
    int perm[4];
    double invPivot[4];
    load(m, lu);
    return !decompose(lu, perm, invPivot);
}

} // namespace Math
