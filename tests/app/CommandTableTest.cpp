// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The 27 slots and the control and signal that trigger each.

#include "tests/app/support/WindowTest.h"

#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>

namespace {

class CommandTable : public WindowTest
{
protected:
    /// A connection that is there can be taken away.
    template <typename Sender, typename Signal, typename Slot>
    void expectConnected(const char* control, Signal signal, Slot slot)
    {
        EXPECT_TRUE(QObject::disconnect(find<Sender>(control), signal, window.get(), slot)) << control;
    }
};

TEST_F(CommandTable, TheSlotsAreDeclaredInTheirOrder)
{
    QStringList slots_;
    const QMetaObject& meta = Tourwright::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            slots_ << QString::fromLatin1(meta.method(i).methodSignature());
    const QString expected = QStringLiteral(
        "NewRoam() OpenRoam() SaveRoam() SaveAsRoam() Quit() Preview() UploadConfigure() Upload() "
        "ReplyFinished(QNetworkReply*) AddPano() DelPano() SelPano(int) AutoGenLink() AddLink() DelLink() "
        "GenMap() "
        "SelLink(int,int) AddPhoto() DelPhoto() AddInfo() DelInfo() EditPhotoCaption(QString) EditPhotoSrc() "
        "EditInfoCaption(QString) EditInfoContent() SelPhoto(int,int,int,int) SelInfo(int,int,int,int)");
    EXPECT_EQ(slots_.size(), 27);
    EXPECT_EQ(slots_.join(QLatin1Char(' ')), expected);
}

TEST_F(CommandTable, EveryActionTriggersItsSlot)
{
    expectConnected<QAction>("actionNew", &QAction::triggered, &Tourwright::NewRoam);
    expectConnected<QAction>("actionOpen", &QAction::triggered, &Tourwright::OpenRoam);
    expectConnected<QAction>("actionSave", &QAction::triggered, &Tourwright::SaveRoam);
    expectConnected<QAction>("actionSaveAs", &QAction::triggered, &Tourwright::SaveAsRoam);
    expectConnected<QAction>("actionQuit", &QAction::triggered, &Tourwright::Quit);
    expectConnected<QAction>("actionPreview", &QAction::triggered, &Tourwright::Preview);
    expectConnected<QAction>("actionUpload", &QAction::triggered, &Tourwright::UploadConfigure);
}

TEST_F(CommandTable, EveryButtonClicksItsSlot)
{
    expectConnected<QPushButton>("buttonAddPano", &QPushButton::clicked, &Tourwright::AddPano);
    expectConnected<QPushButton>("buttonDelPano", &QPushButton::clicked, &Tourwright::DelPano);
    expectConnected<QPushButton>("buttonAutoGenLink", &QPushButton::clicked, &Tourwright::AutoGenLink);
    expectConnected<QPushButton>("buttonAddLink", &QPushButton::clicked, &Tourwright::AddLink);
    expectConnected<QPushButton>("buttonDelLink", &QPushButton::clicked, &Tourwright::DelLink);
    expectConnected<QPushButton>("buttonGenMap", &QPushButton::clicked, &Tourwright::GenMap);
    expectConnected<QPushButton>("buttonAddPhoto", &QPushButton::clicked, &Tourwright::AddPhoto);
    expectConnected<QPushButton>("buttonDelPhoto", &QPushButton::clicked, &Tourwright::DelPhoto);
    expectConnected<QPushButton>("buttonAddInfo", &QPushButton::clicked, &Tourwright::AddInfo);
    expectConnected<QPushButton>("buttonDelInfo", &QPushButton::clicked, &Tourwright::DelInfo);
    expectConnected<QPushButton>("buttonSelPhoto", &QPushButton::clicked, &Tourwright::EditPhotoSrc);
}

TEST_F(CommandTable, ListsTablesAndFieldsTriggerTheirSlots)
{
    expectConnected<QListWidget>("listPano", &QListWidget::currentRowChanged, &Tourwright::SelPano);
    expectConnected<QTableWidget>("tableLink", &QTableWidget::cellClicked, &Tourwright::SelLink);
    expectConnected<QLineEdit>("linePhotoCaption", &QLineEdit::textEdited, &Tourwright::EditPhotoCaption);
    expectConnected<QLineEdit>("lineInfoCaption", &QLineEdit::textEdited, &Tourwright::EditInfoCaption);
    expectConnected<QPlainTextEdit>("plainInfo", &QPlainTextEdit::textChanged, &Tourwright::EditInfoContent);
    expectConnected<QTableWidget>("tablePhoto", &QTableWidget::currentCellChanged, &Tourwright::SelPhoto);
    expectConnected<QTableWidget>("tableInfo", &QTableWidget::currentCellChanged, &Tourwright::SelInfo);
}

TEST_F(CommandTable, TheNetworkManagerIsTheWindowsOwnAndTriggersReplyFinished)
{
    const auto managers = window->findChildren<QNetworkAccessManager*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(managers.size(), 1);
    EXPECT_TRUE(QObject::disconnect(managers.front(), &QNetworkAccessManager::finished, window.get(),
                                    &Tourwright::ReplyFinished));
}

} // namespace
