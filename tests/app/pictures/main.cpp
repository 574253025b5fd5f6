// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Takes the pictures of the main window: imports the panoramas of a folder, links them, selects a link, makes
// both kinds of map, adds hotspots and saves what the window shows.

#include "app/Tourwright.h"
#include "linking/editor/PanoMatchEditor.h"
#include "linking/map/GenerateMap.h"
#include "linking/NexomapLinker.h"
#include "project/LocalText.h"
#include "project/ProjectFolders.h"
#include "tests/app/support/DialogRobot.h"
#include "views/HotSpotWidget.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTableWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTranslator>

namespace {

constexpr int kUsage = 2;

struct Order
{
    QString panoramas; ///< folder with .pno files
    QString pictures;  ///< folder to write to
    QSize size = {1920, 1000};
    bool chinese = false;
};

bool parse(const QStringList& arguments, Order* order)
{
    QStringList folders;
    for (int i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--chinese"))
            order->chinese = true;
        else if (arguments[i] == QLatin1String("--size") && i + 1 < arguments.size()) {
            const QStringList sides = arguments[++i].split(QLatin1Char('x'));
            order->size = sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
        } else
            folders << arguments[i];
    }
    if (folders.size() != 2 || order->size.isEmpty()) return false;
    order->panoramas = QDir(folders[0]).absolutePath();
    order->pictures = QDir(folders[1]).absolutePath();
    return true;
}

template <typename Widget>
Widget* find(Tourwright& window, const char* name)
{
    return window.findChild<Widget*>(QLatin1String(name));
}

void click(Tourwright& window, const char* button)
{
    QTest::mouseClick(find<QPushButton>(window, button), Qt::LeftButton);
}

bool savePicture(QWidget& window, const QString& path)
{
    window.repaint();
    QTest::qWait(300); // the OpenGL views paint from timers of their own
    const bool saved = window.screen()->grabWindow(window.winId()).save(path);
    QTextStream(saved ? stdout : stderr) << (saved ? "" : "cannot write ") << path << '\n';
    return saved;
}

void importPanoramas(Tourwright& window, const QString& folder)
{
    QStringList files;
    for (const QString& name : QDir(folder).entryList({QStringLiteral("*.pno")}, QDir::Files, QDir::Name))
        files << folder + QLatin1Char('/') + name;
    if (files.isEmpty()) return;
    DialogRobot robot(&window);
    robot.choose(files);
    click(window, "buttonAddPano");
}

void selectLink(Tourwright& window, int row)
{
    auto* table = find<QTableWidget>(window, "tableLink");
    if (row >= table->rowCount()) return;
    table->scrollToItem(table->item(row, 1));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualItemRect(table->item(row, 1)).center());
}

// The photo is what the view shows before it turns.
void addHotspots(Tourwright& window, const QString& folder)
{
    auto* view = find<HotSpotWidget>(window, "widgetPhoto");
    const QString photo = folder + QStringLiteral("/photo.jpg");
    if (!view->panorama() || !view->grabFramebuffer().save(photo)) return;
    const QPoint middle = view->rect().center();
    QTest::mousePress(view, Qt::LeftButton, {}, middle);
    QTest::mouseMove(view, middle - QPoint(view->width() / 6, 0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, middle);
    view->grabFramebuffer();
    find<QTabWidget>(window, "tabHotspot")->setCurrentIndex(1);
    click(window, "buttonAddInfo");
    QTest::keyClicks(find<QLineEdit>(window, "lineInfoCaption"), QStringLiteral("Pillar"));
    QTest::keyClicks(find<QPlainTextEdit>(window, "plainInfo"), QStringLiteral("Bears the upper floor."));
    view->resetView();
    view->grabFramebuffer();
    find<QTabWidget>(window, "tabHotspot")->setCurrentIndex(0);
    click(window, "buttonAddPhoto");
    DialogRobot robot(&window);
    robot.choose(photo);
    click(window, "buttonSelPhoto");
    QTest::keyClicks(find<QLineEdit>(window, "linePhotoCaption"), QStringLiteral("View to the west"));
}

// A map as the author makes one: choose its kind, press the button, select a link again.
bool makeMap(Tourwright& window, const char* kind, const QString& picture)
{
    // Without lidar there is none to make.
    if (!find<QPushButton>(window, "buttonGenMap")->isEnabled()) return true;
    QTest::mouseClick(find<QRadioButton>(window, kind), Qt::LeftButton);
    DialogRobot robot(&window);
    if (!isConnected(window.project(), window.linker())) robot.press(QMessageBox::Yes);
    click(window, "buttonGenMap");
    selectLink(window, 1);
    return savePicture(window, picture);
}

// Two panoramas that are not linked, each turned a little between one pair of points and the next.
bool takeEditorPicture(Tourwright& window, const Order& order)
{
    find<QTabWidget>(window, "tabMain")->setCurrentIndex(0);
    find<QComboBox>(window, "comboSelPano0")->setCurrentIndex(0);
    find<QComboBox>(window, "comboSelPano1")->setCurrentIndex(2);
    click(window, "buttonAddLink");
    auto* editor = window.findChild<PanoMatchEditor*>();
    if (!editor || !QTest::qWaitForWindowExposed(editor)) return false;
    editor->setGeometry({{}, order.size});
    for (const int turn : {90, -160, 60}) {
        for (const char* name : {"widgetAddLink0", "widgetAddLink1"}) {
            auto* view = editor->findChild<HotSpotWidget*>(QLatin1String(name));
            const QPoint middle = view->rect().center();
            QTest::mousePress(view, Qt::LeftButton, {}, middle);
            QTest::mouseMove(view, middle + QPoint(turn, turn / 3));
            QTest::mouseRelease(view, Qt::LeftButton, {}, middle + QPoint(turn, turn / 3));
            view->grabFramebuffer();
        }
        QTest::mouseClick(editor->findChild<QPushButton*>(QStringLiteral("buttonAddPair")), Qt::LeftButton);
    }
    const bool saved = savePicture(*editor, order.pictures + QStringLiteral("/link-editor.png"));
    editor->close();
    return saved;
}

bool takePictures(Tourwright& window, const Order& order)
{
    bool good = savePicture(window, order.pictures + QStringLiteral("/empty.png"));
    importPanoramas(window, order.panoramas);
    good = savePicture(window, order.pictures + QStringLiteral("/imported.png")) && good;
    click(window, "buttonAutoGenLink");
    selectLink(window, 1);
    good = savePicture(window, order.pictures + QStringLiteral("/main-window.png")) && good;
    good = makeMap(window, "radioMap3D", order.pictures + QStringLiteral("/map-cloud.png")) && good;
    good = makeMap(window, "radioMap2D", order.pictures + QStringLiteral("/map-plan.png")) && good;
    find<QTabWidget>(window, "tabMain")->setCurrentIndex(1);
    const QTemporaryDir photos;
    addHotspots(window, photos.path());
    good = savePicture(window, order.pictures + QStringLiteral("/hotspots.png")) && good;
    return takeEditorPicture(window, order) && good;
}

} // namespace

int main(int argc, char** argv)
{
    localtext::useSystemEncoding();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    Order order;
    if (!parse(QCoreApplication::arguments(), &order)) {
        QTextStream(stderr)
            << "usage: window-pictures PANORAMAS PICTURES [--size WIDTHxHEIGHT] [--chinese]\n"
               "Imports the .pno files of the folder PANORAMAS into the main window, links them\n"
               "and saves pictures of the window as PICTURES/*.png.\n";
        return kUsage;
    }
    if (!QDir().mkpath(order.pictures)) return 1;

    const QString programs = asFolder(QCoreApplication::applicationDirPath());
    QTranslator translator;
    if (translator.load(programs + (order.chinese ? QStringLiteral("tourwright_zh.qm")
                                                  : QStringLiteral("tourwright_en.qm"))))
        QCoreApplication::installTranslator(&translator);
    const QTemporaryDir folder;
    const ProjectFolders folders = makeProjectFolders(folder.path(), QStringLiteral("en_US")).folders;
    Tourwright window(std::make_unique<NexomapLinker>(programs));
    window.handOver(folders.application, folders.working, folders.output, folders.viewer);
    window.resize(order.size);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return 1;
    return takePictures(window, order) ? 0 : 1;
}
