// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The window's controls by name: where they stand, what they say, how they start.

#include "linking/editor/PicWidget.h"
#include "tests/app/support/WindowTest.h"
#include "views/HotSpotWidget.h"
#include "views/PntCloudWidget.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QRadioButton>
#include <QTableWidget>
#include <QTabWidget>

namespace {

class WidgetTree : public WindowTest
{
protected:
    struct Place
    {
        const char* name;
        const char* className;
        const char* ancestor; ///< object name of something that holds it
    };

    void expectPlaces(const std::vector<Place>& places) const
    {
        for (const Place& place : places) {
            const auto all = window->findChildren<QObject*>(QLatin1String(place.name));
            ASSERT_EQ(all.size(), 1) << place.name;
            EXPECT_TRUE(all.front()->inherits(place.className)) << place.name;
            const QObject* holder = all.front()->parent();
            while (holder && holder->objectName() != QLatin1String(place.ancestor))
                holder = holder->parent();
            EXPECT_NE(holder, nullptr) << place.name << " is not within " << place.ancestor;
        }
    }

    QStringList actionsOf(const char* menu) const
    {
        QStringList names;
        for (const QAction* action : find<QMenu>(menu)->actions())
            if (!action->isSeparator()) names << action->objectName();
        return names;
    }

    QString text(const char* name, const char* property = "text") const
    {
        return find<QObject>(name)->property(property).toString();
    }

    QStringList headers(const char* name) const
    {
        const auto* table = find<QTableWidget>(name);
        QStringList texts;
        for (int column = 0; column < table->columnCount(); ++column)
            texts << table->horizontalHeaderItem(column)->text();
        return texts;
    }
};

TEST_F(WidgetTree, TheTopLevelObjectHasItsName)
{
    EXPECT_EQ(window->objectName(), QStringLiteral("TourwrightClass"));
}

TEST_F(WidgetTree, TheMenusHoldTheirActionsInOrder)
{
    expectPlaces({{"menuFile", "QMenu", "menuBar"},
                  {"menuPreview", "QMenu", "menuBar"},
                  {"menu", "QMenu", "menuBar"}});
    EXPECT_EQ(
        actionsOf("menuFile"),
        (QStringList{QStringLiteral("actionNew"), QStringLiteral("actionOpen"), QStringLiteral("actionSave"),
                     QStringLiteral("actionSaveAs"), QStringLiteral("actionQuit")}));
    EXPECT_EQ(actionsOf("menuPreview"), QStringList{QStringLiteral("actionPreview")});
    EXPECT_EQ(actionsOf("menu"), QStringList{QStringLiteral("actionUpload")});
}

TEST_F(WidgetTree, EveryControlStandsInItsAreaUnderItsName)
{
    expectPlaces({{"listPano", "QListWidget", "centralWidget"},
                  {"buttonAddPano", "QPushButton", "centralWidget"},
                  {"buttonDelPano", "QPushButton", "centralWidget"},
                  {"tabMain", "QTabWidget", "centralWidget"},
                  {"tabSubLink", "QWidget", "tabMain"},
                  {"tabSubHotspot", "QWidget", "tabMain"},
                  {"widgetLink0", "HotSpotWidget", "tabSubLink"},
                  {"widgetLink1", "HotSpotWidget", "tabSubLink"},
                  {"widgetPlan", "PicWidget", "tabSubLink"},
                  {"widgetPntCloud", "PntCloudWidget", "tabSubLink"},
                  {"groupSetEntryPano", "QGroupBox", "tabSubLink"},
                  {"labelSelEntryPano", "QLabel", "groupSetEntryPano"},
                  {"comboSelEntryPano", "QComboBox", "groupSetEntryPano"},
                  {"tableLink", "QTableWidget", "tabSubLink"},
                  {"buttonDelLink", "QPushButton", "tabSubLink"},
                  {"groupAutoLink", "QGroupBox", "tabSubLink"},
                  {"progressAuto", "QProgressBar", "groupAutoLink"},
                  {"buttonAutoGenLink", "QPushButton", "groupAutoLink"},
                  {"groupAddLink", "QGroupBox", "tabSubLink"},
                  {"labelSelPano0", "QLabel", "groupAddLink"},
                  {"comboSelPano0", "QComboBox", "groupAddLink"},
                  {"labelSelPano1", "QLabel", "groupAddLink"},
                  {"comboSelPano1", "QComboBox", "groupAddLink"},
                  {"buttonAddLink", "QPushButton", "groupAddLink"},
                  {"groupGenMap", "QGroupBox", "tabSubLink"},
                  {"groupCloudConf", "QGroupBox", "groupGenMap"},
                  {"buttonGenMap", "QPushButton", "groupGenMap"}});
}

TEST_F(WidgetTree, TheMapOptionsStandInTheirGroup)
{
    for (const char* name : {"labelMapMode", "labelScene", "labelDensity", "labelFullCloud", "labelBinCloud"})
        expectPlaces({{name, "QLabel", "groupCloudConf"}});
    for (const char* name : {"radioMap2D", "radioMap3D", "radioIndoor", "radioOutdoor", "radioDensityHigh",
                             "radioDensityMid", "radioDensityLow"})
        expectPlaces({{name, "QRadioButton", "groupCloudConf"}});
    expectPlaces({{"checkFullCloud", "QCheckBox", "groupCloudConf"},
                  {"checkBinCloud", "QCheckBox", "groupCloudConf"}});
}

TEST_F(WidgetTree, TheHotspotPageHoldsItsControls)
{
    expectPlaces({{"widgetPhoto", "HotSpotWidget", "tabSubHotspot"},
                  {"tabHotspot", "QTabWidget", "tabSubHotspot"},
                  {"tabSubPhoto", "QWidget", "tabHotspot"},
                  {"groupAddPhoto", "QGroupBox", "tabSubPhoto"},
                  {"tablePhoto", "QTableWidget", "groupAddPhoto"},
                  {"buttonAddPhoto", "QPushButton", "groupAddPhoto"},
                  {"buttonDelPhoto", "QPushButton", "groupAddPhoto"},
                  {"labelPhotoCaption", "QLabel", "groupAddPhoto"},
                  {"linePhotoCaption", "QLineEdit", "groupAddPhoto"},
                  {"buttonSelPhoto", "QPushButton", "groupAddPhoto"},
                  {"widgetPic", "PicWidget", "groupAddPhoto"},
                  {"tabSubInfo", "QWidget", "tabHotspot"},
                  {"groupAddInfo", "QGroupBox", "tabSubInfo"},
                  {"tableInfo", "QTableWidget", "groupAddInfo"},
                  {"buttonAddInfo", "QPushButton", "groupAddInfo"},
                  {"buttonDelInfo", "QPushButton", "groupAddInfo"},
                  {"labelInfoCaption", "QLabel", "groupAddInfo"},
                  {"lineInfoCaption", "QLineEdit", "groupAddInfo"},
                  {"labelInfoContent", "QLabel", "groupAddInfo"},
                  {"plainInfo", "QPlainTextEdit", "groupAddInfo"}});
}

TEST_F(WidgetTree, TheViewsOfTheLinkPageAreCreatedInTheirOrder)
{
    QStringList views;
    for (const QObject* child : find<QWidget>("tabSubLink")->children())
        if (child->objectName().startsWith(QLatin1String("widget"))) views << child->objectName();
    EXPECT_EQ(views, (QStringList{QStringLiteral("widgetLink1"), QStringLiteral("widgetLink0"),
                                  QStringLiteral("widgetPlan"), QStringLiteral("widgetPntCloud")}));
}

TEST_F(WidgetTree, PanoramaOneOfALinkStandsOnTheLeft)
{
    EXPECT_LT(find<QWidget>("widgetLink0")->x(), find<QWidget>("widgetLink1")->x());
}

TEST_F(WidgetTree, TheLayoutIsMadeOfBoxes)
{
    EXPECT_TRUE(window->findChildren<QGridLayout*>(QRegularExpression(QStringLiteral("^layout"))).isEmpty());
    EXPECT_GE(window->findChildren<QBoxLayout*>(QRegularExpression(QStringLiteral("^layout"))).size(), 20);
}

TEST_F(WidgetTree, WithoutTranslationTheTextsAreTheirChineseSources)
{
    const std::vector<std::pair<const char*, const char16_t*>> texts = {
        {"actionNew", u"新建"},
        {"actionOpen", u"打开"},
        {"actionSave", u"保存"},
        {"actionSaveAs", u"另存为"},
        {"actionQuit", u"退出"},
        {"actionPreview", u"预览"},
        {"actionUpload", u"上传"},
        {"buttonAddPano", u"添加全景点"},
        {"buttonDelPano", u"删除全景点"},
        {"labelSelEntryPano", u"选择起始全景点"},
        {"buttonDelLink", u"删除全景链接"},
        {"buttonAutoGenLink", u"自动生成全景链接"},
        {"labelSelPano0", u"选择一个全景点"},
        {"labelSelPano1", u"选择另一个全景点"},
        {"buttonAddLink", u"手动添加全景链接"},
        {"radioMap2D", u"2D平面图"},
        {"labelFullCloud", u"输出拼合后的PTS点云"},
        {"radioIndoor", u"室内"},
        {"radioOutdoor", u"室外"},
        {"radioDensityMid", u"中"},
        {"radioMap3D", u"3D点云"},
        {"radioDensityLow", u"低"},
        {"labelMapMode", u"导航图模式"},
        {"radioDensityHigh", u"高"},
        {"labelScene", u"拍摄场景"},
        {"labelDensity", u"点云密度"},
        {"labelBinCloud", u"输出拼合后的二进制点云"},
        {"buttonGenMap", u"自动完善全景链接并生成导航图"},
        {"buttonAddPhoto", u"添加图片热点"},
        {"buttonDelPhoto", u"删除图片热点"},
        {"labelPhotoCaption", u"标题"},
        {"labelInfoCaption", u"标题"},
        {"buttonSelPhoto", u"选择图片"},
        {"buttonAddInfo", u"添加文字热点"},
        {"buttonDelInfo", u"删除文字热点"},
        {"labelInfoContent", u"内容"},
        {"checkFullCloud", u""},
        {"checkBinCloud", u""}};
    for (const auto& [name, expected] : texts)
        EXPECT_EQ(text(name), QString::fromUtf16(expected)) << name;
}

TEST_F(WidgetTree, WithoutTranslationTheTitlesAreTheirChineseSources)
{
    EXPECT_EQ(window->windowTitle(), QStringLiteral(u"Orvanta 漫游创作工具"));
    const std::vector<std::pair<const char*, const char16_t*>> titles = {
        {"groupSetEntryPano", u"设置起始全景点"},
        {"groupAutoLink", u"自动生成全景链接"},
        {"groupAddLink", u"手动添加全景链接"},
        {"groupGenMap", u"自动完善全景链接并生成导航图"},
        {"groupCloudConf", u"导航图输出设置"},
        {"groupAddPhoto", u"设置图片热点"},
        {"groupAddInfo", u"设置文字热点"},
        {"menuFile", u"文件"},
        {"menuPreview", u"预览"},
        {"menu", u"上传"}};
    for (const auto& [name, expected] : titles)
        EXPECT_EQ(text(name, "title"), QString::fromUtf16(expected)) << name;
    const auto* main = find<QTabWidget>("tabMain");
    EXPECT_EQ(main->tabText(0), QStringLiteral(u"设置全景链接"));
    EXPECT_EQ(main->tabText(1), QStringLiteral(u"设置热点"));
    const auto* hotspots = find<QTabWidget>("tabHotspot");
    EXPECT_EQ(hotspots->tabText(0), QStringLiteral(u"图片"));
    EXPECT_EQ(hotspots->tabText(1), QStringLiteral(u"文字"));
}

TEST_F(WidgetTree, TheMapOptionsHaveTheirTooltips)
{
    const std::vector<std::pair<const char*, const char16_t*>> tips = {
        {"radioMap2D", u"使用黑白2D平面图作为导航图"},
        {"radioMap3D", u"使用彩色3D点云作为导航图"},
        {"radioIndoor", u"自动去除天花板且进行点云插值"},
        {"radioOutdoor", u"不去除天花板且不进行点云插值"},
        {"radioDensityHigh", u"适合1千平方米以下的场景"},
        {"radioDensityMid", u"适合1千到1万平方米的场景"},
        {"radioDensityLow", u"适合1万平方米以上的场景"},
        {"checkFullCloud", u"原始点云可能占用1GB以上存储空间且需要更长时间"}};
    for (const auto& [name, expected] : tips)
        EXPECT_EQ(text(name, "toolTip"), QString::fromUtf16(expected)) << name;
}

TEST_F(WidgetTree, TheMapOptionsStartAs3DIndoorHighWithoutFiles)
{
    for (const char* name : {"radioMap3D", "radioIndoor", "radioDensityHigh"})
        EXPECT_TRUE(find<QRadioButton>(name)->isChecked()) << name;
    EXPECT_FALSE(find<QCheckBox>("checkFullCloud")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("checkBinCloud")->isChecked());
}

TEST_F(WidgetTree, EachRadioSetIsOneExclusiveGroup)
{
    const std::vector<std::pair<const char*, QSet<QString>>> groups = {
        {"buttonGroup", {QStringLiteral("radioIndoor"), QStringLiteral("radioOutdoor")}},
        {"buttonGroup_2",
         {QStringLiteral("radioDensityHigh"), QStringLiteral("radioDensityMid"),
          QStringLiteral("radioDensityLow")}},
        {"buttonGroup_3", {QStringLiteral("radioMap2D"), QStringLiteral("radioMap3D")}}};
    for (const auto& [name, members] : groups) {
        const auto* group = find<QButtonGroup>(name);
        EXPECT_TRUE(group->exclusive()) << name;
        QSet<QString> found;
        for (const QAbstractButton* button : group->buttons())
            found << button->objectName();
        EXPECT_EQ(found, members) << name;
    }
}

TEST_F(WidgetTree, ProgressAndPagesStartAtTheirBeginning)
{
    EXPECT_EQ(find<QProgressBar>("progressAuto")->value(), 0);
    EXPECT_EQ(find<QTabWidget>("tabMain")->currentIndex(), 0);
    EXPECT_EQ(find<QTabWidget>("tabHotspot")->currentIndex(), 0);
    EXPECT_TRUE(enabled("groupAutoLink"));
    EXPECT_FALSE(enabled("groupAddLink"));
}

TEST_F(WidgetTree, TheWindowStartsAt1920By1000)
{
    const Tourwright fresh(std::make_unique<RecordingLinker>());
    EXPECT_EQ(fresh.size(), QSize(1920, 1000));
}

TEST_F(WidgetTree, TheTablesHaveTheirHeadersAndColumnWidths)
{
    EXPECT_EQ(headers("tableLink"), (QStringList{QStringLiteral("Auto"), QStringLiteral("Panorama 1"),
                                                 QStringLiteral("Panorama 2")}));
    EXPECT_EQ(headers("tablePhoto"),
              (QStringList{QStringLiteral("Image Size"), QStringLiteral("Hotspot Title")}));
    EXPECT_EQ(headers("tableInfo"),
              (QStringList{QStringLiteral("Content Length"), QStringLiteral("Hotspot Title")}));
    EXPECT_EQ(find<QTableWidget>("tableLink")->columnWidth(0), 55);
    EXPECT_EQ(find<QTableWidget>("tableLink")->columnWidth(1), 205);
    EXPECT_EQ(find<QTableWidget>("tablePhoto")->columnWidth(0), 120);
    EXPECT_EQ(find<QTableWidget>("tableInfo")->columnWidth(0), 120);
}

TEST_F(WidgetTree, TheViewsKnowTheirUseAndTheirPictures)
{
    const auto* photo = find<HotSpotWidget>("widgetPhoto");
    EXPECT_EQ(photo->mode(), HotSpotWidget::Hotspots);
    EXPECT_EQ(photo->panoramaImage()->size(), QSize(8192, 4096));
    for (int side = 0; side < 2; ++side) {
        const auto* view = find<HotSpotWidget>(side == 0 ? "widgetLink0" : "widgetLink1");
        EXPECT_EQ(view->mode(), HotSpotWidget::Link);
        EXPECT_EQ(view->side(), side);
        EXPECT_EQ(view->panoramaImage()->size(), QSize(4096, 2048));
        EXPECT_EQ(view->panoramaImage()->format(), QImage::Format_RGB888);
    }
    EXPECT_NE(find<HotSpotWidget>("widgetLink0")->panoramaImage(),
              find<HotSpotWidget>("widgetLink1")->panoramaImage());
}

} // namespace
