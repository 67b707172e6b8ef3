// TUMatrix: a small dense matrix of doubles with an LU solver and a pseudo-inverse.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <vector>

/// Dense matrix of doubles stored row by row: element (r, c) at r * nbCol() + c.
/// Equality compares the sizes and every element exactly.
class PLUMVALE_EXPORT TUMatrix {
public:
    /// Thrown for negative sizes, an index out of range and products of mismatched sizes.
    class MatrixError {};

    /// A rows x cols matrix of zeros.
    explicit TUMatrix(int rows = 0, int cols = 0);

    /// @{
    /// The number of rows and of columns.
    int nbRow() const { return m_rows; }
    int nbCol() const { return m_cols; }
    /// @}
    /// @{
    /// Checked element access: throws MatrixError for an index out of range.
    double getValue(int row, int col) const;
    void setValue(int row, int col, double value);
    /// @}
    /// @{
    /// Unchecked element access.
    double& operator()(int row, int col) { return m_values[index(row, col)]; }
    double operator()(int row, int col) const { return m_values[index(row, col)]; }
    /// @}

    /// Sets every element to 0.
    void loadZero();
    /// Ones on the main diagonal, zeros elsewhere (also for non-square matrices).
    void loadIdentity();
    /// New size; the elements common to both sizes are kept, new ones are 0.
    void resize(int rows, int cols);
    /// Appends `count` rows of zeros at the bottom.
    void addRow(int count = 1);
    /// Appends `count` columns of zeros on the right.
    void addCol(int count = 1);

    /// @{
    /// The matrix product; throws MatrixError when this matrix's columns do not match other's
    /// rows.
    TUMatrix operator*(const TUMatrix& other) const;
    TUMatrix& operator*=(const TUMatrix& other);
    /// @}
    /// @{
    /// Equal sizes and every element exactly equal.
    bool operator==(const TUMatrix& other) const;
    bool operator!=(const TUMatrix& other) const { return !(*this == other); }
    /// @}

    /// Writes `label` and the size, then one line per row ("%12.6g" values) to stdout.
    void print(const char* label) const;
    /// Writes the size and every element at full precision ("%.17g") to stderr.
    void dump() const;

    /// Solves a x = b for square a (n x n) and b (n x 1) by Crout LU decomposition with
    /// row-scaled partial pivoting. Returns false, leaving x unchanged, for a badly shaped
    /// system or a row of zeros; an exactly zero pivot is replaced by 2.220446049250313e-16.
    static bool solve(const TUMatrix& a, const TUMatrix& b, TUMatrix& x);
    /// Moore-Penrose pseudo-inverse of a (m x n) into result (n x m), through the symmetric
    /// eigen-decomposition of a^T a. Returns the rank found (singular values below
    /// max(m, n) * 1e-7 relative to the largest are dropped), or -1 for an empty matrix.
    static int pseudoInverse(const TUMatrix& a, TUMatrix& result);

private:
    std::size_t index(int row, int col) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_cols) +
               static_cast<std::size_t>(col);
    }
    void checkIndex(int row, int col) const;
    /// In-place LU decomposition of the n x n array; false when a row is all zeros.
    static bool luDecompose(std::vector<double>& lu, int n, std::vector<int>& permutation,
                            double& parity);
    static void luSolve(const std::vector<double>& lu, int n, const std::vector<int>& permutation,
                        std::vector<double>& b);
    /// Eigen-decomposition of this symmetric matrix: eigenvalues and eigenvectors (columns).
    void jacobi(std::vector<double>& values, TUMatrix& vectors) const;

    std::vector<double> m_values;
    int m_rows = 0;
    int m_cols = 0;
};
