// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/app/support/UploadTest.h"

#include <QAction>
#include <QEventLoop>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <cstring>
#include <functional>
#include <ostream>

void PrintTo(const UploadState& state, std::ostream* stream)
{
    *stream << "window " << (state.window ? "enabled" : "disabled") << ", dialog "
            << (state.dialog ? "enabled" : "disabled") << (state.shown ? ", shown" : ", closed")
            << ", progress " << state.progress;
}

namespace {

/// In an event loop of its own: QTest::qWaitFor sleeps between looks, and an upload goes on only as fast as
/// events are taken.
bool waitUntil(const std::function<bool()>& holds, int timeout_ms)
{
    QEventLoop loop;
    QTimer look, end;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (holds()) loop.exit(1);
    });
    QObject::connect(&end, &QTimer::timeout, &loop, [&] { loop.exit(0); });
    end.setSingleShot(true);
    look.start(10);
    end.start(timeout_ms);
    return holds() || loop.exec() == 1;
}

} // namespace

UploadTest::UploadTest()
{
    watchReplies();
}

UploadTest::UploadTest(std::unique_ptr<Linker> library)
    : WindowTest(std::move(library))
{
    watchReplies();
}

void UploadTest::watchReplies()
{
    qRegisterMetaType<QNetworkReply*>();
    auto* network = window->findChild<QNetworkAccessManager*>(QString(), Qt::FindDirectChildrenOnly);
    replies = std::make_unique<QSignalSpy>(network, &QNetworkAccessManager::finished);
}

UploadTest::~UploadTest() = default;

void UploadTest::startService()
{
    service.start();
    useService(service.url());
}

void UploadTest::useService(const QString& baseUrl)
{
    qputenv("TOURWRIGHT_ALBUM_URL", baseUrl.toUtf8());
}

void UploadTest::openDialog()
{
    choose("menu", "actionUpload");
    ASSERT_NE(dialog(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog()));
}

void UploadTest::type(const char* line, const QString& text)
{
    auto* edit = inDialog<QLineEdit>(line);
    QTest::mouseClick(edit, Qt::LeftButton);
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Delete);
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    ASSERT_EQ(edit->text(), text);
}

void UploadTest::fillIn(const QString& account, const QString& password, const QString& album)
{
    type("lineAccount", account);
    type("linePw", password);
    type("lineAlbumName", album);
}

void UploadTest::clickInDialog(const char* button)
{
    QTest::mouseClick(inDialog<QPushButton>(button), Qt::LeftButton);
}

void UploadTest::upload()
{
    openDialog();
    fillIn(QStringLiteral("a@b.com"), QStringLiteral("secret1"), QStringLiteral("漫游_1"));
    clickInDialog("buttonUpload");
}

void UploadTest::waitForReplies(int count, int timeout_ms)
{
    ASSERT_TRUE(waitUntil([&] { return replies->count() >= count; }, timeout_ms))
        << replies->count() << " replies instead of " << count;
}

bool UploadTest::atRest() const
{
    const auto* network = window->findChild<QNetworkAccessManager*>(QString(), Qt::FindDirectChildrenOnly);
    const auto all = network->findChildren<QNetworkReply*>();
    return std::all_of(all.begin(), all.end(), [](QNetworkReply* reply) { return reply->isFinished(); });
}

SeenBox UploadTest::waitForBox(int timeout_ms)
{
    robot->press(QMessageBox::Ok);
    const bool came =
        waitUntil([&] { return !robot->boxes.empty() && robot->done() && atRest(); }, timeout_ms);
    EXPECT_TRUE(came) << "no box after " << service.words().join(QLatin1Char(' ')).toStdString();
    return came ? robot->boxes.back() : SeenBox();
}

UploadState UploadTest::state() const
{
    return {window->isEnabled(), dialog()->isEnabled(), dialog()->isVisible(),
            inDialog<QProgressBar>("progressUpload")->value()};
}

void UploadTest::addLink()
{
    auto link = std::make_unique<PanoLink>();
    std::strcpy(link->name_0, identity(0));
    std::strcpy(link->name_1, identity(1));
    const QString pair = QStringLiteral("AAAAAAAAAAAAAA_BBBBBBBBBBBBBB");
    link->match_path_0 = writeFile(inWorkingFolder(pair + QStringLiteral("_0.dat")), "zero");
    link->match_path_1 = writeFile(inWorkingFolder(pair + QStringLiteral("_1.dat")), "one");
    project().links.push_back(std::move(link));
}

void UploadTest::addPhoto(int room, int number, const QByteArray& content)
{
    PhotoHotspot photo;
    photo.photo_path = writeFile(inWorkingFolder(QStringLiteral("%1-%2.jpg")
                                                     .arg(QLatin1String(identity(room)))
                                                     .arg(number, 8, 10, QLatin1Char('0'))),
                                 content);
    project().panoramas[static_cast<std::size_t>(room)]->photos << photo;
}

void expectBox(const SeenBox& box, QMessageBox::Icon kind, const QString& title, const QString& text)
{
    EXPECT_EQ(box.kind, kind);
    EXPECT_EQ(box.title, title);
    EXPECT_EQ(box.text.toStdString(), text.toStdString());
    EXPECT_EQ(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_TRUE(box.modalToWindow);
}
