// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Least squares over many unknowns.
#include "nexomap/src/graph/NormalEquations.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <random>

using namespace nexomap;

TEST(NormalEquations, SolveAsADenseMatrixDoes)
{
    constexpr int kUnknowns = 60;
    std::mt19937 random(3);
    NormalEquations sparse(kUnknowns, 1e-6);
    Eigen::MatrixXd dense = 1e-6 * Eigen::MatrixXd::Identity(kUnknowns, kUnknowns);
    Eigen::VectorXd right = Eigen::VectorXd::Zero(kUnknowns);
    // Differences of two unknowns each, whichever index is the larger; nothing observes the last one.
    for (int k = 0; k < 200; ++k) {
        const int a = int(random() % (kUnknowns - 1)), b = int(random() % (kUnknowns - 1));
        const double weight = 1.0 + double(random() % 100), difference = double(random() % 7) - 3.0;
        if (a == b) continue;
        sparse.add(a, a, weight), sparse.add(b, b, weight), sparse.add(a, b, -weight);
        sparse.right(a) += weight * difference, sparse.right(b) -= weight * difference;
        dense(a, a) += weight, dense(b, b) += weight, dense(a, b) -= weight, dense(b, a) -= weight;
        right[a] += weight * difference, right[b] -= weight * difference;
    }
    sparse.add(0, 0, 100.0), sparse.right(0) += 100.0;
    dense(0, 0) += 100.0, right[0] += 100.0;
    const Eigen::VectorXd x = sparse.solve(), expected = dense.ldlt().solve(right);
    ASSERT_EQ(x.size(), kUnknowns);
    EXPECT_LT((x - expected).norm(), 1e-9 * expected.norm());
    EXPECT_EQ(x[kUnknowns - 1], 0.0);
}

TEST(NormalEquations, AMatrixThatIsNotPositiveDefiniteHasNoSolution)
{
    NormalEquations normal(2, 0.0);
    normal.add(0, 0, 1.0);
    EXPECT_EQ(normal.solve().size(), 0);
}
