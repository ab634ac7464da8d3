// SPDX-License-Identifier: Apache-2.0
// The method of Marquardt, "An algorithm for least-squares estimation of nonlinear parameters", J. SIAM 11 (1963),
// 431-441: with the residuals r and their derivatives J a step solves
//
//     (J'J + damping * diag(J'J)) step = -J'r
//
// The damping falls after a step that lowers |r|^2 and rises after one that does not, which is taken back.
#include "tools/accuracy/LeastSquares.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace simulator {

namespace {

using Vector = std::vector<double>;

constexpr int kMostSteps = 50;
constexpr double kDifference = 1e-6;  // of a parameter, for the derivatives
constexpr double kConverged = 1e-6;   // relative gain of a step
constexpr double kFirstDamping = 1e-3;
constexpr double kLargestDamping = 1e6;
constexpr double kSmallestPivot = 1e-12;  // where a parameter has no effect

double dot(const Vector& a, const Vector& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

// The parameters and their residuals.
struct State {
    Vector parameters;
    Vector residuals;
    double sum;  // of the squares
};

State evaluate(const Residuals& residuals, Vector parameters) {
    Vector values = residuals(parameters);
    const double sum = dot(values, values);
    return {std::move(parameters), std::move(values), sum};
}

// The derivatives of the residuals, one row for each parameter.
std::vector<Vector> derivatives(const Residuals& residuals, const State& at) {
    std::vector<Vector> rows;
    for (size_t i = 0; i < at.parameters.size(); ++i) {
        Vector moved = at.parameters;
        moved[i] += kDifference;
        Vector row = residuals(moved);
        for (size_t k = 0; k < row.size(); ++k) row[k] = (row[k] - at.residuals[k]) / kDifference;
        rows.push_back(std::move(row));
    }
    return rows;
}

// Solves a symmetric positive definite system by Cholesky's method. The lower triangle of the matrix is replaced.
Vector solve(std::vector<Vector> matrix, Vector right) {
    const size_t n = right.size();
    for (size_t i = 0; i < n; ++i) {
        for (size_t k = 0; k <= i; ++k) {
            double sum = matrix[i][k];
            for (size_t j = 0; j < k; ++j) sum -= matrix[i][j] * matrix[k][j];
            matrix[i][k] = i == k ? std::sqrt(std::max(sum, kSmallestPivot)) : sum / matrix[k][k];
        }
        for (size_t j = 0; j < i; ++j) right[i] -= matrix[i][j] * right[j];
        right[i] /= matrix[i][i];
    }
    for (size_t i = n; i-- > 0;) {
        for (size_t j = i + 1; j < n; ++j) right[i] -= matrix[j][i] * right[j];
        right[i] /= matrix[i][i];
    }
    return right;
}

// J'J and -J'r.
struct NormalEquations {
    std::vector<Vector> matrix;
    Vector right;
};

NormalEquations normalEquations(const std::vector<Vector>& rows, const Vector& residuals) {
    NormalEquations result{std::vector<Vector>(rows.size(), Vector(rows.size())), {}};
    for (size_t i = 0; i < rows.size(); ++i) {
        for (size_t k = 0; k <= i; ++k) result.matrix[i][k] = dot(rows[i], rows[k]);
        result.right.push_back(-dot(rows[i], residuals));
    }
    return result;
}

State stepped(const Residuals& residuals, const State& from, NormalEquations equations, double damping) {
    for (size_t i = 0; i < equations.right.size(); ++i) equations.matrix[i][i] *= 1 + damping;
    Vector moved = solve(std::move(equations.matrix), std::move(equations.right));
    for (size_t i = 0; i < moved.size(); ++i) moved[i] += from.parameters[i];
    return evaluate(residuals, std::move(moved));
}

}  // namespace

std::vector<double> minimizeSquares(const Residuals& residuals, std::vector<double> start) {
    State best = evaluate(residuals, std::move(start));
    double damping = kFirstDamping;
    for (int step = 0; step < kMostSteps; ++step) {
        const auto equations = normalEquations(derivatives(residuals, best), best.residuals);
        State next = stepped(residuals, best, equations, damping);
        while (!(next.sum < best.sum)) {
            damping *= 10;
            if (damping > kLargestDamping) return best.parameters;
            next = stepped(residuals, best, equations, damping);
        }
        const bool isConverged = best.sum - next.sum < kConverged * best.sum;
        best = std::move(next);
        if (isConverged) break;
        damping /= 10;
    }
    return best.parameters;
}

}  // namespace simulator
