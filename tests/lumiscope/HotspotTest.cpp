// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Photos and texts that hotspots open.

#include "linking/editor/PicWidget.h"
#include "tests/lumiscope/support/ViewerTest.h"

#include <QFile>
#include <QPlainTextEdit>

using namespace lumiscope;

namespace {

const QColor kPhotoColour(200, 30, 90);

class VisitorHotspots : public ViewerTest
{
protected:
    VisitorHotspots()
    {
        made.addStation("AAAAAAAAAAAAAB", QStringLiteral("hall"), 0, 0, 0);
        made.addPhoto(0, 0.3, 1.5, QStringLiteral(u"门 <b>door</b>"), kPhotoColour);
        made.addInfo(0, -0.3, 1.5, QStringLiteral("Rules"), kText);
    }

    void openPhoto()
    {
        click(view, pixelOf(0.3, 1.5));
        ASSERT_TRUE(shown("photoPanel"));
    }

    PicWidget* photo() const { return find<PicWidget>("photo"); }

    QString titleOf(const char* panel) const
    {
        return find<QWidget>(panel)->findChild<QLabel*>(QStringLiteral("title"))->text();
    }

    const QString kText =
        QStringLiteral("a<b & c>d\n<img src='http://example.org/x.png'>\n&amp;amp; \"q\" 中文");
};

TEST_F(VisitorHotspots, AClickOnAPhotoIconOpensThePhotoFittedWithItsTitle)
{
    // Markup in a caption makes a description that no reader takes; a plain one comes as it is.
    made.project.panoramas[0]->photos[0].caption = QStringLiteral(u"门 door's");
    open(made.save());
    openPhoto();
    ASSERT_TRUE(waitFor([&] { return photo()->isVisible(); }));
    EXPECT_EQ(titleOf("photoPanel"), QStringLiteral(u"门 door's"));
    ASSERT_TRUE(photo()->image());
    EXPECT_EQ(photo()->image()->size(), QSize(1600, 1200));
    EXPECT_DOUBLE_EQ(photo()->scale(), photo()->fitScale());
    EXPECT_LT(photo()->scale(), 1.0);
    EXPECT_TRUE(sameColour(QColor(photo()->image()->pixel(800, 600)), kPhotoColour));
    EXPECT_TRUE(sameColour(photo()->grab().toImage().pixelColor(photo()->rect().center()), kPhotoColour));
}

TEST_F(VisitorHotspots, ThePhotoZoomsWithWheelAndKeysAndEscapeClosesIt)
{
    made.project.panoramas[0]->photos[0].caption.clear();
    open(made.save());
    openPhoto();
    ASSERT_TRUE(waitFor([&] { return photo()->isVisible(); }));
    const double fitted = photo()->scale();
    wheel(photo(), 120);
    EXPECT_GT(photo()->scale(), fitted);
    wheel(photo(), -120);
    EXPECT_NEAR(photo()->scale(), fitted, 1e-9);
    key(Qt::Key_Plus, 2);
    EXPECT_GT(photo()->scale(), fitted * 1.1);
    const auto zoomBehind = visitor().look().zoom;
    key(Qt::Key_Left);
    EXPECT_EQ(visitor().look().zoom, zoomBehind);
    EXPECT_NEAR(visitor().camera().yaw, 0.0, 1e-9);
    key(Qt::Key_Escape);
    EXPECT_FALSE(shown("photoPanel"));
    key(Qt::Key_Left); // the view has the keys again
    EXPECT_GT(visitor().camera().yaw, 0.0);
}

TEST_F(VisitorHotspots, TheCloseButtonAndAClickBesideClose)
{
    made.project.panoramas[0]->photos[0].caption.clear();
    open(made.save());
    openPhoto();
    auto* panel = find<QWidget>("photoPanel");
    auto* closing = panel->findChild<QWidget*>(QStringLiteral("buttonClose"));
    click(closing, closing->rect().center());
    EXPECT_FALSE(shown("photoPanel"));
    openPhoto();
    click(panel, QPoint(4, panel->height() - 4));
    EXPECT_FALSE(shown("photoPanel"));
}

TEST_F(VisitorHotspots, APhotoThatCannotBeShownIsTold)
{
    made.project.panoramas[0]->photos[0].caption.clear();
    made.project.panoramas[0]->photos[0].photo_path = made.write(QStringLiteral("no photo.jpg"), "nothing");
    open(made.save());
    openPhoto();
    EXPECT_TRUE(
        waitFor([&] { return textOf("photoMessage") == QStringLiteral("The photo cannot be shown."); }));
    EXPECT_FALSE(photo()->isVisible());
}

TEST_F(VisitorHotspots, ATextIsShownAsItIsAndNeverAsMarkup)
{
    made.project.panoramas[0]->photos[0].caption.clear();
    open(made.save());
    click(view, pixelOf(-0.3, 1.5));
    ASSERT_TRUE(shown("textPanel"));
    EXPECT_EQ(titleOf("textPanel"), QStringLiteral("Rules"));
    const QString text = find<QPlainTextEdit>("text")->toPlainText();
    EXPECT_TRUE(text.startsWith(QStringLiteral("a<b & c>d\n<img src='http://example.org/x.png'>\n")))
        << text.toStdString();
    EXPECT_TRUE(find<QPlainTextEdit>("text")->isReadOnly());
    key(Qt::Key_Escape);
    EXPECT_FALSE(shown("textPanel"));
}

TEST_F(VisitorHotspots, MarkupInATitleIsShownAsItIs)
{
    made.project.panoramas[0]->photos[0].caption = QStringLiteral("X");
    QFile file(made.save());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    open(made.write(QStringLiteral("markup.roa"),
                    withDescription(file.readAll(), "caption=\"X\"", "caption=\"&lt;b&gt;door&lt;/b&gt;\"")));
    // Other windows on the display may take the pointer away for a moment.
    ASSERT_TRUE(waitFor([&] {
        move(pixelOf(0.3, 1.5));
        return shown("hover");
    }));
    EXPECT_EQ(textOf("hover"), QStringLiteral("<b>door</b>"));
    EXPECT_EQ(find<QLabel>("hover")->textFormat(), Qt::PlainText);
    openPhoto();
    EXPECT_EQ(titleOf("photoPanel"), QStringLiteral("<b>door</b>"));
    EXPECT_EQ(find<QWidget>("photoPanel")->findChild<QLabel*>(QStringLiteral("title"))->textFormat(),
              Qt::PlainText);
}

TEST_F(VisitorHotspots, APressThatBecomesADragOpensNothing)
{
    made.project.panoramas[0]->photos[0].caption.clear();
    open(made.save());
    const QPoint from = pixelOf(0.3, 1.5);
    QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, from);
    QTest::mouseMove(window->windowHandle(), from + QPoint(40, 0));
    QTest::mouseMove(window->windowHandle(), from + QPoint(120, 0));
    QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, from + QPoint(120, 0));
    EXPECT_FALSE(shown("photoPanel"));
    EXPECT_LE((pixelOf(0.3, 1.5) - (from + QPoint(120, 0))).manhattanLength(), 2); // it follows the cursor
}

} // namespace
