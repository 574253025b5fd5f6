// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Point clouds in text and PLY.
#include "companions/pnotool/input/Cloud.h"
#include "companions/pnotool/input/EvenSelection.h"
#include "tests/support/TestFiles.h"

#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>

namespace {

using namespace pnotest;
using pnomaker::CloudPoint;
using testing::HasSubstr;

Bytes bytesOf(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

struct CloudRead
{
    explicit CloudRead(const std::string& text)
    {
        const TemporaryFolder folder;
        error = pnotool::readCloud(folder.write("云 é.txt", bytesOf(text)), points);
    }
    std::string error;
    std::vector<CloudPoint> points;
};

void expectPoint(const CloudPoint& point, float x, float y, float z, int red, int green, int blue)
{
    EXPECT_EQ(point.x, x);
    EXPECT_EQ(point.y, y);
    EXPECT_EQ(point.z, z);
    EXPECT_EQ(point.red, red);
    EXPECT_EQ(point.green, green);
    EXPECT_EQ(point.blue, blue);
}

TEST(Cloud, LinesOfThreeFourSixAndSevenNumbersAreRead)
{
    const CloudRead read("# a comment\n1 2 3\n\n1.5,-2e-1,+3\r\n  4;5;6;0.25\n7\t8 9 10 20 30\n1 1 1 -500 "
                         "255 300 -7\n// end\n");
    ASSERT_EQ(read.error, "");
    ASSERT_EQ(read.points.size(), 5u);
    expectPoint(read.points[0], 1, 2, 3, 200, 200, 200);
    expectPoint(read.points[1], 1.5F, -0.2F, 3, 200, 200, 200);
    expectPoint(read.points[2], 4, 5, 6, 200, 200, 200);
    expectPoint(read.points[3], 7, 8, 9, 10, 20, 30);
    expectPoint(read.points[4], 1, 1, 1, 255, 255, 0);
}

TEST(Cloud, TheCountOfAPtsFileIsNotAPoint)
{
    const CloudRead read("2\n1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n");
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.points.size(), 2u);
}

TEST(Cloud, ALineThatIsNoPointIsNamedByItsNumber)
{
    EXPECT_THAT(CloudRead("1 2 3\nhello\n").error, HasSubstr("line 2"));
    EXPECT_THAT(CloudRead("1 2 3\n1 2\n").error, HasSubstr("line 2"));
    EXPECT_THAT(CloudRead("1 2 3x\n").error, HasSubstr("line 1"));
    EXPECT_THAT(CloudRead("").error, HasSubstr("no points"));
    std::vector<CloudPoint> points;
    EXPECT_THAT(pnotool::readCloud("/none/such", points), HasSubstr("cannot be read"));
}

TEST(Cloud, AsciiPlyIsReadWhateverTheOrderOfItsProperties)
{
    const CloudRead read(
        "ply\nformat ascii 1.0\ncomment made\nelement vertex 2\nproperty uchar red\n"
        "property uchar green\nproperty uchar blue\nproperty float z\nproperty double y\n"
        "property float x\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
        "1 2 3 30 20 10\n4 5 6 33 22 11\n3 0 1 0\n");
    ASSERT_EQ(read.error, "");
    ASSERT_EQ(read.points.size(), 2u);
    expectPoint(read.points[0], 10, 20, 30, 1, 2, 3);
    expectPoint(read.points[1], 11, 22, 33, 4, 5, 6);
}

TEST(Cloud, BinaryPlyIsReadInBothByteOrders)
{
    for (const bool big : {false, true}) {
        std::string text =
            std::string("ply\nformat ") + (big ? "binary_big_endian" : "binary_little_endian") +
            " 1.0\nelement camera 1\nproperty float w\nelement vertex 1\nproperty float x\nproperty "
            "double y\nproperty short z\nproperty float red\nproperty float green\nproperty float "
            "blue\nend_header\n";
        const auto append = [&](auto value) {
            char bytes[sizeof(value)];
            std::memcpy(bytes, &value, sizeof(value));
            if (big) std::reverse(bytes, bytes + sizeof(value));
            text.append(bytes, sizeof(value));
        };
        append(99.0F);
        append(1.5F);
        append(-2.5);
        append(std::int16_t(7));
        append(1.0F);
        append(0.5F);
        append(0.0F);
        const CloudRead read(text);
        ASSERT_EQ(read.error, "");
        ASSERT_EQ(read.points.size(), 1u);
        expectPoint(read.points[0], 1.5F, -2.5F, 7, 255, 128, 0);
        EXPECT_THAT(CloudRead(text.substr(0, text.size() - 1)).error, HasSubstr("cut off"));
    }
}

TEST(Cloud, PlyThatCannotBeTakenIsNamed)
{
    const std::string head = "ply\nformat ascii 1.0\n";
    EXPECT_THAT(
        CloudRead("ply\nformat utf16 1.0\nelement vertex 1\nproperty float x\nproperty float y\nproperty "
                  "float z\nend_header\n")
            .error,
        HasSubstr("utf16"));
    EXPECT_THAT(CloudRead(head).error, HasSubstr("no end"));
    EXPECT_THAT(CloudRead(head + "end_header\n").error, HasSubstr("no vertices"));
    EXPECT_THAT(CloudRead(head + "element vertex 1\nproperty float x\nend_header\n1\n").error,
                HasSubstr("no x, y and z"));
    EXPECT_THAT(CloudRead(head + "element vertex 1\nproperty half x\nend_header\n1\n").error,
                HasSubstr("unknown type"));
    EXPECT_THAT(CloudRead(head +
                          "element vertex 1000000000000\nproperty float x\nproperty float y\nproperty float "
                          "z\nend_header\n1 2 3\n")
                    .error,
                HasSubstr("cut off"));
}

TEST(Cloud, AnElementWithoutPropertiesIsPassedOverWhateverItsCount)
{
    const CloudRead read(
        "ply\nformat binary_little_endian 1.0\nelement nothing 18446744073709551615\nelement "
        "vertex 1\nproperty uchar x\nproperty uchar y\nproperty uchar z\nend_header\n\1\2\3");
    ASSERT_EQ(read.error, "");
    ASSERT_EQ(read.points.size(), 1u);
    expectPoint(read.points[0], 1, 2, 3, 200, 200, 200);
}

TEST(Cloud, ALargeCloudIsKeptAsAnEvenSelection)
{
    pnotool::EvenSelection selection;
    for (int i = 0; i < 5000000; ++i)
        selection.add({static_cast<float>(i), 0, 0, 0, 0, 0});
    const std::vector<CloudPoint> points = selection.take();
    EXPECT_LT(points.size(), std::size_t(1) << 21);
    EXPECT_GT(points.size(), std::size_t(1) << 20);
    for (std::size_t i = 0; i < points.size(); ++i)
        ASSERT_EQ(points[i].x, static_cast<float>(4 * i));
}

} // namespace
