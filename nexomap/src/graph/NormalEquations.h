// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Sparse>

#include <algorithm>
#include <vector>

namespace nexomap {

/// The normal equations of linear least squares over many unknowns of which each observation touches few: a
/// dense matrix takes cubic time in the number of links of a tour. Sparse Cholesky factors after Davis,
/// "Direct Methods for Sparse Linear Systems" (2006), in approximate minimum degree order.
class NormalEquations
{
public:
    /// @param damping  added to the whole diagonal; positive, so that what nothing observes comes out as 0
    NormalEquations(int unknowns, double damping)
        : m_right(Eigen::VectorXd::Zero(unknowns))
    {
        for (int k = 0; k < unknowns; ++k)
            m_entries.emplace_back(k, k, damping);
    }

    /// Adds to an element of the diagonal, or to both elements that couple two unknowns.
    void add(int a, int b, double value) { m_entries.emplace_back(std::max(a, b), std::min(a, b), value); }
    double& right(int a) { return m_right[a]; }

    /// @return empty when the matrix is not positive definite
    Eigen::VectorXd solve() const
    {
        Eigen::SparseMatrix<double> lower(m_right.size(), m_right.size());
        lower.setFromTriplets(m_entries.begin(), m_entries.end());
        const Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> factors(lower);
        if (factors.info() != Eigen::Success) return {};
        return factors.solve(m_right);
    }

private:
    std::vector<Eigen::Triplet<double>> m_entries;
    Eigen::VectorXd m_right;
};

} // namespace nexomap
