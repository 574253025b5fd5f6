// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Choosing the picture of a photo hotspot, and its preview.

#include "linking/editor/PicWidget.h"
#include "tests/app/support/HotspotPage.h"
#include "tests/project/Photos.h"

#include <QDir>
#include <QFileInfo>

namespace {

class ChoosePhotoCommand : public HotspotPage
{
protected:
    void SetUp() override
    {
        HotspotPage::SetUp();
        click("buttonAddPhoto");
        project().modified = false;
    }

    void choosePicture(const QString& path)
    {
        robot->choose(path);
        click("buttonSelPhoto");
    }

    /// A picture of this size beside the program.
    QString makePicture(int width, int height, const QString& name = QStringLiteral("photo.jpg")) const
    {
        return writeFile(inFolder(name), photos::jpeg(width, height));
    }

    const PhotoHotspot& photo() { return node().photos[0]; }
    PicWidget* preview() const { return find<PicWidget>("widgetPic"); }
    QStringList copies() const
    {
        return QDir(inWorkingFolder(QString())).entryList({QStringLiteral("*.jpg")}, QDir::Files);
    }

    void expectUnchanged()
    {
        EXPECT_EQ(copies(), QStringList());
        EXPECT_TRUE(photo().photo_path.isEmpty());
        EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("0x0|")});
        EXPECT_EQ(preview()->image(), nullptr);
        EXPECT_TRUE(robot->boxes.empty());
        EXPECT_FALSE(project().modified);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
};

TEST_F(ChoosePhotoCommand, TheDialogOffersJpgFilesAndStartsInTheDefaultFolder)
{
    robot->cancel();
    click("buttonSelPhoto");
    const SeenFileDialog& dialog = robot->fileDialogs.back();
    EXPECT_EQ(dialog.title, QStringLiteral("Select jpg File"));
    EXPECT_EQ(dialog.filters, QStringList{QStringLiteral("jpg File(*.jpg)")});
    EXPECT_EQ(dialog.fileMode, QFileDialog::ExistingFile);
    EXPECT_EQ(dialog.acceptMode, QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.folder, folder);
    expectUnchanged();
}

TEST_F(ChoosePhotoCommand, TheNextDialogStartsWhereTheLastPhotoWas)
{
    QDir().mkpath(inFolder(QStringLiteral(u"照片")));
    choosePicture(makePicture(40, 30, QStringLiteral(u"照片/a.jpg")));
    robot->cancel();
    click("buttonSelPhoto");
    EXPECT_EQ(robot->fileDialogs.back().folder, inFolder(QStringLiteral(u"照片/")));
}

TEST_F(ChoosePhotoCommand, ThePhotoIsACopyInTheWorkingFolderNamedByTheIdentity)
{
    const QString chosen = makePicture(400, 300);
    choosePicture(chosen);
    ASSERT_EQ(copies().size(), 1);
    EXPECT_EQ(photo().photo_path, inWorkingFolder(copies().first()));
    EXPECT_TRUE(copies().first().startsWith(QStringLiteral("AAAAAAAAAAAAAA-")));
    EXPECT_EQ(copies().first().size(), 27);
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("400x300|")});
    EXPECT_EQ(currentRow("tablePhoto"), 0);
    ASSERT_NE(preview()->image(), nullptr);
    EXPECT_EQ(preview()->image()->size(), QSize(400, 300));
    EXPECT_EQ(preview()->scale(), preview()->fitScale());
    EXPECT_TRUE(project().modified);
    QFile::remove(chosen);
    EXPECT_FALSE(QImage(photo().photo_path).isNull());
}

TEST_F(ChoosePhotoCommand, APictureOf5000By3000IsStoredAs4096By2457)
{
    choosePicture(makePicture(5000, 3000));
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("4096x2457|")});
    EXPECT_EQ(QImage(photo().photo_path).size(), QSize(4096, 2457));
    EXPECT_EQ(preview()->image()->size(), QSize(4096, 2457));
}

TEST_F(ChoosePhotoCommand, APictureOf4096By4096IsCopiedUnchanged)
{
    const QString chosen = makePicture(4096, 4096);
    choosePicture(chosen);
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("4096x4096|")});
    QFile copy(photo().photo_path), original(chosen);
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly) && original.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), original.readAll());
}

TEST_F(ChoosePhotoCommand, FilesThatAreNoPicturesChangeNothingAndAreNotReported)
{
    choosePicture(writeFile(inFolder(QStringLiteral("text.jpg")), "no picture"));
    expectUnchanged();
    choosePicture(writeFile(inFolder(QStringLiteral("empty.jpg")), ""));
    expectUnchanged();
    choosePicture(writeFile(inFolder(QStringLiteral("huge.jpg")), photos::jpegThatStates(30000, 30000)));
    expectUnchanged();
}

TEST_F(ChoosePhotoCommand, ABadFileLeavesThePictureOfBefore)
{
    choosePicture(makePicture(400, 300));
    const QString path = photo().photo_path;
    project().modified = false;
    choosePicture(writeFile(inFolder(QStringLiteral("bad.jpg")), "no picture"));
    EXPECT_EQ(photo().photo_path, path);
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("400x300|")});
    ASSERT_NE(preview()->image(), nullptr);
    EXPECT_EQ(preview()->image()->size(), QSize(400, 300));
    EXPECT_FALSE(project().modified);
}

TEST_F(ChoosePhotoCommand, AFolderThatCannotTakeTheCopyChangesNothing)
{
    const QString chosen = makePicture(400, 300);
    QDir(inWorkingFolder(QString())).removeRecursively();
    choosePicture(chosen);
    expectUnchanged();
}

TEST_F(ChoosePhotoCommand, NamesWithChineseBlanksAndMarkupAreNoTrouble)
{
    int width = 40;
    for (const QString& name : {QStringLiteral(u"照片 一 é.jpg"), QStringLiteral("a & <b>.jpg")}) {
        choosePicture(makePicture(++width, 30, name));
        EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral("%1x30|").arg(width)});
    }
}

TEST_F(ChoosePhotoCommand, TwoPhotosChosenAtOnceAreTwoFiles)
{
    choosePicture(makePicture(40, 30));
    click("buttonAddPhoto");
    choosePicture(makePicture(50, 30));
    EXPECT_EQ(rows("tablePhoto"), (QStringList{QStringLiteral("40x30|"), QStringLiteral("50x30|")}));
    EXPECT_EQ(copies().size(), 2);
}

TEST_F(ChoosePhotoCommand, ThePreviewFollowsTheSelectedRow)
{
    choosePicture(makePicture(40, 30));
    typeInto("linePhotoCaption", QStringLiteral("with"));
    click("buttonAddPhoto");
    EXPECT_EQ(preview()->image(), nullptr);
    project().modified = false;
    clickTableRow("tablePhoto", 0);
    EXPECT_EQ(text("linePhotoCaption"), QStringLiteral("with"));
    ASSERT_NE(preview()->image(), nullptr);
    EXPECT_EQ(preview()->image()->size(), QSize(40, 30));
    clickTableRow("tablePhoto", 1);
    EXPECT_EQ(text("linePhotoCaption"), QString());
    EXPECT_EQ(preview()->image(), nullptr);
    clickTableRow("tablePhoto", 0);
    click("buttonDelPhoto");
    EXPECT_EQ(preview()->image(), nullptr);
}

TEST_F(ChoosePhotoCommand, APhotoThatIsGoneOrSpoiltClearsThePreview)
{
    choosePicture(makePicture(40, 30));
    click("buttonAddPhoto");
    for (const QByteArray& bytes : {QByteArray(), photos::jpegThatStates(30000, 30000)}) {
        writeFile(node().photos[0].photo_path, bytes);
        clickTableRow("tablePhoto", 0);
        EXPECT_EQ(preview()->image(), nullptr);
        clickTableRow("tablePhoto", 1);
    }
    QFile::remove(node().photos[0].photo_path);
    clickTableRow("tablePhoto", 0);
    EXPECT_EQ(preview()->image(), nullptr);
    EXPECT_EQ(view()->selectedPhoto(), 0);
    EXPECT_TRUE(robot->boxes.empty());
}

TEST_F(ChoosePhotoCommand, PhotosAndTextsComeBackWithTheTour)
{
    choosePicture(makePicture(400, 300));
    typeInto("linePhotoCaption", QStringLiteral(u"门"));
    showTab(InfoTab);
    click("buttonAddInfo");
    typeInto("lineInfoCaption", QStringLiteral(u"说明"));
    typeContent(QStringLiteral(u"a<b & 中"));
    const QString tour = inFolder(QStringLiteral(u"漫游 é.roa"));
    robot->choose(tour);
    choose("menuFile", "actionSave");
    choose("menuFile", "actionNew");
    EXPECT_EQ(copies(), QStringList());
    robot->choose(tour);
    choose("menuFile", "actionOpen");
    EXPECT_EQ(rows("tablePhoto"), QStringList{QStringLiteral(u"400x300|门")});
    EXPECT_EQ(rows("tableInfo"), QStringList{QStringLiteral(u"7|说明")});
    showTab(PhotoTab);
    clickTableRow("tablePhoto", 0);
    ASSERT_NE(preview()->image(), nullptr);
    EXPECT_EQ(preview()->image()->size(), QSize(400, 300));
}

} // namespace
