// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/app/support/HotspotPage.h"

#include <QListWidget>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>

namespace {

void clickTab(const QTabWidget* tabs, int index)
{
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(index).center());
}

// keyClicks() cannot type what has no key; an input method commits it.
void type(QWidget* field, const QString& text)
{
    for (const QChar c : text) {
        if (c == QLatin1Char('\n'))
            QTest::keyClick(field, Qt::Key_Return);
        else
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

} // namespace

void HotspotPage::SetUp()
{
    importRooms(2);
    clickTab(find<QTabWidget>("tabMain"), 1);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    ASSERT_TRUE(view()->isVisible());
    ASSERT_GE(view()->width(), HotSpotWidget::kMinimumWidth);
    paint();
    project().modified = false;
}

void HotspotPage::showTab(Tab tab) const
{
    clickTab(find<QTabWidget>("tabHotspot"), tab);
    ASSERT_EQ(currentTab(), int(tab));
}

int HotspotPage::currentTab() const
{
    return find<QTabWidget>("tabHotspot")->currentIndex();
}

QString HotspotPage::content() const
{
    return find<QPlainTextEdit>("plainInfo")->toPlainText();
}

void HotspotPage::typeInto(const char* line, const QString& text) const
{
    auto* field = find<QLineEdit>(line);
    QTest::mouseClick(field, Qt::LeftButton);
    QTest::keyClick(field, Qt::Key_End);
    type(field, text);
}

void HotspotPage::typeContent(const QString& text) const
{
    auto* field = find<QPlainTextEdit>("plainInfo");
    QTest::mouseClick(field->viewport(), Qt::LeftButton);
    QTest::keyClick(field, Qt::Key_End, Qt::ControlModifier);
    type(field, text);
}

void HotspotPage::putHotspots()
{
    for (int i = 0; i < 2; ++i) {
        PhotoHotspot photo;
        photo.sphere_x = 0.3 * i;
        photo.caption = QStringLiteral("photo %1").arg(i);
        node().photos << photo;
        InfoHotspot info;
        info.sphere_x = -0.3 * (i + 1);
        info.caption = QStringLiteral("text %1").arg(i);
        node().infos << info;
    }
    showAgain();
}

void HotspotPage::showAgain()
{
    clickListRow(1);
    clickListRow(0);
    paint();
    project().modified = false;
}

void HotspotPage::deletePanoramas()
{
    for (int i = 0; i < 2; ++i)
        click("buttonDelPano");
    project().modified = false;
}

void HotspotPage::drag(QPoint from, QPoint to) const
{
    constexpr int kSteps = 6;
    QWindow* screen = window->windowHandle();
    const auto inWindow = [this](QPoint at) { return view()->mapTo(window.get(), at); };
    QTest::mousePress(screen, Qt::LeftButton, {}, inWindow(from));
    for (int step = 1; step <= kSteps && from != to; ++step) {
        QTest::mouseMove(screen, inWindow(from + (to - from) * step / kSteps));
        paint();
    }
    QTest::mouseRelease(screen, Qt::LeftButton, {}, inWindow(to));
    paint();
}
