// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A link by hand in a project with lidar: from the button through the link editor to the table.

#include "linking/editor/PanoMatchEditor.h"

#include "tests/app/support/WindowTest.h"
#include "tests/linking/support/Projects.h"
#include "views/HotSpotWidget.h"

#include <QApplication>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

namespace {

class LinkEditorCommand : public WindowTest
{
protected:
    void addLinkOf(int one, int other)
    {
        chooseEntry("comboSelPano0", one);
        chooseEntry("comboSelPano1", other);
        click("buttonAddLink");
    }

    PanoMatchEditor* editor() const { return window->findChild<PanoMatchEditor*>(); }

    void clickInEditor(const char* button)
    {
        QTest::mouseClick(editor()->findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
    }

    /// Panoramas with lidar, linked by the library, which finds nothing.
    void linkNothing(int count)
    {
        importRooms(count, true);
        click("buttonAutoGenLink");
        linker->calls.clear();
        project().modified = false;
    }

    /// The library finds this link once it has analysed it.
    void letTheLibraryFind(int one, int other)
    {
        linker->onCall = [this, one, other](const QString& call) {
            if (!call.startsWith(QLatin1String("analyzeMatch"))) return;
            PanoMatchParas match;
            qstrncpy(match.name_0, identity(one), sizeof match.name_0);
            qstrncpy(match.name_1, identity(other), sizeof match.name_1);
            match.mode = LinkByHand;
            linker->matches.push_back(match);
        };
    }
};

} // namespace

TEST_F(LinkEditorCommand, OpensTheEditorWithBothPanoramasTheSmallerNameFirst)
{
    linkNothing(3);
    EXPECT_EQ(editor(), nullptr);
    addLinkOf(2, 0);
    ASSERT_NE(editor(), nullptr);
    EXPECT_TRUE(editor()->isVisible());
    EXPECT_TRUE(editor()->isMaximized());
    EXPECT_TRUE(linker->commands().isEmpty());
    EXPECT_FALSE(project().modified);

    letTheLibraryFind(0, 2);
    for (int i = 0; i < 3; ++i)
        clickInEditor("buttonAddPair");
    clickInEditor("buttonAddLink");
    EXPECT_EQ(linker->commands().first(), QStringLiteral("addMatch AAAAAAAAAAAAAA CCCCCCCCCCCCCC"));
}

TEST_F(LinkEditorCommand, TheLinkStandsInTheTableAfterwards)
{
    linkNothing(2);
    addLinkOf(0, 1);
    letTheLibraryFind(0, 1);
    for (int i = 0; i < 3; ++i)
        clickInEditor("buttonAddPair");
    clickInEditor("buttonAddLink");
    EXPECT_FALSE(editor()->isVisible());
    ASSERT_EQ(project().links.size(), 1u);
    EXPECT_EQ(project().links[0]->mode, LinkByHand);
    EXPECT_EQ(find<QTableWidget>("tableLink")->rowCount(), 1);
    EXPECT_TRUE(project().modified);
    EXPECT_TRUE(window->isEnabled());
    // The library's order: the pairs, the analysis, the relocation, then nodes and matches are read.
    const QStringList calls = linker->calls;
    const int relocated = calls.indexOf(QStringLiteral("relocateAll"));
    EXPECT_GT(calls.indexOf(QStringLiteral("nodeCount")), relocated);
    EXPECT_GT(calls.indexOf(QStringLiteral("matchCount")), calls.indexOf(QStringLiteral("nodeCount")));
}

TEST_F(LinkEditorCommand, AShownLinkIsLetGoBeforeAllLinksAreMadeAnew)
{
    importRooms(3, true);
    letTheLibraryFind(1, 2);
    linker->onCall(QStringLiteral("analyzeMatch"));
    linker->onCall = nullptr;
    click("buttonAutoGenLink");
    clickTableRow("tableLink", 0);
    ASSERT_NE(find<HotSpotWidget>("widgetLink0")->link(), nullptr);
    addLinkOf(0, 1);
    letTheLibraryFind(0, 1);
    for (int i = 0; i < 3; ++i)
        clickInEditor("buttonAddPair");
    clickInEditor("buttonAddLink");
    EXPECT_EQ(find<HotSpotWidget>("widgetLink0")->link(), nullptr);
    EXPECT_EQ(find<HotSpotWidget>("widgetLink1")->link(), nullptr);
    EXPECT_EQ(project().links.size(), 2u);
}

TEST_F(LinkEditorCommand, TheEditorIsKeptAndBeginsAnew)
{
    linkNothing(3);
    addLinkOf(0, 1);
    PanoMatchEditor* const first = editor();
    clickInEditor("buttonAddPair");
    clickInEditor("buttonCancel");
    EXPECT_TRUE(linker->commands().isEmpty());
    EXPECT_FALSE(project().modified);
    addLinkOf(1, 2);
    EXPECT_EQ(editor(), first);
    EXPECT_TRUE(first->pairs().list.empty());
}
