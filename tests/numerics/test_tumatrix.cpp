// Tests of TUMatrix (solver, pseudo-inverse, editing) and of the Jacobi eigen-solver.
#include <PlumvaleBaseCore/numerics/Jacobi.h>
#include <PlumvaleBaseCore/numerics/TUMatrix.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

TUMatrix randomMatrix(int rows, int cols, std::mt19937& rng) {
    std::uniform_real_distribution<double> d(-10, 10);
    TUMatrix m(rows, cols);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c)
            m.setValue(r, c, d(rng));
    return m;
}

TUMatrix transpose(const TUMatrix& m) {
    TUMatrix t(m.nbCol(), m.nbRow());
    for (int r = 0; r < m.nbRow(); ++r)
        for (int c = 0; c < m.nbCol(); ++c)
            t.setValue(c, r, m.getValue(r, c));
    return t;
}

double maxDifference(const TUMatrix& a, const TUMatrix& b) {
    double worst = 0;
    for (int r = 0; r < a.nbRow(); ++r)
        for (int c = 0; c < a.nbCol(); ++c)
            worst = std::max(worst, std::fabs(a.getValue(r, c) - b.getValue(r, c)));
    return worst;
}

} // namespace

TEST(TUMatrix, SolveKnownSystem) {
    TUMatrix a(2, 2), b(2, 1), x;
    a(0, 0) = 2, a(0, 1) = 1, a(1, 0) = 1, a(1, 1) = 3;
    b(0, 0) = 3, b(1, 0) = 5;
    ASSERT_TRUE(TUMatrix::solve(a, b, x));
    EXPECT_NEAR(x.getValue(0, 0), 0.8, 1e-15);
    EXPECT_NEAR(x.getValue(1, 0), 1.4, 1e-15);
}

// a * solve(a, b) must give b back, whatever the pivoting did.
TEST(TUMatrix, SolveMultipliesBackToTheRightHandSide) {
    std::mt19937 rng(3);
    for (int n = 1; n <= 12; ++n) {
        for (int trial = 0; trial < 20; ++trial) {
            const TUMatrix a = randomMatrix(n, n, rng);
            TUMatrix b = randomMatrix(n, 1, rng);
            if (trial % 4 == 0) b(0, 0) = 0; // leading zeros of b take the short cut
            TUMatrix x;
            ASSERT_TRUE(TUMatrix::solve(a, b, x));
            ASSERT_EQ(x.nbRow(), n);
            EXPECT_LT(maxDifference(a * x, b), 1e-9) << n;
        }
    }
}

TEST(TUMatrix, SolveRejectsBadSystemsAndLeavesXAlone) {
    TUMatrix x(1, 1);
    x(0, 0) = 42;
    TUMatrix zeroRow(2, 2), b(2, 1);
    zeroRow(0, 0) = 1, zeroRow(0, 1) = 2; // row 1 all zeros
    EXPECT_FALSE(TUMatrix::solve(zeroRow, b, x));
    TUMatrix square(2, 2);
    square.loadIdentity();
    EXPECT_FALSE(TUMatrix::solve(square, TUMatrix(2, 2), x)); // b of two columns
    EXPECT_FALSE(TUMatrix::solve(TUMatrix(2, 3), b, x));      // a not square
    EXPECT_FALSE(TUMatrix::solve(TUMatrix(), TUMatrix(), x)); // empty
    EXPECT_EQ(x.nbRow(), 1);
    EXPECT_EQ(x.getValue(0, 0), 42);
    // Singular without a zero row: the zero pivot is replaced and the call goes on.
    TUMatrix singular(2, 2);
    singular(0, 0) = 1, singular(0, 1) = 2, singular(1, 0) = 2, singular(1, 1) = 4;
    b(0, 0) = 1;
    EXPECT_TRUE(TUMatrix::solve(singular, b, x));
}

TEST(TUMatrix, EditingAndProducts) {
    TUMatrix m(2, 3);
    m.loadIdentity();
    EXPECT_EQ(m.getValue(1, 1), 1);
    EXPECT_EQ(m.getValue(1, 2), 0);
    m.setValue(1, 2, 5);
    m.addRow(2);
    m.addCol();
    EXPECT_EQ(m.nbRow(), 4);
    EXPECT_EQ(m.nbCol(), 4);
    EXPECT_EQ(m.getValue(1, 2), 5); // kept through the resize
    EXPECT_EQ(m.getValue(3, 3), 0);
    EXPECT_THROW(m.getValue(4, 0), TUMatrix::MatrixError);
    EXPECT_THROW(TUMatrix(-1, 2), TUMatrix::MatrixError);
    EXPECT_THROW(TUMatrix(2, 3) * TUMatrix(2, 3), TUMatrix::MatrixError);

    TUMatrix a(2, 3), b(3, 1);
    int k = 1;
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 3; ++c)
            a(r, c) = k++;
    b(0, 0) = 1, b(1, 0) = 0, b(2, 0) = -1;
    const TUMatrix p = a * b;
    EXPECT_EQ(p.getValue(0, 0), -2);
    EXPECT_EQ(p.getValue(1, 0), -2);
    TUMatrix c = a;
    EXPECT_EQ(c, a);
    c *= b;
    EXPECT_EQ(c, p);
    EXPECT_NE(c, a);
}

// The four Penrose conditions, for full-rank and rank-deficient matrices of every shape.
TEST(TUMatrix, PseudoInverseSatisfiesThePenroseConditions) {
    std::mt19937 rng(11);
    for (int m = 1; m <= 6; ++m) {
        for (int n = 1; n <= 6; ++n) {
            for (int deficient = 0; deficient < 2; ++deficient) {
                TUMatrix a = randomMatrix(m, n, rng);
                int expectedRank = std::min(m, n);
                if (deficient && expectedRank > 1) {
                    const int k = expectedRank - 1; // rank k as a product of m x k and k x n
                    a = randomMatrix(m, k, rng) * randomMatrix(k, n, rng);
                    expectedRank = k;
                } else if (deficient) {
                    continue;
                }
                TUMatrix p;
                ASSERT_EQ(TUMatrix::pseudoInverse(a, p), expectedRank) << m << "x" << n;
                ASSERT_EQ(p.nbRow(), n);
                ASSERT_EQ(p.nbCol(), m);
                const TUMatrix ap = a * p, pa = p * a;
                EXPECT_LT(maxDifference(ap * a, a), 1e-6) << m << "x" << n;
                EXPECT_LT(maxDifference(pa * p, p), 1e-6) << m << "x" << n;
                EXPECT_LT(maxDifference(transpose(ap), ap), 1e-6);
                EXPECT_LT(maxDifference(transpose(pa), pa), 1e-6);
            }
        }
    }
    TUMatrix p;
    EXPECT_EQ(TUMatrix::pseudoInverse(TUMatrix(), p), -1);
    EXPECT_EQ(TUMatrix::pseudoInverse(TUMatrix(2, 3), p), 0);
}

TEST(Jacobi, DiagonalMatrixNeedsNoRotation) {
    double a[9] = {3, 0, 0, 0, -1, 0, 0, 0, 2};
    double values[3], vectors[9];
    int rotations = -1;
    EXPECT_TRUE(Jacobi(a, 3, values, vectors, &rotations));
    EXPECT_EQ(rotations, 0);
    EXPECT_EQ(values[0], 3);
    EXPECT_EQ(values[1], -1);
    EXPECT_EQ(values[2], 2);
    EXPECT_EQ(vectors[0], 1);
    EXPECT_EQ(vectors[1], 0);
}

// A v = lambda v for every pair, with orthonormal eigenvectors, and the trace preserved.
TEST(Jacobi, RandomSymmetricMatricesDecompose) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> d(-5, 5);
    for (int n = 2; n <= 8; ++n) {
        std::vector<double> a(std::size_t(n * n)), original;
        for (int r = 0; r < n; ++r)
            for (int c = r; c < n; ++c)
                a[std::size_t(r * n + c)] = a[std::size_t(c * n + r)] = d(rng);
        original = a;
        std::vector<double> values(static_cast<std::size_t>(n));
        std::vector<double> v(static_cast<std::size_t>(n * n));
        int rotations = 0;
        ASSERT_TRUE(Jacobi(a.data(), n, values.data(), v.data(), &rotations));
        EXPECT_GT(rotations, 0);
        for (int j = 0; j < n; ++j) {
            for (int r = 0; r < n; ++r) {
                double av = 0;
                for (int k = 0; k < n; ++k)
                    av += original[std::size_t(r * n + k)] * v[std::size_t(k * n + j)];
                EXPECT_NEAR(av, values[std::size_t(j)] * v[std::size_t(r * n + j)], 1e-9);
            }
            for (int i = 0; i < n; ++i) {
                double dot = 0;
                for (int k = 0; k < n; ++k)
                    dot += v[std::size_t(k * n + i)] * v[std::size_t(k * n + j)];
                EXPECT_NEAR(dot, i == j ? 1.0 : 0.0, 1e-12);
            }
        }
    }
    double values[2], vectors[4];
    int rotations;
    EXPECT_FALSE(Jacobi(nullptr, 2, values, vectors, &rotations));
}
