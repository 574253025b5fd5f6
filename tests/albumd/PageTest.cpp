// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A published album, walked through in a real browser.

#include "tests/albumd/Client.h"
#include "tests/albumd/PaintedPanorama.h"
#include "tests/support/Browser.h"

#include <QColor>
#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

using namespace albumtest;
using pnotest::Colour;
using testing::IsEmpty;

namespace {

constexpr Colour kBlue{40, 60, 160}, kOlive{90, 110, 40}, kGrey{120, 120, 120};
constexpr Colour kRed{220, 30, 30}, kYellow{230, 220, 40}, kPink{240, 120, 200};
constexpr double kPi = 3.14159265358979;

/// As seen: the azimuth of b from a, and of a from b.
constexpr double kFromA = 0.4, kFromB = 1.1;
constexpr double kFloorA = 1.85, kFloorB = 2.05; ///< polar angle of the other's floor point
constexpr double kTurn = kFromB - kFromA + kPi;  ///< what the yaw gains from a to b
constexpr const char* kScript = "<img src=x onerror=window.ran=1><script>window.ran=1</script>\"";

double wrapped(double angle)
{
    return angle - 2 * kPi * std::floor((angle + kPi) / (2 * kPi));
}

class Page : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!Browser::installed()) GTEST_SKIP() << "chromium and chromedriver are not installed";
        ASSERT_TRUE(client.login());
        upload(a, kBlue, {{kFromA, kFloorA, 0.08, kRed}, {0, kPi / 2, 0.1, kYellow}});
        // What b shows straight on for a visitor who looked at its marker before he went there.
        upload(b, kOlive, {{wrapped(kFromA + kTurn), kPi / 2, 0.1, kPink}, {kFromB, kFloorB, 0.1, kRed}});
        upload(c, kGrey, {});
        album = client.createAlbum({a, b, c}, std::string("Tour ") + kScript);
        // The heading of azimuth 0 in the world differs as the links say.
        post("/set_albumpano_location", a, locationText(0, 0, 0.2));
        post("/set_albumpano_location", b, locationText(2, 1, 0.2 - kTurn));
        post("/set_albumpano_location", c, locationText(4, -1, 1.0));
        post("/set_albumpano_linktags", a,
             photoTag(-0.45, 1.4, std::string("photo ") + kScript, a + "-00000000.jpg") +
                 infoTag(-0.1, 1.25, kScript, "first &lt;b&gt;line&lt;/b&gt;\r\nsecond") +
                 photoTag(-0.45, 1.9, "lost", a + "-00000009.jpg"));
        link(a, b, {-kFromA, wrapped(-kFromB - kPi), kFloorB, kFloorA});
        link(b, c, {-0.3, 0.9, 2.0, 2.0});
        const pnotest::Bytes photo = pnotest::solidJpeg(kPink, 640, 480);
        client.post("/upload_linkphoto",
                    {{"token", client.token}, {"panoid", a}, {"photoname", a + "-00000000.jpg"}},
                    std::string(photo.begin(), photo.end()));
    }

    void upload(const std::string& id, Colour ground, const std::vector<Patch>& patches)
    {
        ASSERT_EQ(client.upload(id, paintedPanorama(id, ground, patches)).body, "OK");
    }

    void post(const char* path, const std::string& pano, const std::string& text)
    {
        ASSERT_EQ(
            client.post(path, {{"token", client.token}, {"albumid", album}, {"panoid", pano}}, text).body,
            "OK");
    }

    void link(const std::string& one, const std::string& other, const LinkValues& values)
    {
        const Items items{{"token", client.token}, {"albumid", album}, {"panoid0", one}, {"panoid1", other}};
        ASSERT_EQ(client.post("/add_panolink", items, linkText(one, other, values)).body, "OK");
    }

    void visit(Browser& browser)
    {
        ASSERT_TRUE(browser.ready()) << browser.error().toStdString();
        ASSERT_TRUE(
            browser.open(service.baseUrl() + QStringLiteral("album/") + QString::fromStdString(album)))
            << browser.error().toStdString();
        ASSERT_TRUE(shows(browser, a));
    }

    /// Waits for the panorama in full sharpness.
    static bool shows(Browser& browser, const std::string& id)
    {
        return browser.waitFor(
            QStringLiteral("const d = document.getElementById('view').dataset; return d.panorama === "
                           "'%1' && d.sharp === 'yes' && d.blending === 'no';")
                .arg(QString::fromStdString(id)));
    }

    /// Turns the view, and waits until it is drawn.
    static void turn(Browser& browser, QPointF from, QPointF to)
    {
        browser.drag(from, to);
        browser.run(QStringLiteral("window.drawn = false; requestAnimationFrame(() => requestAnimationFrame("
                                   "() => { window.drawn = true; }));"));
        EXPECT_TRUE(browser.waitFor(QStringLiteral("return window.drawn;")));
    }

    static double state(Browser& browser, const char* name)
    {
        return browser
            .run(QStringLiteral("return Number(document.getElementById('view').dataset.%1);")
                     .arg(QLatin1String(name)))
            .toDouble();
    }

    /// Middle of the first element of a selector, CSS pixels.
    static QPointF middle(Browser& browser, const QString& selector)
    {
        const QString script =
            QStringLiteral("const r = document.querySelector(\"%1\").getBoundingClientRect();"
                           "return {x: r.x + r.width / 2, y: r.y + r.height / 2};");
        const QJsonObject at = browser.run(script.arg(selector)).toObject();
        return {at.value(QLatin1String("x")).toDouble(), at.value(QLatin1String("y")).toDouble()};
    }

    static QString ring(const std::string& target)
    {
        return QStringLiteral(".ring[data-target='%1']").arg(QString::fromStdString(target));
    }

    /// The page's picture without what lies over the panorama.
    static QImage bare(Browser& browser)
    {
        browser.run(QStringLiteral("for (const e of document.querySelectorAll('#view > :not(canvas)')) "
                                   "e.style.visibility = 'hidden';"));
        QImage picture = browser.picture();
        browser.run(QStringLiteral("for (const e of document.querySelectorAll('#view > :not(canvas)')) "
                                   "e.style.visibility = '';"));
        return picture;
    }

    static testing::AssertionResult isColour(const QImage& picture, QPointF place, Colour wanted)
    {
        const QColor is = picture.pixelColor(place.toPoint());
        const int off = std::max({std::abs(is.red() - wanted.red), std::abs(is.green() - wanted.green),
                                  std::abs(is.blue() - wanted.blue)});
        if (off <= 12) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "it is " << is.name().toStdString();
    }

    AlbumService service{QStringLiteral(ALBUMD_PROGRAM)};
    Client client{service.port()};
    const std::string a = idNumber(0), b = idNumber(1), c = idNumber(2);
    std::string album;
};

TEST_F(Page, ShowsTheRightPictureUnderAMarkerAndAClickWalksThereKeepingTheHeading)
{
    Browser browser;
    visit(browser);
    EXPECT_EQ(state(browser, "yaw"), 0);
    const QImage picture = bare(browser);
    EXPECT_TRUE(isColour(picture, {picture.width() / 2.0, picture.height() / 2.0}, kYellow));
    const QPointF marker = middle(browser, ring(b));
    EXPECT_TRUE(isColour(picture, marker, kRed));
    for (const QPointF off : {QPointF(-90, 0), QPointF(90, 0), QPointF(0, -110), QPointF(0, 80)})
        EXPECT_TRUE(isColour(picture, marker + off, kBlue)) << off.x() << ' ' << off.y();
    // Left of the picture's middle lies the greater azimuth, below the horizon the greater polar angle.
    EXPECT_LT(marker.x(), picture.width() / 2.0);
    EXPECT_GT(marker.y(), picture.height() / 2.0);

    visit(browser);
    turn(browser, {300, 300}, {500, 300});
    const double yaw = state(browser, "yaw");
    browser.click(middle(browser, ring(b)));
    ASSERT_TRUE(shows(browser, b));
    EXPECT_NEAR(wrapped(state(browser, "yaw") - yaw - kTurn), 0, 1e-6);
    // The place that lay straight on behind the marker lies as far off the middle as the marker did.
    const QImage beyond = bare(browser);
    const double half = beyond.width() / 2.0;
    EXPECT_TRUE(isColour(beyond, {half - std::tan(kFromA - yaw) * half, beyond.height() / 2.0}, kPink));
    // And back.
    browser.run(QStringLiteral("document.querySelector(\"%1\").click();").arg(ring(a)));
    ASSERT_TRUE(shows(browser, a));
    EXPECT_NEAR(wrapped(state(browser, "yaw") - yaw), 0, 1e-6);
}

TEST_F(Page, NamesAPanoramaTogetherWithTheViewIntoIt)
{
    Browser browser;
    visit(browser);
    turn(browser, {300, 300}, {500, 300});
    const double yaw = state(browser, "yaw");
    browser.run(
        QStringLiteral("const d = document.getElementById('view').dataset;"
                       "new MutationObserver(() => d.atFirst = d.yaw)"
                       ".observe(document.getElementById('view'), {attributeFilter: ['data-panorama']});"));
    browser.click(middle(browser, ring(b)));
    ASSERT_TRUE(browser.waitFor(
        QStringLiteral("return document.getElementById('view').dataset.atFirst !== undefined;")));
    EXPECT_NEAR(wrapped(state(browser, "atFirst") - yaw - kTurn), 0, 1e-6);
}

TEST_F(Page, HotspotsOpenAndNothingOfACaptionIsRun)
{
    Browser browser;
    visit(browser);
    browser.click(middle(browser, QStringLiteral(".marker.photo")));
    EXPECT_TRUE(
        browser.waitFor(QStringLiteral("return document.querySelector('dialog img').naturalWidth === 640;")));
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelector('dialog h2').textContent;"))
                  .toString()
                  .toStdString(),
              std::string("photo ") + kScript);
    browser.press(Browser::kEscape);
    EXPECT_TRUE(browser.waitFor(QStringLiteral("return !document.querySelector('dialog');")));
    browser.click(middle(browser, QStringLiteral(".marker.text")));
    EXPECT_EQ(
        browser.run(QStringLiteral("return document.querySelector('dialog .words').textContent;")).toString(),
        QStringLiteral("first <b>line</b>\r\nsecond"));
    browser.click(middle(browser, QStringLiteral("dialog .close")));
    EXPECT_TRUE(browser.waitFor(QStringLiteral("return !document.querySelector('dialog');")));

    visit(browser);
    browser.run(QStringLiteral("document.querySelectorAll('.marker.photo')[1].click();"));
    EXPECT_TRUE(browser.waitFor(QStringLiteral(
        "return document.querySelector('dialog').textContent.includes('This photo cannot be loaded.');")));

    visit(browser);
    browser.run(QStringLiteral("for (const e of document.querySelectorAll('.marker.photo, .marker.text')) "
                               "{ e.click(); document.querySelector('dialog').close(); }"));
    EXPECT_TRUE(browser.run(QStringLiteral("return window.ran === undefined;")).toBool());
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelectorAll('script').length;")).toInt(), 1);
    EXPECT_EQ(
        browser.run(QStringLiteral("return document.querySelectorAll('h1 *, .marker img, h2 *').length;"))
            .toInt(),
        0);
    for (const QString& line : browser.console())
        EXPECT_TRUE(line.contains(QLatin1String("00000009.jpg"))) << "unasked for: " << line.toStdString();
    // The policy stands: what such a page might bring along does not run.
    browser.run(
        QStringLiteral("const s = document.createElement('script'); s.textContent = 'window.ran = 1';"
                       "document.body.append(s); document.body.setAttribute('onclick', 'window.ran = 1');"
                       "document.body.click();"));
    EXPECT_TRUE(browser.run(QStringLiteral("return window.ran === undefined;")).toBool());
    EXPECT_FALSE(browser.console().filter(QStringLiteral("Content Security Policy")).isEmpty());
}

TEST_F(Page, TheKeyboardTurnsZoomsWalksAndGoesFromMarkerToMarker)
{
    Browser browser;
    visit(browser);
    const auto waitForChange = [&](const char* name, double from) {
        return browser.waitFor(
            QStringLiteral("return Number(document.getElementById('view').dataset.%1) !== %2;")
                .arg(QLatin1String(name))
                .arg(from, 0, 'g', 17));
    };
    browser.press(Browser::kLeft);
    EXPECT_TRUE(waitForChange("yaw", 0));
    EXPECT_GT(state(browser, "yaw"), 0) << "left is the greater azimuth";
    const double polar = state(browser, "polar");
    browser.press(Browser::kDown);
    EXPECT_TRUE(waitForChange("polar", polar));
    EXPECT_GT(state(browser, "polar"), polar);
    const double zoom = state(browser, "zoom");
    browser.press(QStringLiteral("+"));
    EXPECT_TRUE(waitForChange("zoom", zoom));
    EXPECT_GT(state(browser, "zoom"), zoom);
    browser.press(QStringLiteral("-"));
    browser.press(Browser::kEnter);
    EXPECT_TRUE(shows(browser, b));

    visit(browser);
    browser.run(QStringLiteral("document.getElementById('view').focus();"));
    browser.press(Browser::kTab);
    EXPECT_TRUE(
        browser.waitFor(QStringLiteral("return document.activeElement.matches(\"%1\");").arg(ring(b))));
    EXPECT_TRUE(browser.waitFor(
        QStringLiteral("return Math.abs(Number(document.getElementById('view').dataset.yaw) - %1) < 1e-6;")
            .arg(kFromA)));
    browser.press(Browser::kTab);
    EXPECT_TRUE(browser.waitFor(QStringLiteral("return document.activeElement.matches('.photo');")));
    browser.press(Browser::kEnter);
    EXPECT_TRUE(
        browser.waitFor(QStringLiteral("return document.querySelector('dialog[open] img') !== null;")));
}

TEST_F(Page, WhatWasGrabbedStaysUnderTheCursorAndAFingerWalks)
{
    Browser browser;
    visit(browser);
    const QPointF grabbed = middle(browser, ring(b));
    const QPointF beside = grabbed + QPointF(70, 0); // the ring itself would be clicked
    turn(browser, beside, beside + QPointF(150, -120));
    const QPointF now = middle(browser, ring(b));
    EXPECT_NEAR(now.x() - grabbed.x(), 150, 30);
    EXPECT_NEAR(now.y() - grabbed.y(), -120, 30);
    browser.wheel({500, 350}, -120);
    EXPECT_TRUE(browser.waitFor(
        QStringLiteral("return Number(document.getElementById('view').dataset.zoom) > 1.05;")));

    visit(browser);
    browser.tap(middle(browser, ring(b)));
    EXPECT_TRUE(shows(browser, b));
}

TEST_F(Page, ThePlanShowsThePlacesGoesThereAndIsTheAuthorsPictureWhereThereIsOne)
{
    Browser browser;
    visit(browser);
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelectorAll('.plan .place').length;")).toInt(),
              3);
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelector('.place.here').dataset.target;"))
                  .toString()
                  .toStdString(),
              a);
    const QString target = QStringLiteral(".place[data-target='%1']").arg(QString::fromStdString(c));
    // East is right, north is up.
    EXPECT_GT(middle(browser, target).x(), middle(browser, QStringLiteral(".place.here")).x());
    EXPECT_GT(middle(browser, target).y(), middle(browser, QStringLiteral(".place.here")).y());
    browser.click(middle(browser, target));
    ASSERT_TRUE(shows(browser, c));
    EXPECT_NEAR(wrapped(state(browser, "yaw") - (0.2 - 1.0)), 0, 1e-6) << "the same way in the world";
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelector('.place.here').dataset.target;"))
                  .toString()
                  .toStdString(),
              c);

    const std::string plan = a + "-00000000.png";
    const pnotest::Bytes jpeg = pnotest::solidJpeg(kGrey, 400, 300); // told by its content, not by its name
    client.post("/upload_linkphoto", {{"token", client.token}, {"panoid", a}, {"photoname", plan}},
                std::string(jpeg.begin(), jpeg.end()));
    post("/set_albumpano_location", a, locationText(0, 0, 0.2, 100, 200, plan));
    post("/set_albumpano_location", b, locationText(2, 1, 0.2 - kTurn, 200, 150, plan));
    visit(browser);
    EXPECT_EQ(
        browser.run(QStringLiteral("return document.querySelector('.plan svg').getAttribute('viewBox');"))
            .toString(),
        QStringLiteral("0 0 400 300"));
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelectorAll('.plan .place').length;")).toInt(),
              2);
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelector('.place.here').getAttribute('cx');"))
                  .toString(),
              QStringLiteral("100"));
    EXPECT_TRUE(browser.waitFor(QStringLiteral("return document.querySelector('.plan image') !== null;")));
}

TEST_F(Page, SpeaksChineseWhereTheBrowserDoes)
{
    Browser browser(QStringLiteral("zh-CN"));
    visit(browser);
    EXPECT_EQ(
        browser.run(QStringLiteral("return document.querySelector('.plan summary').textContent;")).toString(),
        QStringLiteral("平面图"));
    EXPECT_EQ(browser.run(QStringLiteral("return document.documentElement.lang;")).toString(),
              QStringLiteral("zh"));
    ASSERT_TRUE(browser.open(service.baseUrl() + QStringLiteral("album/AAAAAAAAAAAAAA")));
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelector('h1').textContent;")).toString(),
              QStringLiteral("相册不存在"));
}

TEST_F(Page, AnAlbumTakenOffOrAServiceGoneIsSaidSo)
{
    Browser browser;
    visit(browser);
    // The panorama after the next one is not loaded yet.
    service.kill();
    browser.run(QStringLiteral(
                    "document.querySelector(\".place[data-target='%1']\").dispatchEvent(new Event('click'));")
                    .arg(QString::fromStdString(c)));
    EXPECT_TRUE(browser.waitFor(QStringLiteral(
        "return document.querySelector('.note').textContent === 'This panorama cannot be loaded.';")));
    ASSERT_TRUE(service.start());
    ASSERT_EQ(service.run({QStringLiteral("remove-album"), QString::fromStdString(album)}), 0);
    ASSERT_TRUE(browser.open(service.baseUrl() + QStringLiteral("album/") + QString::fromStdString(album)));
    EXPECT_EQ(browser.run(QStringLiteral("return document.querySelector('h1').textContent;")).toString(),
              QStringLiteral("No such album"));
}

} // namespace
