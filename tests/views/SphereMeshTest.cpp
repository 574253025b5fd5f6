// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/sphere/SphereMesh.h"

#include "views/sphere/SphereCamera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace sphere;

namespace {

constexpr double kOffset = kPi / 16384;

const MeshVertex& at(const std::vector<MeshVertex>& vertices, int ring, int column)
{
    return vertices[static_cast<std::size_t>(ring * kMeshColumns + column)];
}

} // namespace

TEST(SphereMesh, HasTheVerticesAndIndicesOf65RingsBy129Columns)
{
    const auto vertices = meshVertices();
    const auto indices = meshIndices();
    EXPECT_EQ(vertices.size(), 8385u);
    EXPECT_EQ(vertices.size() * sizeof(MeshVertex), 167700u);
    EXPECT_EQ(indices.size(), 49152u);
    EXPECT_EQ(*std::max_element(indices.begin(), indices.end()), 8384);
}

TEST(SphereMesh, EveryVertexLiesOnASphereOfRadius100)
{
    for (const MeshVertex& v : meshVertices())
        EXPECT_NEAR(std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z), 100.0, 1e-4);
}

TEST(SphereMesh, TextureCoordinatesRunFromLeftToRightAndFromTheUpperPole)
{
    const auto vertices = meshVertices();
    EXPECT_FLOAT_EQ(at(vertices, 0, 0).u, 1.0f);
    EXPECT_FLOAT_EQ(at(vertices, 0, 64).u, 0.5f);
    EXPECT_NEAR(at(vertices, 0, 128).u, 0.0f, 1e-7);
    EXPECT_NEAR(at(vertices, 0, 5).v, 0.0f, 1e-7);
    EXPECT_FLOAT_EQ(at(vertices, 64, 5).v, 1.0f);
    EXPECT_FLOAT_EQ(at(vertices, 16, 32).v, 0.25f);
    EXPECT_FLOAT_EQ(at(vertices, 16, 32).u, 0.75f);
}

TEST(SphereMesh, VerticesStandAQuarterPixelBesideTheirAngles)
{
    const auto vertices = meshVertices();
    const MeshVertex& v = at(vertices, 20, 70);
    EXPECT_NEAR(std::atan2(v.y, v.x), 70 * kPi / 64 - kPi - kOffset, 1e-6);
    EXPECT_NEAR(std::acos(v.z / 100.0), 20 * kPi / 64 - kOffset, 1e-5);
    // The last ring is held back from the lower pole by the same amount.
    EXPECT_NEAR(std::acos(at(vertices, 64, 0).z / 100.0), kPi - kOffset, 1e-3);
}

TEST(SphereMesh, TheSeamColumnsOverlap)
{
    const auto vertices = meshVertices();
    const MeshVertex& first = at(vertices, 32, 0);
    const MeshVertex& last = at(vertices, 32, 128);
    // The ring begins two millionths of a radian before it ends; near azimuth pi, y falls as the azimuth
    // grows.
    EXPECT_NEAR(first.y - last.y, 100.0 * 2e-6, 2e-5);
    EXPECT_FLOAT_EQ(first.x, last.x);
}

TEST(SphereMesh, EachCellIsTwoTriangles)
{
    const auto indices = meshIndices();
    const std::vector<std::uint16_t> first(indices.begin(), indices.begin() + 6);
    EXPECT_EQ(first, (std::vector<std::uint16_t>{0, 129, 1, 1, 129, 130}));
    const std::size_t cell = (3 * 128 + 7) * 6;
    const auto b = static_cast<std::uint16_t>(129 * 3 + 7);
    EXPECT_EQ(indices[cell], b);
    EXPECT_EQ(indices[cell + 1], b + 129);
    EXPECT_EQ(indices[cell + 5], b + 130);
}
