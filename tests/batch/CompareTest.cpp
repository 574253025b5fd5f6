// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Poses and links against a truth.

#include "companions/batch/Alignment.h"
#include "companions/batch/CommandLine.h"
#include "companions/batch/CompareCommand.h"

#include <Eigen/Geometry>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Eigen::AngleAxisd;
using Eigen::Matrix3d;
using Eigen::Vector3d;
using testing::HasSubstr;

constexpr double kRadians = 3.141592653589793 / 180.0;

Pose pose(double x, double y, double z, double headingDegrees)
{
    return {{x, y, z}, AngleAxisd(headingDegrees * kRadians, Vector3d::UnitZ()).toRotationMatrix()};
}

const std::vector<Pose> kBuilding{pose(0, 0, 1.5, 10), pose(4, 0, 1.5, 100), pose(4, 5, 1.6, -70),
                                  pose(0, 6, 1.4, 33), pose(9, 2, 1.5, 170)};

/// The same building as seen from another frame.
std::vector<Pose> moved(std::vector<Pose> poses, double scale = 1.0)
{
    const Matrix3d turn = AngleAxisd(0.7, Vector3d(0.1, 0.2, 1).normalized()).toRotationMatrix();
    for (Pose& p : poses)
        p = {scale * (turn * p.position) + Vector3d(3, -2, 1), turn * p.rotation};
    return poses;
}

TEST(Alignment, ARigidMotionOfTheTruthHasNoError)
{
    for (const PoseError& error : alignedErrors(moved(kBuilding), kBuilding, Scale::Known)) {
        EXPECT_LT(error.rotation_deg, 1e-5);
        EXPECT_LT(error.heading_deg, 1e-5);
        EXPECT_LT(error.position_m, 1e-9);
    }
}

TEST(Alignment, ASimilarityHasNoErrorOnlyWhereTheScaleIsUnknown)
{
    for (const PoseError& error : alignedErrors(moved(kBuilding, 0.4), kBuilding, Scale::Unknown))
        EXPECT_LT(error.position_m, 1e-9);
    double worst = 0;
    for (const PoseError& error : alignedErrors(moved(kBuilding, 0.4), kBuilding, Scale::Known))
        worst = std::max(worst, error.position_m);
    EXPECT_GT(worst, 1.0);
}

TEST(Alignment, OneTurnedPanoramaIsFoundAndTurnsNoOther)
{
    std::vector<Pose> estimated = moved(kBuilding);
    estimated[2].rotation *= AngleAxisd(20 * kRadians, Vector3d::UnitZ()).toRotationMatrix();
    const std::vector<PoseError> errors = alignedErrors(estimated, kBuilding, Scale::Known);
    for (std::size_t i = 0; i < errors.size(); ++i)
        EXPECT_NEAR(errors[i].rotation_deg, i == 2 ? 20 : 0, 1e-3) << i;
    EXPECT_NEAR(errors[2].heading_deg, 20, 1e-3);
}

TEST(Alignment, ATiltIsARotationErrorAndHardlyAHeadingError)
{
    std::vector<Pose> estimated = kBuilding;
    estimated[0].rotation *= AngleAxisd(3 * kRadians, Vector3d::UnitX()).toRotationMatrix();
    const PoseError error = alignedErrors(estimated, kBuilding, Scale::Known)[0];
    EXPECT_NEAR(error.rotation_deg, 3, 1e-3);
    EXPECT_LT(error.heading_deg, 0.01);
}

TEST(Alignment, StationsOnALineAndTwoStationsAreAlignedByTheirOrientations)
{
    const std::vector<Pose> line{pose(0, 0, 1.5, 0), pose(3, 0, 1.5, 50), pose(7, 0, 1.5, 90)};
    for (const std::vector<Pose>& truth : {line, std::vector<Pose>(line.begin(), line.begin() + 2)})
        for (const Scale scale : {Scale::Known, Scale::Unknown})
            for (const PoseError& error : alignedErrors(moved(truth), truth, scale)) {
                EXPECT_LT(error.position_m, 1e-6);
                EXPECT_LT(error.rotation_deg, 1e-5);
            }
}

TEST(Alignment, ASinglePanoramaIsAlwaysRight)
{
    const std::vector<PoseError> errors =
        alignedErrors({pose(5, 5, 5, 5)}, {pose(0, 0, 0, 0)}, Scale::Unknown);
    EXPECT_LT(errors.at(0).position_m, 1e-12);
    EXPECT_LT(errors.at(0).rotation_deg, 1e-6);
}

TEST(Alignment, TheMedianOfAnEvenCountIsTheMiddle)
{
    EXPECT_EQ(median({3, 1, 2}), 2);
    EXPECT_EQ(median({4, 1, 2, 3}), 2.5);
    EXPECT_EQ(median({}), 0);
}

class Compare : public testing::Test
{
protected:
    QString write(const char* name, const QByteArray& text) const
    {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("cannot write a test file");
        return file.fileName();
    }

    int compare(const QByteArray& report, const QByteArray& truth)
    {
        const QString reportPath = write("report.json", report);
        const QString truthPath = write("truth.json", truth);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = runCompare({reportPath, truthPath, QString()});
        output = testing::internal::GetCapturedStdout();
        errors = testing::internal::GetCapturedStderr();
        return status;
    }

    QTemporaryDir m_folder;
    std::string output, errors;
};

QByteArray panorama(const char* id, const char* position)
{
    return QByteArray("{\"id\":\"") + id + "\",\"position\":" + position +
           ",\"rotation\":[1,0,0,0,1,0,0,0,1]}";
}

const QByteArray kTruth =
    "{\"panoramas\":[" + panorama("A", "[0,0,0]") + "," + panorama("B", "[3,0,0]") + "," +
    panorama("C", "[0,4,0]") + "," + panorama("D", "[30,4,0]") +
    "],\"pairs\":[{\"id0\":\"A\",\"id1\":\"B\",\"sees\":true},"
    "{\"id0\":\"A\",\"id1\":\"C\",\"sees\":true},{\"id0\":\"B\",\"id1\":\"C\",\"sees\":false},"
    "{\"id0\":\"A\",\"id1\":\"D\",\"sees\":true}]}";

TEST_F(Compare, TheTableTellsErrorsGroupsAndLinks)
{
    const QByteArray report = "{\"lidar\":true,\"groups\":2,\"panoramas\":[" + panorama("A", "[10,0,0]") +
                              "," + panorama("B", "[13,0,0]") + "," + panorama("C", "[10,4,0]") + "," +
                              panorama("D", "[0,0,0]") +
                              "],\"links\":[{\"id0\":\"B\",\"id1\":\"A\",\"mode\":0},"
                              "{\"id0\":\"B\",\"id1\":\"C\",\"mode\":2}]}";
    ASSERT_EQ(compare(report, kTruth), ExitDone) << errors;
    EXPECT_THAT(output, HasSubstr("panoramas: 4 of 4, groups: 2, in the largest: 3"));
    EXPECT_THAT(output, HasSubstr("apart from them: D"));
    EXPECT_THAT(output,
                HasSubstr("links found: 2, between panoramas that truly see each other: 1, false: 1"));
    EXPECT_THAT(output, HasSubstr("visible neighbours nearer than 6 m: 2, linked: 1 (50 %)"));
    EXPECT_THAT(output, HasSubstr("rigid motion"));
    EXPECT_THAT(output, testing::ContainsRegex("median +0\\.000 +0\\.000 +0\\.00 +0\\.00"));
}

TEST_F(Compare, WithoutLidarTheAlignmentIsASimilarity)
{
    const QByteArray report = "{\"lidar\":false,\"groups\":1,\"panoramas\":[" + panorama("A", "[0,0,0]") +
                              "," + panorama("B", "[6,0,0]") + "," + panorama("C", "[0,8,0]") +
                              "],\"links\":[{\"id0\":\"A\",\"id1\":\"B\"},{\"id0\":\"A\",\"id1\":\"C\"}]}";
    ASSERT_EQ(compare(report, kTruth), ExitDone) << errors;
    EXPECT_THAT(output, HasSubstr("similarity (no lidar)"));
    EXPECT_THAT(output, HasSubstr("panoramas: 3 of 4"));
    EXPECT_THAT(output, testing::ContainsRegex("largest +0\\.000 +0\\.000 +0\\.00 +0\\.00"));
}

TEST_F(Compare, AMissedPanoramaStillCountsAmongTheVisibleNeighbours)
{
    const QByteArray report = "{\"panoramas\":[" + panorama("A", "[0,0,0]") + "]}";
    ASSERT_EQ(compare(report, kTruth), ExitDone) << errors;
    EXPECT_THAT(output, HasSubstr("nearer than 6 m: 2, linked: 0 (0 %)"));
}

TEST_F(Compare, BadFilesAreNamed)
{
    EXPECT_EQ(compare("{", kTruth), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("report.json, byte 1"));
    EXPECT_EQ(compare("{}", kTruth), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("report.json holds no panoramas"));
    EXPECT_EQ(compare("{\"panoramas\":[{\"id\":\"A\",\"position\":[1,2],\"rotation\":[]}]}", kTruth),
              ExitFailed);
    EXPECT_THAT(errors, HasSubstr("\"A\" lacks"));
    EXPECT_EQ(compare("{\"panoramas\":[" + panorama("Z", "[0,0,0]") + "]}", kTruth), ExitFailed);
    EXPECT_THAT(errors, HasSubstr("no panorama in common"));
    EXPECT_EQ(runCompare({QStringLiteral("/nowhere.json"), QStringLiteral("/nowhere.json"), QString()}),
              ExitFailed);
}

} // namespace
