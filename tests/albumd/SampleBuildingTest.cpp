// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The made-up building as an album: under each marker the page shows what the panorama file shows there.

#include "linking/pictures/PanoramaPicture.h"
#include "tests/albumd/Client.h"
#include "tests/support/Browser.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>

using namespace albumtest;

namespace {

constexpr double kPi = 3.14159265358979;
using Vector = std::array<double, 3>;

struct Station
{
    std::string id;
    QString file;
    Vector position{};
    std::array<double, 9> rotation{}; ///< world from panorama, row by row
};

/// A world vector in the panorama's frame.
Vector inPanorama(const Station& station, const Vector& v)
{
    const auto& r = station.rotation;
    return {r[0] * v[0] + r[3] * v[1] + r[6] * v[2], r[1] * v[0] + r[4] * v[1] + r[7] * v[2],
            r[2] * v[0] + r[5] * v[1] + r[8] * v[2]};
}

struct Direction
{
    double azimuth, polar;
};

/// Where the floor point below another station is seen.
Direction floorBelow(const Station& from, const Station& to)
{
    const Vector v = inPanorama(
        from, {to.position[0] - from.position[0], to.position[1] - from.position[1], -from.position[2]});
    return {std::atan2(v[1], v[0]), std::atan2(std::hypot(v[0], v[1]), v[2])};
}

double heading(const Station& station)
{
    return std::atan2(station.rotation[3], station.rotation[0]);
}

Vector mean(const QImage& picture, QPointF place, int half)
{
    Vector sum{};
    for (int dy = -half; dy <= half; ++dy)
        for (int dx = -half; dx <= half; ++dx) {
            const QColor colour = picture.pixelColor(place.toPoint() + QPoint(dx, dy));
            sum[0] += colour.red();
            sum[1] += colour.green();
            sum[2] += colour.blue();
        }
    for (double& each : sum)
        each /= (2 * half + 1) * (2 * half + 1);
    return sum;
}

class SampleBuilding : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!Browser::installed()) GTEST_SKIP() << "chromium and chromedriver are not installed";
        QProcess make;
        make.start(QStringLiteral(SAMPLESCENE_PROGRAM),
                   {QStringLiteral("--out"), m_folder.path(), QStringLiteral("--count"), QStringLiteral("2"),
                    QStringLiteral("--no-lidar"), QStringLiteral("--width"), QStringLiteral("2048"),
                    QStringLiteral("--light-spacing"), QStringLiteral("0.4")});
        ASSERT_TRUE(make.waitForFinished(-1));
        QFile truth(m_folder.filePath(QStringLiteral("truth.json")));
        ASSERT_TRUE(truth.open(QIODevice::ReadOnly));
        const QJsonArray all =
            QJsonDocument::fromJson(truth.readAll()).object().value(QLatin1String("panoramas")).toArray();
        ASSERT_EQ(all.size(), 2);
        for (int i = 0; i < 2; ++i)
            stations[i] = stationFrom(all[i].toObject());
        publish();
    }

    Station stationFrom(const QJsonObject& said) const
    {
        Station station;
        station.id = said.value(QLatin1String("id")).toString().toStdString();
        station.file = m_folder.filePath(said.value(QLatin1String("file")).toString());
        for (int i = 0; i < 3; ++i)
            station.position[i] = said.value(QLatin1String("position")).toArray()[i].toDouble();
        for (int i = 0; i < 9; ++i)
            station.rotation[i] = said.value(QLatin1String("rotation")).toArray()[i].toDouble();
        return station;
    }

    void publish()
    {
        ASSERT_TRUE(client.login());
        for (const Station& station : stations) {
            QFile file(station.file);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            ASSERT_EQ(client.upload(station.id, pnotest::Bytes(bytes.begin(), bytes.end())).body, "OK");
        }
        album = client.createAlbum({stations[0].id, stations[1].id}, "样板间");
        for (const Station& station : stations)
            client.post("/set_albumpano_location",
                        {{"token", client.token}, {"albumid", album}, {"panoid", station.id}},
                        locationText(station.position[0], station.position[1], heading(station)));
        const Direction there = floorBelow(stations[0], stations[1]);
        const Direction back = floorBelow(stations[1], stations[0]);
        const LinkValues values{-there.azimuth, -back.azimuth - kPi, back.polar, there.polar};
        ASSERT_EQ(client
                      .post("/add_panolink",
                            {{"token", client.token},
                             {"albumid", album},
                             {"panoid0", stations[0].id},
                             {"panoid1", stations[1].id}},
                            linkText(stations[0].id, stations[1].id, values))
                      .body,
                  "OK");
    }

    static bool shows(Browser& browser, const std::string& id)
    {
        return browser.waitFor(
            QStringLiteral("const d = document.getElementById('view').dataset; return d.panorama === "
                           "'%1' && d.sharp === 'yes' && d.blending === 'no';")
                .arg(QString::fromStdString(id)),
            60'000);
    }

    /// Turns to the one marker, and compares what lies under it with the panorama's own picture.
    static void expectRightPicture(Browser& browser, const Station& from, const Station& to)
    {
        browser.run(QStringLiteral("const v = document.getElementById('view'); v.focus();"));
        browser.press(Browser::kTab);
        const Direction floor = floorBelow(from, to);
        ASSERT_TRUE(browser.waitFor(
            QStringLiteral("const off = Number(document.getElementById('view').dataset.yaw) - %1;"
                           "return Math.abs(Math.sin(off)) < 1e-5 && Math.cos(off) > 0;")
                .arg(floor.azimuth, 0, 'g', 17)));
        ASSERT_TRUE(shows(browser, from.id));
        const QJsonObject at =
            browser
                .run(QStringLiteral("const r = document.querySelector('.ring').getBoundingClientRect();"
                                    "return {x: r.x + r.width / 2, y: r.y + r.height / 2};"))
                .toObject();
        const QPointF marker(at.value(QLatin1String("x")).toDouble(),
                             at.value(QLatin1String("y")).toDouble());
        browser.run(QStringLiteral("for (const e of document.querySelectorAll('#view > :not(canvas)')) "
                                   "e.style.visibility = 'hidden';"));
        const QImage shown = browser.picture();
        browser.run(QStringLiteral("for (const e of document.querySelectorAll('#view > :not(canvas)')) "
                                   "e.style.visibility = '';"));
        QImage picture(4096, 2048, QImage::Format_RGB888);
        ASSERT_TRUE(assemblePanorama(from.file, &picture));
        const QPointF place((kPi - floor.azimuth) / (2 * kPi) * 4096, floor.polar / kPi * 2048);
        const Vector is = mean(shown, marker, 5);
        const Vector wanted = mean(picture, place, 6);
        for (int channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(is[channel], wanted[channel], 12) << "channel " << channel << " of " << from.id;
    }

    QTemporaryDir m_folder;
    AlbumService service{QStringLiteral(ALBUMD_PROGRAM)};
    Client client{service.port()};
    Station stations[2];
    std::string album;
};

TEST_F(SampleBuilding, UnderEachMarkerThePageShowsWhatThePanoramaShowsThere)
{
    Browser browser;
    ASSERT_TRUE(browser.ready()) << browser.error().toStdString();
    ASSERT_TRUE(browser.open(service.baseUrl() + QStringLiteral("album/") + QString::fromStdString(album)));
    ASSERT_TRUE(shows(browser, stations[0].id));
    expectRightPicture(browser, stations[0], stations[1]);
    browser.press(Browser::kEnter);
    ASSERT_TRUE(shows(browser, stations[1].id));
    // The way there leads straight on: the heading in the world is that of the step.
    const double yaw =
        browser.run(QStringLiteral("return Number(document.getElementById('view').dataset.yaw);")).toDouble();
    const double step = std::atan2(stations[1].position[1] - stations[0].position[1],
                                   stations[1].position[0] - stations[0].position[0]);
    EXPECT_NEAR(std::remainder(heading(stations[1]) + yaw - step, 2 * kPi), 0, kPi / 180);
    expectRightPicture(browser, stations[1], stations[0]);
}

} // namespace
