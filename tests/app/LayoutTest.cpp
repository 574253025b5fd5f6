// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Nothing is cut on a small screen, in either language.

#include "tests/app/support/WindowTest.h"
#include "views/HotSpotWidget.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <QTranslator>

namespace {

/// A laptop's screen less the title bar and a task bar.
constexpr QSize kSmallestScreen(1366, 700);

struct Case
{
    const char* language;
    QSize size;
};

class Layout : public testing::TestWithParam<Case>
{
protected:
    Layout()
    {
        if (!translator.load(QStringLiteral(TW_PROGRAMS "/tourwright_") + QLatin1String(GetParam().language) +
                             QStringLiteral(".qm")))
            ADD_FAILURE() << "no translation";
        QCoreApplication::installTranslator(&translator);
        window = std::make_unique<Tourwright>(std::make_unique<RecordingLinker>());
        window->resize(GetParam().size);
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get())) qFatal("the window does not show");
    }

    template <typename Widget>
    void expectWholeOnThePage()
    {
        for (const Widget* widget : window->findChildren<Widget*>()) {
            if (!widget->isVisible() || widget->objectName().isEmpty()) continue;
            const std::string name = widget->objectName().toStdString();
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
            EXPECT_EQ(widget->visibleRegion().boundingRect(), widget->rect()) << name;
        }
    }

    void expectPageWhole(const char* tabs, int page)
    {
        window->findChild<QTabWidget*>(QLatin1String(tabs))->setCurrentIndex(page);
        QCoreApplication::processEvents();
        expectWholeOnThePage<QAbstractButton>();
        expectWholeOnThePage<QLabel>();
        expectWholeOnThePage<QGroupBox>();
        expectWholeOnThePage<QComboBox>();
        expectWholeOnThePage<QProgressBar>();
    }

    QTranslator translator;
    std::unique_ptr<Tourwright> window;
};

TEST_P(Layout, TheWindowTakesTheScreensSize)
{
    EXPECT_EQ(window->size(), GetParam().size);
}

TEST_P(Layout, EveryControlOfEveryPageIsSeenWhole)
{
    expectPageWhole("tabMain", 0);
    expectPageWhole("tabMain", 1);
    expectPageWhole("tabHotspot", 1);
}

TEST_P(Layout, TheRightColumnNeedsNoScrolling)
{
    const auto* area = window->findChild<QAbstractScrollArea*>(QStringLiteral("scrollLink"));
    EXPECT_FALSE(area->verticalScrollBar()->isVisible());
}

TEST_P(Layout, EveryOpenGLViewIsLargeEnoughToDraw)
{
    for (const char* name : {"widgetLink0", "widgetLink1", "widgetPntCloud"}) {
        const auto* view = window->findChild<QWidget*>(QLatin1String(name));
        EXPECT_GE(view->width(), HotSpotWidget::kMinimumWidth) << name;
        EXPECT_GE(view->height(), HotSpotWidget::kMinimumHeight) << name;
    }
}

TEST_P(Layout, TheViewsGetMoreThanHalfOfThePage)
{
    int area = 0;
    for (const char* name : {"widgetLink0", "widgetLink1", "widgetPlan", "widgetPntCloud"}) {
        const auto* view = window->findChild<QWidget*>(QLatin1String(name));
        area += view->width() * view->height();
    }
    const auto* page = window->findChild<QWidget*>(QStringLiteral("tabSubLink"));
    EXPECT_GT(2 * area, page->width() * page->height());
}

INSTANTIATE_TEST_SUITE_P(Screens, Layout,
                         testing::Values(Case{"zh", kSmallestScreen}, Case{"en", kSmallestScreen},
                                         Case{"zh", {1920, 1000}}, Case{"en", {1920, 1000}}),
                         [](const auto& info) {
                             return std::string(info.param.language) +
                                    std::to_string(info.param.size.width());
                         });

} // namespace
