// TUMatrix: storage, products, the Crout LU solver and the pseudo-inverse.
#include <PlumvaleBaseCore/numerics/TUMatrix.h>

#include <PlumvaleBaseCore/numerics/Jacobi.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr double kZeroPivot = 2.220446049250313e-16;
}

TUMatrix::TUMatrix(int rows, int cols) : m_rows(rows), m_cols(cols) {
    if (rows < 0 || cols < 0) throw MatrixError();
    m_values.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), 0.0);
}

void TUMatrix::checkIndex(int row, int col) const {
    if (row < 0 || row >= m_rows || col < 0 || col >= m_cols) throw MatrixError();
}

double TUMatrix::getValue(int row, int col) const {
    checkIndex(row, col);
    return m_values[index(row, col)];
}

void TUMatrix::setValue(int row, int col, double value) {
    checkIndex(row, col);
    m_values[index(row, col)] = value;
}

void TUMatrix::loadZero() {
    std::fill(m_values.begin(), m_values.end(), 0.0);
}

void TUMatrix::loadIdentity() {
    loadZero();
    for (int i = 0; i < std::min(m_rows, m_cols); ++i)
        m_values[index(i, i)] = 1.0;
}

void TUMatrix::resize(int rows, int cols) {
    if (rows == m_rows && cols == m_cols) return;
    TUMatrix fresh(rows, cols);
    for (int r = 0; r < std::min(rows, m_rows); ++r)
        for (int c = 0; c < std::min(cols, m_cols); ++c)
            fresh.m_values[fresh.index(r, c)] = m_values[index(r, c)];
    *this = std::move(fresh);
}

void TUMatrix::addRow(int count) {
    resize(m_rows + std::max(count, 0), m_cols);
}

void TUMatrix::addCol(int count) {
    resize(m_rows, m_cols + std::max(count, 0));
}

TUMatrix TUMatrix::operator*(const TUMatrix& other) const {
    if (m_cols != other.m_rows) throw MatrixError();
    TUMatrix product(m_rows, other.m_cols);
    for (int r = 0; r < m_rows; ++r) {
        double* out = &product.m_values[product.index(r, 0)];
        for (int k = 0; k < m_cols; ++k) {
            const double a = m_values[index(r, k)];
            const double* row = &other.m_values[other.index(k, 0)];
            for (int c = 0; c < other.m_cols; ++c)
                out[c] += a * row[c];
        }
    }
    return product;
}

TUMatrix& TUMatrix::operator*=(const TUMatrix& other) {
    return *this = *this * other;
}

bool TUMatrix::operator==(const TUMatrix& other) const {
    return m_rows == other.m_rows && m_cols == other.m_cols && m_values == other.m_values;
}

void TUMatrix::print(const char* label) const {
    std::printf("%s (%dx%d)\n", label ? label : "", m_rows, m_cols);
    for (int r = 0; r < m_rows; ++r) {
        for (int c = 0; c < m_cols; ++c)
            std::printf("%12.6g", m_values[index(r, c)]);
        std::printf("\n");
    }
}

void TUMatrix::dump() const {
    std::fprintf(stderr, "TUMatrix %dx%d\n", m_rows, m_cols);
    for (int r = 0; r < m_rows; ++r)
        for (int c = 0; c < m_cols; ++c)
            std::fprintf(stderr, "[%d][%d] = %.17g\n", r, c, m_values[index(r, c)]);
}

bool TUMatrix::luDecompose(std::vector<double>& lu, int n, std::vector<int>& permutation,
                           double& parity) {
    const auto N = static_cast<std::size_t>(n);
    auto A = [&lu, N](std::size_t r, std::size_t c) -> double& { return lu[r * N + c]; };
    std::vector<double> scale(N);
    for (std::size_t i = 0; i < N; ++i) {
        double big = 0;
        for (std::size_t j = 0; j < N; ++j)
            big = std::max(big, std::fabs(A(i, j)));
        if (big == 0) return false;
        scale[i] = 1.0 / big;
    }
    parity = 1;
    permutation.assign(N, 0);
    for (std::size_t j = 0; j < N; ++j) {
        for (std::size_t i = 0; i < j; ++i) {
            double sum = A(i, j);
            for (std::size_t k = 0; k < i; ++k)
                sum -= A(i, k) * A(k, j);
            A(i, j) = sum;
        }
        double big = 0;
        std::size_t pivot = j;
        for (std::size_t i = j; i < N; ++i) {
            double sum = A(i, j);
            for (std::size_t k = 0; k < j; ++k)
                sum -= A(i, k) * A(k, j);
            A(i, j) = sum;
            const double weighted = scale[i] * std::fabs(sum);
            if (weighted >= big) {
                big = weighted;
                pivot = i;
            }
        }
        if (pivot != j) {
            for (std::size_t k = 0; k < N; ++k)
                std::swap(A(pivot, k), A(j, k));
            parity = -parity;
            scale[pivot] = scale[j];
        }
        permutation[j] = static_cast<int>(pivot);
        if (A(j, j) == 0.0) A(j, j) = kZeroPivot;
        if (j + 1 < N) {
            const double inverse = 1.0 / A(j, j);
            for (std::size_t i = j + 1; i < N; ++i)
                A(i, j) *= inverse;
        }
    }
    return true;
}

void TUMatrix::luSolve(const std::vector<double>& lu, int n, const std::vector<int>& permutation,
                       std::vector<double>& b) {
    const auto N = static_cast<std::size_t>(n);
    auto A = [&lu, N](std::size_t r, std::size_t c) { return lu[r * N + c]; };
    std::size_t firstNonZero = N; // leading zeros of b need no forward substitution
    for (std::size_t i = 0; i < N; ++i) {
        const auto p = static_cast<std::size_t>(permutation[i]);
        double sum = b[p];
        b[p] = b[i];
        if (firstNonZero < N) {
            for (std::size_t j = firstNonZero; j < i; ++j)
                sum -= A(i, j) * b[j];
        } else if (sum != 0.0) {
            firstNonZero = i;
        }
        b[i] = sum;
    }
    for (std::size_t i = N; i-- > 0;) {
        double sum = b[i];
        for (std::size_t j = i + 1; j < N; ++j)
            sum -= A(i, j) * b[j];
        b[i] = sum / A(i, i);
    }
}

bool TUMatrix::solve(const TUMatrix& a, const TUMatrix& b, TUMatrix& x) {
    const int n = a.m_rows;
    if (n == 0 || a.m_cols != n || b.m_rows != n || b.m_cols != 1) return false;
    std::vector<double> lu = a.m_values;
    std::vector<int> permutation;
    double parity;
    if (!luDecompose(lu, n, permutation, parity)) return false;
    std::vector<double> solution = b.m_values;
    luSolve(lu, n, permutation, solution);
    x.resize(n, 1);
    x.m_values = std::move(solution);
    return true;
}

void TUMatrix::jacobi(std::vector<double>& values, TUMatrix& vectors) const {
    std::vector<double> work = m_values;
    values.assign(static_cast<std::size_t>(m_rows), 0.0);
    vectors = TUMatrix(m_rows, m_rows);
    int rotations = 0;
    Jacobi(work.data(), m_rows, values.data(), vectors.m_values.data(), &rotations);
}

int TUMatrix::pseudoInverse(const TUMatrix& a, TUMatrix& result) {
    const int m = a.m_rows;
    const int n = a.m_cols;
    if (m == 0 || n == 0) return -1;
    TUMatrix gram(n, n); // a^T a
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j) {
            double sum = 0;
            for (int k = 0; k < m; ++k)
                sum += a.m_values[a.index(k, i)] * a.m_values[a.index(k, j)];
            gram.m_values[gram.index(i, j)] = gram.m_values[gram.index(j, i)] = sum;
        }
    std::vector<double> lambda;
    TUMatrix v;
    gram.jacobi(lambda, v);

    const double largest = *std::max_element(lambda.begin(), lambda.end());
    // Singular values are the square roots of the eigenvalues of a^T a.
    const double cutoff = std::max(m, n) * 1e-7 * std::sqrt(std::max(largest, 0.0));
    std::vector<double> inverse(static_cast<std::size_t>(n), 0.0);
    int rank = 0;
    for (int i = 0; i < n; ++i) {
        if (lambda[std::size_t(i)] > 0 && std::sqrt(lambda[std::size_t(i)]) > cutoff) {
            inverse[std::size_t(i)] = 1.0 / lambda[std::size_t(i)];
            ++rank;
        }
    }
    // (a^T a)^+ = V diag(1/lambda) V^T, then a^+ = (a^T a)^+ a^T.
    TUMatrix gramInverse(n, n);
    for (int r = 0; r < n; ++r)
        for (int c = 0; c < n; ++c) {
            double sum = 0;
            for (int k = 0; k < n; ++k)
                sum +=
                    v.m_values[v.index(r, k)] * inverse[std::size_t(k)] * v.m_values[v.index(c, k)];
            gramInverse.m_values[gramInverse.index(r, c)] = sum;
        }
    TUMatrix transposed(n, m);
    for (int r = 0; r < m; ++r)
        for (int c = 0; c < n; ++c)
            transposed.m_values[transposed.index(c, r)] = a.m_values[a.index(r, c)];
    result = gramInverse * transposed;
    return rank;
}
