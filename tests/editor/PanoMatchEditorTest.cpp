// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "linking/editor/PanoMatchEditor.h"

#include "tests/linking/support/RecordingLinker.h"
#include "views/HotSpotWidget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

using sphere::kHalfPi;

namespace {

class PanoMatchEditorTest : public testing::Test
{
protected:
    PanoMatchEditorTest()
    {
        editor.setPair("AAAAAAAAAAAAAA", "BBBBBBBBBBBBBB");
        editor.resize(1000, 500);
        // Away from the pointers that other tests on this screen move.
        editor.move(editor.screen()->geometry().bottomRight() - QPoint(15, 15));
        editor.show();
        if (!QTest::qWaitForWindowExposed(&editor)) qFatal("the editor does not show");
        paint();
    }

    HotSpotWidget* view(int side)
    {
        return editor.findChild<HotSpotWidget*>(side == 0 ? QStringLiteral("widgetAddLink0")
                                                          : QStringLiteral("widgetAddLink1"));
    }

    void click(const char* name)
    {
        auto* button = editor.findChild<QPushButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }

    /// Both views, so that their directions are those that the user sees.
    void paint()
    {
        view(0)->grabFramebuffer();
        view(1)->grabFramebuffer();
    }

    void drag(int side, QPoint from, QPoint to)
    {
        QWindow* window = editor.windowHandle();
        const auto at = [&](QPoint point) { return view(side)->mapTo(&editor, point); };
        QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, at(from));
        for (int i = 1; i <= 10; ++i)
            QTest::mouseMove(window, at(from + (to - from) * i / 10));
        QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, at(to));
        paint();
    }

    /// Answers the next message box and keeps its words.
    void answerBox()
    {
        QTimer::singleShot(0, &editor, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            boxTitle = box->windowTitle();
            boxText = box->text();
            boxKind = box->icon();
            box->button(QMessageBox::Ok)->click();
        });
    }

    RecordingLinker linker;
    PanoMatchEditor editor{linker};
    QString boxTitle, boxText;
    QMessageBox::Icon boxKind = QMessageBox::NoIcon;
};

} // namespace

TEST_F(PanoMatchEditorTest, HasItsWidgetsByNameAndText)
{
    EXPECT_EQ(editor.windowTitle(), QStringLiteral("Orvanta 漫游创作工具"));
    const auto text = [this](const char* name) {
        return editor.findChild<QPushButton*>(QLatin1String(name))->text();
    };
    EXPECT_EQ(text("buttonAddPair"), QStringLiteral("添加一对特征点"));
    EXPECT_EQ(text("buttonDelPair"), QStringLiteral("删除选中特征点"));
    EXPECT_EQ(text("buttonAddLink"), QStringLiteral("添加全景链接"));
    EXPECT_FALSE(text("buttonCancel").isEmpty());
    for (const int side : {0, 1}) {
        EXPECT_EQ(view(side)->mode(), HotSpotWidget::FeaturePairs);
        EXPECT_EQ(view(side)->side(), side);
        EXPECT_EQ(view(side)->panoramaImage(), &editor.image(side));
    }
    EXPECT_LT(view(0)->geometry().right(), view(1)->geometry().left());
    EXPECT_TRUE(editor.isModal());
}

TEST_F(PanoMatchEditorTest, APairIsWhereBothViewsLook)
{
    drag(0, {200, 200}, {260, 230});
    drag(1, {200, 200}, {150, 180});
    click("buttonAddPair");
    ASSERT_EQ(editor.pairs().list.size(), 1u);
    const FeaturePair& pair = editor.pairs().list[0];
    EXPECT_EQ(pair.point_0.azimuth, view(0)->viewingDirection().azimuth);
    EXPECT_EQ(pair.point_0.polar, view(0)->viewingDirection().polar);
    EXPECT_EQ(pair.point_1.azimuth, view(1)->viewingDirection().azimuth);
    EXPECT_EQ(pair.point_1.polar, view(1)->viewingDirection().polar);
    EXPECT_GT(pair.point_0.azimuth, 0.05);
    EXPECT_LT(pair.point_1.azimuth, -0.05);
    EXPECT_EQ(editor.pairs().selected, -1);
}

TEST_F(PanoMatchEditorTest, TheViewTurnsWhenGrabbedBelowItsCentreCross)
{
    const QPoint arm = view(0)->rect().center() + QPoint(12, 0);
    drag(0, arm, arm + QPoint(60, 0));
    EXPECT_GT(view(0)->viewingDirection().azimuth, 0.05);
}

TEST_F(PanoMatchEditorTest, AddLinkWithTwoPairsWarnsAndLeavesThemInPlace)
{
    click("buttonAddPair");
    click("buttonAddPair");
    answerBox();
    click("buttonAddLink");
    EXPECT_EQ(boxKind, QMessageBox::Warning);
    EXPECT_EQ(boxTitle, QStringLiteral("Add Panorama Link"));
    EXPECT_EQ(boxText, QStringLiteral("The number of feature points cannot be less than 3!"));
    EXPECT_EQ(editor.pairs().list.size(), 2u);
    EXPECT_TRUE(linker.calls.isEmpty());
    EXPECT_TRUE(editor.isVisible());
    EXPECT_TRUE(editor.isEnabled());
}

TEST_F(PanoMatchEditorTest, AddLinkWithThreePairsProceeds)
{
    click("buttonAddPair");
    drag(0, {200, 200}, {260, 230});
    click("buttonAddPair");
    drag(1, {200, 200}, {150, 180});
    click("buttonAddPair");
    const auto pairs = editor.pairs().list;

    QStringList callsBefore;
    bool enabledDuring = true;
    QObject::connect(&editor, &PanoMatchEditor::linkComputed, &editor, [&] {
        callsBefore = linker.calls;
        enabledDuring = editor.isEnabled();
    });
    click("buttonAddLink");

    ASSERT_EQ(linker.calls.size(), 6);
    const QString names = QStringLiteral(" AAAAAAAAAAAAAA BBBBBBBBBBBBBB");
    EXPECT_EQ(linker.calls[0], QStringLiteral("addMatch") + names);
    for (int i = 0; i < 3; ++i) {
        const QStringList words = linker.calls[i + 1].split(QLatin1Char(' '));
        const FeaturePair& pair = pairs[static_cast<std::size_t>(i)];
        ASSERT_EQ(words.size(), 7);
        EXPECT_EQ(words[0], QStringLiteral("addLinkPair"));
        EXPECT_NEAR(words[3].toDouble(), pair.point_0.azimuth, 1e-5);
        EXPECT_NEAR(words[4].toDouble(), pair.point_0.polar, 1e-5);
        EXPECT_NEAR(words[5].toDouble(), pair.point_1.azimuth, 1e-5);
        EXPECT_NEAR(words[6].toDouble(), pair.point_1.polar, 1e-5);
    }
    EXPECT_EQ(linker.calls[4], QStringLiteral("analyzeMatch") + names);
    EXPECT_EQ(linker.calls[5], QStringLiteral("relocateAll"));
    EXPECT_EQ(callsBefore, linker.calls); // the results are read after all of it
    EXPECT_FALSE(enabledDuring);
    EXPECT_TRUE(editor.isEnabled());
    EXPECT_FALSE(editor.isVisible());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(PanoMatchEditorTest, AFailingLibraryIsNotReported)
{
    linker.status = -1;
    for (int i = 0; i < 3; ++i)
        click("buttonAddPair");
    QSignalSpy computed(&editor, &PanoMatchEditor::linkComputed);
    click("buttonAddLink");
    EXPECT_EQ(computed.count(), 1);
    EXPECT_FALSE(editor.isVisible());
}

TEST_F(PanoMatchEditorTest, TwoIdenticalPairsAreBothKeptAndBothHandedOver)
{
    for (int i = 0; i < 3; ++i)
        click("buttonAddPair");
    ASSERT_EQ(editor.pairs().list.size(), 3u);
    click("buttonAddLink");
    EXPECT_EQ(linker.calls.filter(QStringLiteral("addLinkPair")).size(), 3);
}

TEST_F(PanoMatchEditorTest, DelLinkPairWithoutASelectionChangesNothing)
{
    click("buttonAddPair");
    click("buttonDelPair");
    EXPECT_EQ(editor.pairs().list.size(), 1u);
    EXPECT_EQ(editor.pairs().selected, -1);
}

TEST_F(PanoMatchEditorTest, AClickOnACrossSelectsItsPairForDeletion)
{
    click("buttonAddPair");
    drag(0, {200, 200}, {320, 200});
    drag(1, {200, 200}, {320, 200});
    click("buttonAddPair");
    paint();
    // The first pair has moved to the right in both views.
    const QPoint cross = editor.pairs().list[0].marker_1.center();
    QTest::mouseClick(editor.windowHandle(), Qt::LeftButton, Qt::NoModifier, view(1)->mapTo(&editor, cross));
    EXPECT_EQ(editor.pairs().selected, 0);
    const double second = editor.pairs().list[1].point_0.azimuth;
    click("buttonDelPair");
    ASSERT_EQ(editor.pairs().list.size(), 1u);
    EXPECT_EQ(editor.pairs().list[0].point_0.azimuth, second);
    EXPECT_EQ(editor.pairs().selected, -1);
}

TEST_F(PanoMatchEditorTest, AnIndexOutsideThePairsSelectsNone)
{
    click("buttonAddPair");
    editor.selectPair(0);
    EXPECT_EQ(editor.pairs().selected, 0);
    editor.selectPair(1);
    EXPECT_EQ(editor.pairs().selected, -1);
    editor.selectPair(-3);
    EXPECT_EQ(editor.pairs().selected, -1);
}

TEST_F(PanoMatchEditorTest, CancelKeepsThePairsUntilTheNextUse)
{
    click("buttonAddPair");
    drag(0, {200, 200}, {260, 230});
    click("buttonCancel");
    EXPECT_FALSE(editor.isVisible());
    EXPECT_EQ(editor.pairs().list.size(), 1u);
    EXPECT_TRUE(linker.calls.isEmpty());

    editor.setPair("CCCCCCCCCCCCCC", "DDDDDDDDDDDDDD");
    EXPECT_TRUE(editor.pairs().list.empty());
    EXPECT_EQ(view(0)->viewingDirection().azimuth, 0.0);
    EXPECT_EQ(view(0)->viewingDirection().polar, kHalfPi);
}

TEST_F(PanoMatchEditorTest, ThePicturesDrawnByTheOwnerAreShown)
{
    editor.close();
    editor.image(0).fill(Qt::red);
    editor.image(1).fill(Qt::blue);
    editor.setPair("CCCCCCCCCCCCCC", "DDDDDDDDDDDDDD");
    editor.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&editor));
    EXPECT_EQ(view(0)->grabFramebuffer().pixelColor(20, 20), QColor(Qt::red));
    EXPECT_EQ(view(1)->grabFramebuffer().pixelColor(20, 20), QColor(Qt::blue));
}
