// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/app/support/WindowTest.h"

#include "project/ProjectFolders.h"
#include "tests/support/JpegTiles.h"
#include "tests/support/PnoParts.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

namespace {

pnotest::Bytes smallestTileOnly(int level, int column, int row)
{
    if (level > 0) return {1, 2, 3, 4};
    return pnotest::solidJpeg(pnotest::placeColour(level, column, row));
}

QString writePano(const QString& path, const char* identity, bool lidar, const pnotest::TileSource& tiles)
{
    pnotest::PnoOptions options;
    options.identity = identity;
    options.tiles = tiles;
    if (lidar) options.depthTiles = pnotest::tinyTiles();
    const pnotest::Bytes bytes = pnotest::panorama(options);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size())) !=
            static_cast<qint64>(bytes.size()))
        qFatal("cannot write a test panorama");
    return path;
}

} // namespace

WindowTest::WindowTest()
    : temporary(QDir::tempPath() + QStringLiteral(u"/漫游 été XXXXXX"))
    , folder(temporary.path() + QLatin1Char('/'))
{
    auto recording = std::make_unique<RecordingLinker>();
    linker = recording.get();
    show(std::move(recording));
    linker->calls.clear();
}

WindowTest::WindowTest(std::unique_ptr<Linker> library)
    : temporary(QDir::tempPath() + QStringLiteral(u"/漫游 été XXXXXX"))
    , folder(temporary.path() + QLatin1Char('/'))
{
    show(std::move(library));
}

void WindowTest::show(std::unique_ptr<Linker> library)
{
    window = std::make_unique<Tourwright>(std::move(library));
    const ProjectFolders folders = makeProjectFolders(folder, QStringLiteral("en_US")).folders;
    window->handOver(folders.application, folders.working, folders.output, folders.viewer);
    window->resize(1366, 740);
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get())) qFatal("the window does not show");
    robot = std::make_unique<DialogRobot>(window.get());
}

WindowTest::~WindowTest() = default;

void WindowTest::TearDown()
{
    if (window && linker) linker->onCall = nullptr;
}

QString WindowTest::writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write a test file");
    return path;
}

QString WindowTest::makePano(const QString& fileName, const char* identity, bool lidar) const
{
    return writePano(inFolder(fileName), identity, lidar, smallestTileOnly);
}

QString WindowTest::makePictureOfPlaces(const QString& fileName, const char* identity, bool lidar) const
{
    return writePano(inFolder(fileName), identity, lidar, pnotest::colouredTiles());
}

void WindowTest::click(const char* button) const
{
    QTest::mouseClick(find<QAbstractButton>(button), Qt::LeftButton);
}

void WindowTest::choose(const char* menu, const char* action) const
{
    auto* bar = find<QMenuBar>("menuBar");
    auto* popup = find<QMenu>(menu);
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(popup->menuAction()).center());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popup));
    QTest::mouseClick(popup, Qt::LeftButton, {}, popup->actionGeometry(find<QAction>(action)).center());
}

void WindowTest::clickListRow(int row) const
{
    auto* list = find<QListWidget>("listPano");
    list->scrollToItem(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
}

void WindowTest::clickTableRow(const char* name, int row) const
{
    auto* table = find<QTableWidget>(name);
    table->scrollToItem(table->item(row, 1));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      table->visualItemRect(table->item(row, 1)).center());
}

void WindowTest::chooseEntry(const char* name, int index) const
{
    auto* combo = find<QComboBox>(name);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Home);
    for (int step = 0; step < index; ++step)
        QTest::keyClick(combo, Qt::Key_Down);
}

void WindowTest::import(const QStringList& files)
{
    robot->choose(files);
    click("buttonAddPano");
}

const char* WindowTest::identity(int room)
{
    static const char* const kIdentities[] = {"AAAAAAAAAAAAAA", "BBBBBBBBBBBBBB", "CCCCCCCCCCCCCC",
                                              "DDDDDDDDDDDDDD"};
    return kIdentities[room];
}

void WindowTest::importRooms(int count, bool lidar)
{
    QStringList files;
    for (int room = 0; room < count; ++room)
        files << makePano(QStringLiteral("room %1.pno").arg(room + 1), identity(room), lidar);
    import(files);
}

QStringList WindowTest::rows(const char* name) const
{
    const auto* table = find<QTableWidget>(name);
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column)
            cells << table->item(row, column)->text();
        rows << cells.join(QLatin1Char('|'));
    }
    return rows;
}
