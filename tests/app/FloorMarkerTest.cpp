// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The made-up building, imported and linked in the window with the linking library itself: the floor markers
// of its links lie on the true floor points.

#include "app/Tourwright.h"
#include "linking/NexomapLinker.h"
#include "project/ProjectFolders.h"
#include "tests/app/support/DialogRobot.h"
#include "views/HotSpotWidget.h"
#include "views/LinkIcon.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>

namespace {

using Point = std::array<double, 3>;

struct TrueStation
{
    Point position{}, foot{};
    std::array<double, 9> rotation{};
};

/// Azimuth and polar angle at which a station sees a point of the world.
sphere::SpherePoint seenFrom(const TrueStation& station, const Point& point)
{
    Point p{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            p[i] += station.rotation[3 * k + i] * (point[k] - station.position[k]);
    return {std::atan2(p[1], p[0]), std::atan2(std::hypot(p[0], p[1]), p[2])};
}

double degreesBetween(sphere::SpherePoint a, sphere::SpherePoint b)
{
    const double cosine = std::cos(a.polar) * std::cos(b.polar) +
                          std::sin(a.polar) * std::sin(b.polar) * std::cos(a.azimuth - b.azimuth);
    return std::acos(std::min(1.0, cosine)) * 180.0 / sphere::kPi;
}

class SampleBuilding : public testing::Test
{
protected:
    void make()
    {
        QProcess program;
        program.start(QStringLiteral(TW_PROGRAMS "/samplescene"),
                      {QStringLiteral("--out"), m_folder.filePath(QStringLiteral("scene")),
                       QStringLiteral("--count"), QStringLiteral("4"), QStringLiteral("--width"),
                       QStringLiteral("2048"), QStringLiteral("--light-spacing"), QStringLiteral("0.4")});
        ASSERT_TRUE(program.waitForFinished(-1));
        ASSERT_EQ(program.exitCode(), 0);
        QFile file(m_folder.filePath(QStringLiteral("scene/truth.json")));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QJsonArray panoramas =
            QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("panoramas")).toArray();
        for (const auto& entry : panoramas) {
            const QJsonObject panorama = entry.toObject();
            TrueStation station;
            for (int i = 0; i < 3; ++i)
                station.position[std::size_t(i)] =
                    panorama.value(QStringLiteral("position")).toArray()[i].toDouble();
            for (int i = 0; i < 9; ++i)
                station.rotation[std::size_t(i)] =
                    panorama.value(QStringLiteral("rotation")).toArray()[i].toDouble();
            station.foot = station.position;
            station.foot[2] -= panorama.value(QStringLiteral("camera_height")).toDouble();
            m_truth[panorama.value(QStringLiteral("id")).toString().toStdString()] = station;
            m_files << m_folder.filePath(QStringLiteral("scene/")) +
                           panorama.value(QStringLiteral("file")).toString();
        }
    }

    void link()
    {
        const ProjectFolders folders = makeProjectFolders(m_folder.path(), QStringLiteral("en_US")).folders;
        window = std::make_unique<Tourwright>(
            std::make_unique<NexomapLinker>(asFolder(QStringLiteral(TW_PROGRAMS))));
        window->handOver(folders.application, folders.working, folders.output, folders.viewer);
        window->resize(1366, 768);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        DialogRobot robot(window.get());
        robot.choose(m_files);
        QTest::mouseClick(find<QPushButton>("buttonAddPano"), Qt::LeftButton);
        QTest::mouseClick(find<QPushButton>("buttonAutoGenLink"), Qt::LeftButton);
    }

    template <typename Widget>
    Widget* find(const char* name) const
    {
        return window->findChild<Widget*>(QLatin1String(name));
    }

    QTemporaryDir m_folder;
    QStringList m_files;
    std::map<std::string, TrueStation> m_truth;
    std::unique_ptr<Tourwright> window;
};

TEST_F(SampleBuilding, MarkersInBothViewsLieOnTheTrueFloorPointsWithinADegree)
{
    make();
    ASSERT_EQ(m_truth.size(), 4u);
    link();
    auto* table = find<QTableWidget>("tableLink");
    ASSERT_GE(table->rowCount(), 2);
    for (int row = 0; row < table->rowCount(); ++row) {
        table->scrollToItem(table->item(row, 1));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualItemRect(table->item(row, 1)).center());
        for (const int side : {0, 1}) {
            const PanoLink* link = find<HotSpotWidget>(side ? "widgetLink1" : "widgetLink0")->link();
            ASSERT_TRUE(link) << "row " << row;
            ASSERT_EQ(link, window->project().links[std::size_t(row)].get());
            const std::string here = side ? link->name_1 : link->name_0,
                              there = side ? link->name_0 : link->name_1;
            const sphere::SpherePoint truth = seenFrom(m_truth.at(here), m_truth.at(there).foot);
            EXPECT_LT(degreesBetween(linkMarkerPoint(*link, side), truth), 1.0)
                << here << " to " << there << ", side " << side;
        }
    }
}

} // namespace
