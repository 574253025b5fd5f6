// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The upload dialog: its controls, its checks, and how it opens and closes.

#include "tests/app/support/UploadTest.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

namespace {

class UploadDialog : public UploadTest
{
protected:
    void expectRefused(const QString& text)
    {
        robot->boxes.clear();
        robot->press(QMessageBox::Ok);
        clickInDialog("buttonUpload");
        ASSERT_EQ(robot->boxes.size(), 1u);
        expectBox(robot->boxes.front(), QMessageBox::Information, QStringLiteral("Upload File"), text);
        EXPECT_EQ(state(), kReady);
    }

    QString entry(const char* line) const { return inDialog<QLineEdit>(line)->text(); }
};

TEST_F(UploadDialog, AnEmptyProjectIsToldAndNoDialogComes)
{
    robot->press(QMessageBox::Ok);
    choose("menu", "actionUpload");
    ASSERT_EQ(robot->boxes.size(), 1u);
    expectBox(robot->boxes.front(), QMessageBox::Information, QStringLiteral("Upload Panorama Roaming"),
              QStringLiteral("Please add panoramas first!"));
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(UploadDialog, ItHasItsControlsTextsAndSize)
{
    importRooms(1);
    openDialog();
    EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Orvanta 漫游创作工具"));
    EXPECT_EQ(dialog()->size(), QSize(420, 250));
    const QPair<const char*, QString> labels[] = {{"labelAccount", QStringLiteral("云空间账号(Email):")},
                                                  {"labelPw", QStringLiteral("密码:")},
                                                  {"labelAlbumName", QStringLiteral("相册名:")}};
    for (const auto& [name, text] : labels) {
        const auto* label = inDialog<QLabel>(name);
        EXPECT_EQ(label->text(), text);
        EXPECT_TRUE(label->alignment().testFlag(Qt::AlignRight) &&
                    label->alignment().testFlag(Qt::AlignVCenter))
            << name;
    }
    EXPECT_EQ(inDialog<QLineEdit>("lineAccount")->echoMode(), QLineEdit::Normal);
    EXPECT_EQ(inDialog<QLineEdit>("linePw")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(inDialog<QLineEdit>("lineAlbumName")->echoMode(), QLineEdit::Normal);
    const auto* progress = inDialog<QProgressBar>("progressUpload");
    EXPECT_EQ(progress->minimum(), 0);
    EXPECT_EQ(progress->maximum(), 100);
    EXPECT_EQ(progress->value(), 0);
    EXPECT_EQ(inDialog<QPushButton>("buttonUpload")->text(), QStringLiteral("上传"));
    EXPECT_EQ(inDialog<QPushButton>("buttonCancel")->text(), QStringLiteral("取消"));
}

TEST_F(UploadDialog, APasswordIsNotShown)
{
    importRooms(1);
    openDialog();
    type("linePw", QStringLiteral("secret1"));
    EXPECT_EQ(entry("linePw"), QStringLiteral("secret1"));
    EXPECT_FALSE(inDialog<QLineEdit>("linePw")->displayText().contains(QLatin1Char('s')));
}

TEST_F(UploadDialog, TheTabKeyWalksThroughItInOrder)
{
    importRooms(1);
    openDialog();
    dialog()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog()));
    inDialog<QLineEdit>("lineAccount")->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return inDialog<QLineEdit>("lineAccount")->hasFocus(); }));
    for (const char* next : {"linePw", "lineAlbumName", "buttonUpload", "buttonCancel"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
    }
}

TEST_F(UploadDialog, TheWindowCanBeUsedBesideIt)
{
    importRooms(1);
    openDialog();
    EXPECT_FALSE(dialog()->isModal());
    EXPECT_EQ(dialog()->parentWidget(), window.get());
    clickListRow(0);
    EXPECT_TRUE(window->isEnabled());
}

TEST_F(UploadDialog, OpenedAgainItIsTheSameWithItsFieldsAsTheyWereLeft)
{
    importRooms(1);
    openDialog();
    const UploadManager* first = dialog();
    fillIn(QStringLiteral("a@b.com"), QStringLiteral("secret1"), QStringLiteral("漫游"));
    clickInDialog("buttonCancel");
    EXPECT_FALSE(first->isVisible());
    openDialog();
    EXPECT_EQ(window->findChildren<UploadManager*>().size(), 1);
    EXPECT_EQ(dialog(), first);
    EXPECT_EQ(entry("lineAccount"), QStringLiteral("a@b.com"));
    EXPECT_EQ(entry("linePw"), QStringLiteral("secret1"));
    EXPECT_EQ(entry("lineAlbumName"), QStringLiteral("漫游"));
}

TEST_F(UploadDialog, TheFirstEntryThatIsRefusedIsToldAndNothingIsSent)
{
    importRooms(1);
    startService();
    openDialog();
    fillIn(QStringLiteral("a+b@c.com"), QStringLiteral("short"), QStringLiteral("My Album"));
    expectRefused(QStringLiteral("Invalid Email!"));
    type("lineAccount", QStringLiteral("a@c.com"));
    expectRefused(QStringLiteral("Invalid Password!"));
    type("linePw", QStringLiteral("secret1"));
    expectRefused(QStringLiteral("Invalid Album Name!"));
    EXPECT_EQ(entry("lineAccount"), QStringLiteral("a@c.com"));
    EXPECT_EQ(entry("linePw"), QStringLiteral("secret1"));
    EXPECT_EQ(entry("lineAlbumName"), QStringLiteral("My Album"));
    EXPECT_TRUE(atRest());
    EXPECT_TRUE(service.requests().empty());
    EXPECT_TRUE(project().cloud.album_name.isEmpty());
}

TEST_F(UploadDialog, PressedTwiceBeforeTheReplyItLogsInTwice)
{
    importRooms(1);
    service.reply("login", QStringLiteral("no word"));
    startService();
    upload();
    clickInDialog("buttonUpload");
    waitForReplies(2);
    EXPECT_EQ(service.words(), (QStringList{QStringLiteral("login"), QStringLiteral("login")}));
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadDialog, WithAllPanoramasRemovedMeanwhileItStillLogsInAndDoesNothingFurther)
{
    importRooms(1);
    service.reply("login", grantedLogin());
    startService();
    openDialog();
    clickListRow(0);
    click("buttonDelPano");
    ASSERT_TRUE(project().panoramas.empty());
    fillIn(QStringLiteral("a@b.com"), QStringLiteral("secret1"), QStringLiteral("漫游"));
    clickInDialog("buttonUpload");
    waitForReplies(1);
    EXPECT_TRUE(atRest());
    EXPECT_EQ(service.words(), QStringList{QStringLiteral("login")});
    EXPECT_EQ(state(), kReady);
}

TEST_F(UploadDialog, ANewUploadForgetsTheAlbumOfTheLastOne)
{
    importRooms(1);
    service.reply("login", QStringLiteral("ER 3"));
    startService();
    project().cloud.album_id = QStringLiteral("EARLIER-ALBUM-");
    upload();
    waitForBox();
    EXPECT_TRUE(project().cloud.album_id.isEmpty());
    EXPECT_EQ(project().cloud.album_name, QStringLiteral("漫游_1"));
}

TEST_F(UploadDialog, TheEnterKeyUploads)
{
    importRooms(1);
    service.reply("login", QStringLiteral("no word"));
    startService();
    openDialog();
    fillIn(QStringLiteral("a@b.com"), QStringLiteral("secret1"), QStringLiteral("漫游"));
    QTest::keyClick(inDialog<QLineEdit>("lineAlbumName"), Qt::Key_Return);
    waitForReplies(1);
    EXPECT_EQ(service.words(), QStringList{QStringLiteral("login")});
}

TEST_F(UploadDialog, CheckingAndUploadingChangeNeitherProjectNorItsFlag)
{
    importRooms(1);
    service.reply("login", QStringLiteral("ER 3"));
    startService();
    project().modified = false;
    upload();
    waitForBox();
    EXPECT_FALSE(project().modified);
    EXPECT_TRUE(project().file_path.isEmpty());
}

TEST_F(UploadDialog, ItSpeaksEnglishToo)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral(TW_PROGRAMS "/tourwright_en.qm")));
    QCoreApplication::installTranslator(&translator);
    importRooms(1);
    openDialog();
    EXPECT_EQ(inDialog<QLabel>("labelPw")->text(), QStringLiteral("Password:"));
    EXPECT_EQ(inDialog<QPushButton>("buttonUpload")->text(), QStringLiteral("Upload"));
    EXPECT_EQ(inDialog<QPushButton>("buttonCancel")->text(), QStringLiteral("Cancel"));
}

} // namespace
