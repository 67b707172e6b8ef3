// Cyclic Jacobi eigen-decomposition of a symmetric matrix.
#include <PlumvaleBaseCore/numerics/Jacobi.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kMaxSweeps = 50;

/// Applies the rotation (s, tau) to the pair of elements x and y.
inline void rotate(double& x, double& y, double s, double tau) {
    const double g = x;
    const double h = y;
    x = g - s * (h + g * tau);
    y = h + s * (g - h * tau);
}

} // namespace

bool Jacobi(double* a, int n, double* values, double* vectors, int* rotations) {
    if (n < 1) {
        if (rotations) *rotations = 0;
        return true;
    }
    if (!a || !values || !vectors || !rotations) return false;
    const auto N = static_cast<std::size_t>(n);
    auto A = [a, N](std::size_t r, std::size_t c) -> double& { return a[r * N + c]; };
    auto V = [vectors, N](std::size_t r, std::size_t c) -> double& { return vectors[r * N + c]; };

    std::vector<double> b(N), z(N, 0.0);
    for (std::size_t p = 0; p < N; ++p) {
        for (std::size_t q = 0; q < N; ++q)
            V(p, q) = p == q ? 1.0 : 0.0;
        b[p] = values[p] = A(p, p);
    }
    *rotations = 0;

    for (int sweep = 1; sweep <= kMaxSweeps; ++sweep) {
        double sm = 0;
        for (std::size_t p = 0; p + 1 < N; ++p)
            for (std::size_t q = p + 1; q < N; ++q)
                sm += std::fabs(A(p, q));
        if (sm == 0.0) return true;
        const double threshold = sweep < 4 ? 0.2 * sm / (double(n) * double(n)) : 0.0;

        for (std::size_t p = 0; p + 1 < N; ++p) {
            for (std::size_t q = p + 1; q < N; ++q) {
                const double g = 100.0 * std::fabs(A(p, q));
                if (sweep > 4 && std::fabs(values[p]) + g == std::fabs(values[p]) &&
                    std::fabs(values[q]) + g == std::fabs(values[q])) {
                    A(p, q) = 0.0;
                    continue;
                }
                if (std::fabs(A(p, q)) <= threshold) continue;

                double h = values[q] - values[p];
                double t;
                if (std::fabs(h) + g == std::fabs(h)) {
                    t = A(p, q) / h;
                } else {
                    const double theta = 0.5 * h / A(p, q);
                    t = 1.0 / (std::fabs(theta) + std::sqrt(1.0 + theta * theta));
                    if (theta < 0.0) t = -t;
                }
                const double c = 1.0 / std::sqrt(1.0 + t * t);
                const double s = t * c;
                const double tau = s / (1.0 + c);
                h = t * A(p, q);
                z[p] -= h;
                z[q] += h;
                values[p] -= h;
                values[q] += h;
                A(p, q) = 0.0;
                for (std::size_t j = 0; j < p; ++j)
                    rotate(A(j, p), A(j, q), s, tau);
                for (std::size_t j = p + 1; j < q; ++j)
                    rotate(A(p, j), A(j, q), s, tau);
                for (std::size_t j = q + 1; j < N; ++j)
                    rotate(A(p, j), A(q, j), s, tau);
                for (std::size_t j = 0; j < N; ++j)
                    rotate(V(j, p), V(j, q), s, tau);
                ++*rotations;
            }
        }
        for (std::size_t p = 0; p < N; ++p) {
            b[p] += z[p];
            values[p] = b[p];
            z[p] = 0.0;
        }
    }

    if (*rotations == kMaxSweeps) {
        std::printf("\nplus de 50 iterations pour diagonaliser la matrice");
        std::fflush(stdout);
        std::vector<double>().swap(b);
        std::vector<double>().swap(z);
        std::exit(1);
    }
    return false;
}
