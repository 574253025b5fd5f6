// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "views/cloud/VertexDecoder.h"

#include "tests/views/cloud/CloudFixture.h"
#include "views/cloud/PointThinning.h"

#include <cstring>

using cloud::Vertex;

class VertexDecoder : public CloudFixture
{
protected:
    VertexDecoder()
    {
        bytes.originX = 123456;
        bytes.originY = 20000;
        bytes.originZ = 4294967295u;
        bytes.divisor = 3; // base resolution 33
        bytes.refinement = 2;
        bytes.refinementZ = 5;
    }

    static Vertex byHand(const CloudDot& dot)
    {
        return {float((dot.x + 0.5) / 66 - 12.3456),      float((dot.y + 0.5) / 66 - 2.0),
                float((dot.z + 0.5) / 165 - 429496.7295), float(dot.red * 0.00392156862745098),
                float(dot.green * 0.00392156862745098),   float(dot.blue * 0.00392156862745098)};
    }

    static void expectEqual(const Vertex& found, const Vertex& expected)
    {
        EXPECT_FLOAT_EQ(found.x, expected.x);
        EXPECT_FLOAT_EQ(found.y, expected.y);
        EXPECT_FLOAT_EQ(found.z, expected.z);
        EXPECT_FLOAT_EQ(found.red, expected.red);
        EXPECT_FLOAT_EQ(found.green, expected.green);
        EXPECT_FLOAT_EQ(found.blue, expected.blue);
    }
};

TEST_F(VertexDecoder, PointsStandInTheMiddleOfTheirStepsLessTheOrigin)
{
    bytes.points = {{0, 0, 0, 0, 0, 0}, {65535, 1, 256, 255, 128, 1}, {1000, 40000, 65535, 3, 2, 1}};
    make(bytes);
    std::vector<Vertex> vertices(3);
    cloud::VertexDecoder(cloud).decodeAll(vertices.data());
    for (std::size_t i = 0; i < 3; ++i)
        expectEqual(vertices[i], byHand(bytes.points[i]));
    EXPECT_EQ(vertices[1].red, 1.0f);
}

TEST_F(VertexDecoder, ManyPointsOnManyThreadsStandInTheOrderOfTheFile)
{
    bytes.points = CloudBytes::randomPoints(300001, 1000, 1000, 65536);
    bytes.gridWidth = bytes.gridHeight = 100;
    make(bytes);
    std::vector<Vertex> all(cloud.size());
    const cloud::VertexDecoder decoder(cloud);
    decoder.decodeAll(all.data());
    for (std::size_t i = 0; i < all.size(); i += 1013)
        expectEqual(all[i], byHand(bytes.points[i]));

    const cloud::PointSet set = cloud::thinnedPoints(cloud).value();
    std::vector<Vertex> some(set.size());
    decoder.decode(set, some.data());
    std::size_t next = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!set.contains(i)) continue;
        ASSERT_EQ(std::memcmp(&some[next++], &all[i], sizeof(Vertex)), 0) << i;
    }
    EXPECT_EQ(next, some.size());
    EXPECT_LT(next, all.size());
}
