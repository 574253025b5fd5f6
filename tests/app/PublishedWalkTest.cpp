// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The made-up building, linked and decorated in the window, uploaded through its dialog to a real album
// service and walked in a browser: what the author made is what a visitor meets.

#include "linking/NexomapLinker.h"
#include "linking/pictures/PanoramaPicture.h"
#include "project/ProjectFolders.h"
#include "tests/app/support/UploadTest.h"
#include "tests/support/AlbumService.h"
#include "tests/support/Browser.h"
#include "views/HotSpotWidget.h"

#include <QColor>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTabBar>
#include <QTest>
#include <QWindow>

#include <array>
#include <cmath>
#include <map>

using albumtest::Browser;

namespace {

constexpr double kDegree = sphere::kPi / 180;
const QString kCaption = QStringLiteral("图 <b>1</b> & \"door\"");
const QString kText = QStringLiteral("a<b & c");
const QColor kPhotoColour(200, 40, 120);

struct Station
{
    QString file;
    std::array<double, 3> position{};
    std::array<double, 9> rotation{}; ///< world from panorama, row by row
    double cameraHeight = 0;          ///< above the floor, metres

    double heading() const { return std::atan2(rotation[3], rotation[0]); }
};

/// Where a station sees the floor below another one.
sphere::SpherePoint floorBelow(const Station& from, const Station& to)
{
    const std::array<double, 3> way{to.position[0] - from.position[0], to.position[1] - from.position[1],
                                    to.position[2] - to.cameraHeight - from.position[2]};
    std::array<double, 3> seen{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            seen[i] += from.rotation[3 * k + i] * way[k];
    return {std::atan2(seen[1], seen[0]), std::atan2(std::hypot(seen[0], seen[1]), seen[2])};
}

double angleBetween(sphere::SpherePoint a, sphere::SpherePoint b)
{
    const double cosine = std::cos(a.polar) * std::cos(b.polar) +
                          std::sin(a.polar) * std::sin(b.polar) * std::cos(a.azimuth - b.azimuth);
    return std::acos(std::min(1.0, cosine));
}

std::array<double, 3> mean(const QImage& picture, QPointF place, int half)
{
    std::array<double, 3> sum{};
    const double count = (2 * half + 1) * (2 * half + 1);
    for (int dy = -half; dy <= half; ++dy)
        for (int dx = -half; dx <= half; ++dx) {
            const QColor colour = picture.pixelColor(place.toPoint() + QPoint(dx, dy));
            sum[0] += colour.red() / count;
            sum[1] += colour.green() / count;
            sum[2] += colour.blue() / count;
        }
    return sum;
}

class PublishedWalk : public UploadTest
{
protected:
    PublishedWalk()
        : UploadTest(std::make_unique<NexomapLinker>(asFolder(QStringLiteral(TW_PROGRAMS))))
    {}

    void SetUp() override
    {
        if (!Browser::installed()) GTEST_SKIP() << "chromium and chromedriver are not installed";
        ASSERT_FALSE(albumd.baseUrl().isEmpty());
        useService(albumd.baseUrl());
        makeBuilding();
        makeTour();
        decorate();
        publish();
    }

    void makeBuilding()
    {
        QProcess scene;
        scene.start(QStringLiteral(TW_PROGRAMS "/samplescene"),
                    {QStringLiteral("--out"), inFolder(QStringLiteral("scene")), QStringLiteral("--count"),
                     QStringLiteral("2"), QStringLiteral("--width"), QStringLiteral("2048"),
                     QStringLiteral("--light-spacing"), QStringLiteral("0.5")});
        ASSERT_TRUE(scene.waitForFinished(-1));
        ASSERT_EQ(scene.exitCode(), 0) << scene.readAllStandardError().toStdString();
        QFile truth(inFolder(QStringLiteral("scene/truth.json")));
        ASSERT_TRUE(truth.open(QIODevice::ReadOnly));
        const QJsonArray all =
            QJsonDocument::fromJson(truth.readAll()).object().value(QLatin1String("panoramas")).toArray();
        for (const QJsonValue& each : all) {
            const QJsonObject said = each.toObject();
            Station station;
            station.file = inFolder(QStringLiteral("scene/") + said.value(QLatin1String("file")).toString());
            station.cameraHeight = said.value(QLatin1String("camera_height")).toDouble();
            for (int i = 0; i < 3; ++i)
                station.position[std::size_t(i)] =
                    said.value(QLatin1String("position")).toArray()[i].toDouble();
            for (int i = 0; i < 9; ++i)
                station.rotation[std::size_t(i)] =
                    said.value(QLatin1String("rotation")).toArray()[i].toDouble();
            stations[said.value(QLatin1String("id")).toString()] = station;
            m_files << station.file;
        }
        ASSERT_EQ(stations.size(), 2u);
    }

    /// Linked and mapped by the linking library itself.
    void makeTour()
    {
        import(m_files);
        ASSERT_EQ(project().panoramas.size(), 2u);
        click("buttonAutoGenLink");
        ASSERT_EQ(project().links.size(), 1u);
        click("radioDensityLow");
        click("buttonGenMap");
        ASSERT_TRUE(robot->boxes.empty());
        chooseEntry("comboSelEntryPano", 1);
    }

    /// A photo straight ahead in the entry panorama, and a text to the side of it.
    void decorate()
    {
        clickListRow(1);
        auto* tabs = find<QTabWidget>("tabMain")->tabBar();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
        auto* view = find<HotSpotWidget>("widgetPhoto");
        ASSERT_TRUE(view->isVisible());
        view->grabFramebuffer();
        QImage photo(320, 240, QImage::Format_RGB888);
        photo.fill(kPhotoColour);
        ASSERT_TRUE(photo.save(inFolder(QStringLiteral("门.jpg"))));
        click("buttonAddPhoto");
        robot->choose(inFolder(QStringLiteral("门.jpg")));
        click("buttonSelPhoto");
        write(find<QLineEdit>("linePhotoCaption"), kCaption);

        // Below the photo's icon; through the window system, which knows that the button is down.
        QWindow* screen = window->windowHandle();
        const QPoint from = view->mapTo(window.get(), view->rect().center() + QPoint(0, 80));
        QTest::mousePress(screen, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 6; ++step) {
            QTest::mouseMove(screen, from + QPoint(20 * step, 0));
            view->grabFramebuffer();
        }
        QTest::mouseRelease(screen, Qt::LeftButton, {}, from + QPoint(120, 0));
        view->grabFramebuffer();
        auto* hotspots = find<QTabWidget>("tabHotspot")->tabBar();
        QTest::mouseClick(hotspots, Qt::LeftButton, {}, hotspots->tabRect(1).center());
        click("buttonAddInfo");
        write(find<QLineEdit>("lineInfoCaption"), QStringLiteral("说明"));
        write(find<QPlainTextEdit>("plainInfo"), kText);

        const PanoNode& node = *project().panoramas[1];
        ASSERT_EQ(node.photos.size(), 1);
        ASSERT_EQ(node.photos[0].caption, kCaption);
        ASSERT_EQ(node.infos.size(), 1);
        ASSERT_EQ(node.infos[0].content, kText);
        ASSERT_GT(std::abs(node.infos[0].sphere_x), 0.1);
    }

    static void write(QWidget* field, const QString& text)
    {
        field->setFocus();
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }

    void publish()
    {
        openDialog();
        fillIn(QLatin1String(albumtest::kAccount), QLatin1String(albumtest::kPassword),
               QStringLiteral("样板间"));
        clickInDialog("buttonUpload");
        expectBox(waitForBox(150000), QMessageBox::Information, QStringLiteral("Upload File"),
                  QStringLiteral("Uploading completed!"));
        ASSERT_EQ(state(), kClosed) << replies->count() << " replies; " << albumd.output().toStdString();
        albumUrl = albumd.baseUrl() + QStringLiteral("album/") + project().cloud.album_id;
    }

    QString id(int panorama)
    {
        return QString::fromLatin1(project().panoramas[static_cast<std::size_t>(panorama)]->name());
    }

    static QString text(Browser& browser, const char* script)
    {
        return browser.run(QLatin1String(script)).toString();
    }

    static QPointF middleOf(Browser& browser, const QString& selector)
    {
        const QJsonObject at =
            browser
                .run(QStringLiteral("const r = document.querySelector(\"%1\").getBoundingClientRect();"
                                    "return {x: r.x + r.width / 2, y: r.y + r.height / 2};")
                         .arg(selector))
                .toObject();
        return {at.value(QLatin1String("x")).toDouble(), at.value(QLatin1String("y")).toDouble()};
    }

    static bool shows(Browser& browser, const QString& panorama)
    {
        return browser.waitFor(
            QStringLiteral("const d = document.getElementById('view').dataset; return d.panorama === "
                           "'%1' && d.sharp === 'yes' && d.blending === 'no';")
                .arg(panorama),
            60'000);
    }

    /// Direction in the panorama of a place on the page: the larger side spans 90 degrees at zoom 1.
    static sphere::SpherePoint seenAt(Browser& browser, QPointF place)
    {
        const QJsonArray view =
            browser
                .run(QStringLiteral("const v = document.getElementById('view'); const d = v.dataset; return ["
                                    "d.yaw, d.polar, d.zoom, v.clientWidth, v.clientHeight].map(Number);"))
                .toArray();
        const double yaw = view[0].toDouble(), polar = view[1].toDouble(), width = view[3].toDouble(),
                     height = view[4].toDouble();
        const double pixels = view[2].toDouble() * std::max(width, height) / 2;
        const double left = -(place.x() - width / 2) / pixels, up = -(place.y() - height / 2) / pixels;
        const double ahead = std::sin(polar) - up * std::cos(polar),
                     z = std::cos(polar) + up * std::sin(polar);
        return {yaw + std::atan2(left, ahead), std::atan2(std::hypot(ahead, left), z)};
    }

    static double yaw(Browser& browser) { return text(browser, "return view.dataset.yaw;").toDouble(); }

    /// Turns with the keyboard to the ring that leads to `target`, which has to lie on the true floor point
    /// with the right picture under it, and clicks on it.
    void walk(Browser& browser, const QString& from, const QString& target)
    {
        const QString ring = QStringLiteral(".ring[data-target='%1']").arg(target);
        browser.run(QStringLiteral("document.getElementById('view').focus();"));
        const QString focused = QStringLiteral("return document.activeElement.matches(\"%1\");").arg(ring);
        for (int tries = 0; tries < 10 && !browser.run(focused).toBool(); ++tries)
            browser.press(Browser::kTab);
        ASSERT_TRUE(browser.run(focused).toBool()) << "no marker of " << from.toStdString();
        const sphere::SpherePoint truth = floorBelow(stations[from], stations[target]);
        ASSERT_TRUE(browser.waitFor(QStringLiteral("return Math.cos(view.dataset.yaw - %1) > 0.999;")
                                        .arg(truth.azimuth, 0, 'g', 17)));
        ASSERT_TRUE(shows(browser, from));

        const QPointF place = middleOf(browser, ring);
        const sphere::SpherePoint seen = seenAt(browser, place);
        EXPECT_LT(angleBetween(seen, truth), kDegree);
        const QString hide = QStringLiteral(
            "for (const e of document.querySelectorAll('#view > :not(canvas)')) e.style.visibility = '%1';");
        browser.run(hide.arg(QStringLiteral("hidden")));
        const QImage shown = browser.picture();
        browser.run(hide.arg(QString()));
        QImage picture(4096, 2048, QImage::Format_RGB888);
        ASSERT_TRUE(assemblePanorama(stations[from].file, &picture));
        const double azimuth = std::remainder(seen.azimuth, 2 * sphere::kPi);
        const auto is = mean(shown, place, 5);
        const auto wanted = mean(picture,
                                 QPointF((sphere::kPi - azimuth) / (2 * sphere::kPi) * picture.width(),
                                         seen.polar / sphere::kPi * picture.height()),
                                 6);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(is[channel], wanted[channel], 12) << "channel " << channel;

        const double before = stations[from].heading() + yaw(browser);
        browser.click(place);
        ASSERT_TRUE(shows(browser, target));
        const double after = stations[target].heading() + yaw(browser);
        EXPECT_NEAR(std::remainder(after - before, 2 * sphere::kPi), 0, kDegree);
        const QImage there = browser.picture();
        int changed = 0;
        for (int y = 0; y < there.height(); y += 20)
            for (int x = 0; x < there.width(); x += 20)
                changed += there.pixel(x, y) != shown.pixel(x, y);
        EXPECT_GT(changed, there.width() / 20 * (there.height() / 20) / 2);
    }

    QByteArray fetch(const QString& path)
    {
        QNetworkAccessManager network;
        QEventLoop loop;
        QNetworkReply* reply = network.get(QNetworkRequest(QUrl(albumd.baseUrl() + path)));
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return reply->readAll();
    }

    /// The cloud has points on the floor around a station.
    static void expectFloorUnder(const QImage& top, QPoint station)
    {
        int covered = 0, all = 0;
        for (int dy = -30; dy <= 30; dy += 2)
            for (int dx = -30; dx <= 30; dx += 2, ++all)
                covered += top.rect().contains(station + QPoint(dx, dy)) &&
                           qAlpha(top.pixel(station + QPoint(dx, dy))) == 255;
        EXPECT_GT(covered, all / 2);
    }

    /// The button on the map shows the cloud as a solid thing, which a drag turns.
    static void expectSolidCloud(Browser& browser)
    {
        browser.click(middleOf(browser, QStringLiteral(".plan .solid")));
        const QString drawn = QStringLiteral("return !!document.querySelector('canvas.cloud').dataset.view;");
        ASSERT_TRUE(browser.waitFor(drawn));
        const QPointF middle = middleOf(browser, QStringLiteral("canvas.cloud"));
        const QImage before = browser.picture();
        const QRgb ground = before.pixel((middle - QPointF(300, 200)).toPoint());
        int points = 0, all = 0;
        for (int dy = -60; dy <= 60; dy += 3)
            for (int dx = -60; dx <= 60; dx += 3, ++all)
                points += before.pixel((middle + QPointF(dx, dy)).toPoint()) != ground;
        EXPECT_GT(points, all * 2 / 3);
        const char* view = "return document.querySelector('canvas.cloud').dataset.view;";
        const QString still = text(browser, view);
        browser.drag(middle, middle + QPointF(90, 0));
        ASSERT_TRUE(browser.waitFor(
            QStringLiteral("return document.querySelector('canvas.cloud').dataset.view !== '%1';")
                .arg(still)));
        EXPECT_NE(browser.picture(), before);
        browser.press(Browser::kEscape);
        ASSERT_TRUE(browser.waitFor(QStringLiteral("return !document.querySelector('dialog');")));
    }

    std::map<QString, Station> stations; ///< by identity
    QStringList m_files;
    QString albumUrl;
    albumtest::AlbumService albumd{QStringLiteral(TW_PROGRAMS "/albumd")};
};

TEST_F(PublishedWalk, FromTheUploadDialogToAWalkInABrowser)
{
    Browser browser;
    ASSERT_TRUE(browser.ready()) << browser.error().toStdString();
    ASSERT_TRUE(browser.open(albumUrl));
    ASSERT_TRUE(shows(browser, id(1))) << "the entry panorama";
    EXPECT_EQ(text(browser, "return document.title;"), QStringLiteral("样板间"));
    EXPECT_NEAR(yaw(browser), 0, 1e-6);

    browser.click(middleOf(browser, QStringLiteral(".marker.photo")));
    ASSERT_TRUE(browser.waitFor(QStringLiteral("return document.querySelector('dialog img').complete;")));
    EXPECT_EQ(text(browser, "return document.querySelector('dialog h2').textContent;"), kCaption);
    const QColor shown =
        browser.picture().pixelColor(middleOf(browser, QStringLiteral("dialog img")).toPoint());
    EXPECT_NEAR(shown.red(), kPhotoColour.red(), 6);
    EXPECT_NEAR(shown.green(), kPhotoColour.green(), 6);
    EXPECT_NEAR(shown.blue(), kPhotoColour.blue(), 6);
    browser.press(Browser::kEscape);
    ASSERT_TRUE(browser.waitFor(QStringLiteral("return !document.querySelector('dialog');")));

    browser.click(middleOf(browser, QStringLiteral(".marker.text")));
    ASSERT_TRUE(browser.waitFor(QStringLiteral("return !!document.querySelector('dialog');")));
    EXPECT_EQ(text(browser, "return document.querySelector('dialog h2').textContent;"),
              QStringLiteral("说明"));
    EXPECT_EQ(text(browser, "return document.querySelector('dialog .words').textContent;"), kText);
    browser.press(Browser::kEscape);
    ASSERT_TRUE(browser.waitFor(QStringLiteral("return !document.querySelector('dialog');")));

    const QString next =
        browser.run(QStringLiteral("return document.querySelector('.ring').dataset.target;")).toString();
    ASSERT_TRUE(stations.count(next));
    walk(browser, id(1), next);
    walk(browser, next, id(1));

    // The map is the cloud from above: what lies under a station is the picture's colour there, and a click
    // on it leads to it.
    const QJsonObject cloud =
        browser
            .run(QStringLiteral("const i = document.querySelector('.plan image'); const p = "
                                "document.querySelector(\".plan .place[data-target='%1']\"); return {u: "
                                "Number(p.getAttribute('cx')), v: Number(p.getAttribute('cy')), address: "
                                "i.getAttribute('href')};")
                     .arg(next))
            .toObject();
    const QImage top = QImage::fromData(
        fetch(QStringLiteral("album/") +
              cloud.value(QLatin1String("address")).toString().section(QLatin1Char('?'), 0, 0)));
    ASSERT_FALSE(top.isNull());
    const QPoint at(int(cloud.value(QLatin1String("u")).toDouble()),
                    int(cloud.value(QLatin1String("v")).toDouble()));
    ASSERT_TRUE(top.rect().contains(at));
    expectFloorUnder(top, at);
    expectSolidCloud(browser);
    browser.click(middleOf(browser, QStringLiteral(".plan .place[data-target='%1']").arg(next)));
    ASSERT_TRUE(shows(browser, next));
    EXPECT_EQ(browser.console(), QStringList());
}

} // namespace
