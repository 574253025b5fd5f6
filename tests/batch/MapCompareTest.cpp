// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The command "compare --map": files of the truth, of the map, and what is wrong with them.

#include "companions/batch/Alignment.h"
#include "companions/batch/CommandLine.h"
#include "companions/batch/CompareCommand.h"
#include "tests/batch/support/MadeUpRoom.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

void put(QByteArray& bytes, quint32 value)
{
    const quint32 little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

void put(QByteArray& bytes, float value)
{
    quint32 bits;
    std::memcpy(&bits, &value, sizeof bits);
    put(bytes, bits);
}

QByteArray plyOf(const TrueSurfaces& surfaces)
{
    QByteArray bytes = "ply\nformat binary_little_endian 1.0\nelement vertex " +
                       QByteArray::number(qulonglong(surfaces.points.size())) +
                       "\nproperty float x\nproperty float y\nproperty float z\nelement face " +
                       QByteArray::number(qulonglong(surfaces.triangles.size())) +
                       "\nproperty list uchar uint vertex_indices\nproperty uchar part\nend_header\n";
    for (const Eigen::Vector3f& point : surfaces.points)
        for (int axis = 0; axis < 3; ++axis)
            put(bytes, point[axis]);
    for (const TrueSurfaces::Triangle& triangle : surfaces.triangles) {
        bytes += '\3';
        for (const std::uint32_t corner : triangle.corner)
            put(bytes, corner);
        bytes += static_cast<char>(triangle.part);
    }
    return bytes;
}

/// A cloud file with cells of 1 mm, its origin 1 m beyond the points.
QByteArray cloudOf(const std::vector<Eigen::Vector3f>& points)
{
    const auto count = static_cast<quint32>(points.size());
    QByteArray bytes;
    for (const quint32 field :
         {10000u, 10000u, 10000u, 1u, 0u, 1u, 1u, 0u, 10u, 10u, 0u, 0u, count, 9 * count})
        put(bytes, field);
    for (int axis = 0; axis < 3; ++axis)
        for (const int shift : {0, 8})
            for (const Eigen::Vector3f& point : points)
                bytes += static_cast<char>(static_cast<int>((point[axis] + 1) * 1000) >> shift & 255);
    return bytes + QByteArray(static_cast<int>(3 * count), '\0');
}

class CompareMap : public testing::Test
{
protected:
    CompareMap()
    {
        QDir(m_folder.path()).mkpath(qs("work 漫/Tmp"));
        const QByteArray poses =
            R"("panoramas":[{"id":"A","position":[2,1,1.5],"rotation":[1,0,0,0,1,0,0,0,1],"plan_center":[270,270],)"
            R"("plan_src":"A-00000000.png"},{"id":"B","position":[1,2,1.5],"rotation":[1,0,0,0,1,0,0,0,1],)"
            R"("plan_center":[170,170],"plan_src":"A-00000000.png"}])";
        write("truth.json", "{\"options\":{\"max_range_m\":30,\"blind_cone_deg\":20}," + poses + "}");
        write("report.json", "{\"lidar\":true,\"links\":[{\"id0\":\"A\",\"id1\":\"B\"}]," + poses + "}");
        write("surfaces.ply", plyOf(room.surfaces));
        write("floorplan.json",
              R"({"storeys":[{"floor":0,"ceiling":2.6,"cut":1.2,"rooms":[{"low":[0,0],"high":[4,3]}],)"
              R"("walls":[[[-0.2,-0.2],[4.2,-0.2],[4.2,0],[-0.2,0]]],"openings":[],"furniture":[]}]})");
        write("work 漫/Tmp/A-00000000.tmp", cloudOf(room.cloud()));
    }

    static QString qs(const char* text) { return QString::fromUtf8(text); }
    QString path(const char* name) const { return m_folder.filePath(qs(name)); }

    void write(const char* name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write a test file");
    }

    int compare()
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = runCompare({path("report.json"), path("truth.json"), path("work 漫")});
        output = testing::internal::GetCapturedStdout();
        errors = testing::internal::GetCapturedStderr();
        return status;
    }

    MadeUpRoom room;
    QTemporaryDir m_folder;
    std::string output, errors;
};

TEST_F(CompareMap, PrintsWhatCloudAndPlanAreWorth)
{
    QImage plan(540, 440, QImage::Format_Grayscale8);
    plan.fill(255);
    for (int y = 370; y < 390; ++y)
        for (int x = 50; x < 490; ++x)
            plan.setPixel(x, y, 0);
    ASSERT_TRUE(plan.save(path("work 漫/Tmp/A-00000000.png")));
    ASSERT_EQ(compare(), ExitDone) << errors;
    EXPECT_THAT(output, testing::ContainsRegex("within 1.5 cm of a true surface +100.00 %"));
    EXPECT_THAT(output, testing::ContainsRegex("within 3 cm of a point +100.00 %"));
    EXPECT_THAT(output, HasSubstr("above 5 cm below the ceiling: 0"));
    EXPECT_THAT(output, testing::ContainsRegex("lamps below that kept +100.00 %"));
    EXPECT_THAT(output, HasSubstr("plan: 10.00 mm per pixel"));
    EXPECT_THAT(output, testing::ContainsRegex("precision[^%]+100.00 %"));
    EXPECT_THAT(output, HasSubstr("0.00 from the true one"));
}

TEST_F(CompareMap, WithoutAPlanTheCloudIsComparedAllTheSame)
{
    write("report.json", R"({"lidar":true,"panoramas":[{"id":"A","position":[2,1,1.5],)"
                         R"("rotation":[1,0,0,0,1,0,0,0,1]}]})");
    ASSERT_EQ(compare(), ExitDone) << errors;
    EXPECT_THAT(output, HasSubstr("plan: none"));
}

TEST_F(CompareMap, WhatIsMissingIsNamed)
{
    EXPECT_EQ(compare(), ExitFailed); // the report names a plan that is not there
    EXPECT_THAT(errors, HasSubstr("A-00000000.png is not a picture"));
    QFile::remove(path("work 漫/Tmp/A-00000000.tmp"));
    EXPECT_EQ(compare(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("holds no merged cloud"));
    QFile::remove(path("floorplan.json"));
    EXPECT_EQ(compare(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("floorplan.json cannot be read"));
    QFile::remove(path("surfaces.ply"));
    EXPECT_EQ(compare(), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("surfaces.ply cannot be read"));
}

TEST_F(CompareMap, SurfacesThatAreCutShortOrCountTooMuchAreRefused)
{
    const QByteArray whole = plyOf(room.surfaces);
    QByteArray huge = whole;
    huge.replace("element face ", "element face 99999999999");
    QByteArray corner = whole;
    corner[corner.size() - 3] = '\x7f'; // the last triangle names a point that is not there
    QByteArray part = whole;
    part[part.size() - 1] = '\x40';
    for (const QByteArray& bad :
         {whole.left(whole.size() - 1), whole.left(40), huge, corner, part, QByteArray()}) {
        write("surfaces.ply", bad);
        EXPECT_EQ(compare(), ExitFailed);
        EXPECT_THAT(errors, HasSubstr("is not a file of true surfaces"));
    }
}

TEST_F(CompareMap, ACloudThatIsNoneIsRefused)
{
    const QByteArray whole = cloudOf({{1, 1, 1}});
    QByteArray divisor = whole;
    divisor[12] = 0;
    QByteArray refinement = whole;
    refinement[32] = 0;
    QByteArray count = whole;
    count[51] = '\x7f';
    for (const QByteArray& bad :
         {whole.left(whole.size() - 1), divisor, refinement, count, QByteArray("x")}) {
        write("work 漫/Tmp/A-00000000.tmp", bad);
        EXPECT_EQ(compare(), ExitFailed);
        EXPECT_THAT(errors, HasSubstr("is not a point cloud"));
    }
}

TEST(CompareOptions, FilesAndTheFolderOfTheMap)
{
    const auto qs = [](const char* text) { return QString::fromLatin1(text); };
    const Parsed<CompareOptions> parsed =
        parseCompareOptions({qs("r.json"), qs("--map"), qs("/work"), qs("t.json")});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->report, qs("r.json"));
    EXPECT_EQ(parsed.options->truth, qs("t.json"));
    EXPECT_EQ(parsed.options->work, qs("/work"));
    EXPECT_FALSE(parseCompareOptions({qs("r.json")}).options);
    EXPECT_FALSE(parseCompareOptions({qs("r.json"), qs("t.json"), qs("--map")}).options);
    EXPECT_FALSE(parseCompareOptions({qs("r.json"), qs("t.json"), qs("--nonsense")}).options);
}

TEST(RigidAlignment, BringsMovedPosesHomeEvenASingleOne)
{
    using Eigen::AngleAxisd;
    using Eigen::Vector3d;
    const Eigen::Isometry3d move =
        Eigen::Translation3d(3, -2, 1) * AngleAxisd(0.7, Vector3d(0.1, 0.2, 1).normalized());
    std::vector<Pose> truth{{{1, 2, 3}, AngleAxisd(0.4, Vector3d::UnitZ()).toRotationMatrix()},
                            {{4, 2, 3}, AngleAxisd(-1.4, Vector3d::UnitZ()).toRotationMatrix()}};
    for (const std::size_t count : {2, 1}) {
        truth.resize(count);
        std::vector<Pose> estimated;
        for (const Pose& pose : truth)
            estimated.push_back({move * pose.position, move.rotation() * pose.rotation});
        EXPECT_LT((rigidAlignment(estimated, truth).matrix() - move.inverse().matrix()).norm(), 1e-9);
    }
}

} // namespace
