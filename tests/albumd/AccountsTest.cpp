// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Wrong tries by the day, tokens with an end, quotas, accounts apart, passwords nowhere.

#include "companions/albumd/Accounts.h"
#include "tests/albumd/Client.h"
#include "tests/support/TestFiles.h"

#include <QDirIterator>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace albumtest;
using albumd::Accounts;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::int64_t kDay_s = 24 * 60 * 60;
constexpr const char* kRight = "walk1home";

class AccountRules : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(database.open(folder.path("albumd.sqlite"), &error)) << error;
        ASSERT_TRUE(accounts.add("one@example.com", kRight, 1000, &error)) << error;
    }

    int wrongTry(const char* email = "one@example.com")
    {
        const Accounts::Login login = accounts.login(email, "wrong1234");
        EXPECT_EQ(login.result, Accounts::Login::Wrong);
        return login.triesLeft;
    }

    Accounts::Login rightTry() { return accounts.login("one@example.com", kRight); }

    pnotest::TemporaryFolder folder;
    std::int64_t now = 1'750'000'000;
    albumd::Database database;
    Accounts accounts{database, 3600, [this] { return now; }};
};

TEST_F(AccountRules, ThreeWrongTriesADayThenRefusedUntilTheNextDay)
{
    EXPECT_EQ(wrongTry(), 2);
    EXPECT_EQ(wrongTry(), 1);
    EXPECT_EQ(wrongTry(), 0);
    EXPECT_EQ(wrongTry(), 0);
    EXPECT_EQ(rightTry().result, Accounts::Login::Wrong) << "the right password comes too late";
    now += kDay_s;
    EXPECT_EQ(rightTry().result, Accounts::Login::Welcome);
    EXPECT_EQ(wrongTry(), 2);
}

TEST_F(AccountRules, ARightTryGivesNoWrongOnesBack)
{
    EXPECT_EQ(wrongTry(), 2);
    EXPECT_EQ(rightTry().result, Accounts::Login::Welcome);
    EXPECT_EQ(wrongTry(), 1);
}

TEST_F(AccountRules, AnUnknownAddressIsAnsweredAsAWrongPassword)
{
    EXPECT_EQ(wrongTry("nobody@example.com"), 2);
    EXPECT_EQ(wrongTry("nobody@example.com"), 1);
    EXPECT_EQ(wrongTry("nobody@example.com"), 0);
    EXPECT_EQ(wrongTry("nobody@example.com"), 0);
    EXPECT_EQ(wrongTry("somebody@example.com"), 2);
    EXPECT_EQ(wrongTry(), 2) << "nobody's tries are not counted for others";
}

TEST_F(AccountRules, TheCaseOfAnAddressMakesNoOtherAccount)
{
    EXPECT_EQ(accounts.login("ONE@Example.Com", kRight).result, Accounts::Login::Welcome);
    EXPECT_EQ(wrongTry("ONE@example.com"), 2);
    EXPECT_EQ(wrongTry("one@EXAMPLE.com"), 1);
    std::string error;
    EXPECT_FALSE(accounts.add("One@example.com", kRight, 1000, &error));
}

TEST_F(AccountRules, ATokenHasAnEnd)
{
    const std::string token = rightTry().token;
    ASSERT_TRUE(accounts.owner(token));
    EXPECT_EQ(accounts.owner(token)->email, "one@example.com");
    now += 3599;
    EXPECT_TRUE(accounts.owner(token));
    now += 1;
    EXPECT_FALSE(accounts.owner(token));
}

TEST_F(AccountRules, ANewPasswordEndsTokensAndForgivesTries)
{
    const std::string token = rightTry().token;
    while (wrongTry() > 0) {
    }
    std::string error;
    ASSERT_TRUE(accounts.setPassword("one@example.com", "another1", &error)) << error;
    EXPECT_FALSE(accounts.owner(token));
    EXPECT_EQ(rightTry().result, Accounts::Login::Wrong);
    EXPECT_EQ(accounts.login("one@example.com", "another1").result, Accounts::Login::Welcome);
}

TEST_F(AccountRules, OnlyWhatTheUploadDialogLetsThroughBecomesAnAccount)
{
    std::string error;
    for (const char* email :
         {"a+b@example.com", "a@b", "a@b.c", "a@b.abcde", "@b.com", "a b@c.com", "a@.com", ""})
        EXPECT_FALSE(accounts.add(email, kRight, 1, &error)) << email;
    for (const char* password : {"abc123", "1234567", "abcdefg", "", "ab1\xff\xff\xff\xff"})
        EXPECT_FALSE(accounts.add("two@example.com", password, 1, &error)) << password;
    EXPECT_TRUE(accounts.add("a.b-c_d@sub.example.info", "密码密码密1a", 1, &error)) << error;
}

TEST(AccountsOverHttp, TheDigitAtPositionThreeIsTheNumberOfTriesLeft)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM));
    Client client(service.port());
    const auto tryOnce = [&] {
        return client.get("/login", {{"email", kAccount}, {"password", "wrong1234"}});
    };
    EXPECT_EQ(tryOnce().body, "ER 2");
    EXPECT_EQ(tryOnce().body, "ER 1");
    EXPECT_EQ(tryOnce().body, "ER 0");
    const Answer last = client.get("/login", {{"email", kAccount}, {"password", kPassword}});
    EXPECT_EQ(last.body, "ER 0");
    EXPECT_EQ(last.status, 200);
}

TEST(AccountsOverHttp, WithoutRoomAnUploadIsAnsweredWithEr1AndNothingIsKept)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM), 1);
    Client client(service.port());
    ASSERT_TRUE(client.login());
    const std::string a = idNumber(0), b = idNumber(1), c = idNumber(2);
    EXPECT_EQ(client.upload(a, smallPanorama(a, 2 << 20)).body.substr(0, 4), "ER 1");
    EXPECT_THAT(client.listed(), IsEmpty());
    EXPECT_EQ(client.upload(b, smallPanorama(b, 600 << 10)).body, "OK");
    EXPECT_EQ(client.upload(c, smallPanorama(c, 600 << 10)).body.substr(0, 4), "ER 1");
    EXPECT_EQ(client.upload(c, smallPanorama(c, 100 << 10)).body, "OK");
    EXPECT_THAT(client.listed(), ElementsAre(b, c));
}

TEST(AccountsOverHttp, APanoramaSentAgainNeedsOnlyTheRoomThatItTakesMore)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM), 1);
    Client client(service.port());
    ASSERT_TRUE(client.login());
    const std::string a = idNumber(0), b = idNumber(1);
    ASSERT_EQ(client.upload(a, smallPanorama(a, 700 << 10)).body, "OK");
    EXPECT_EQ(client.upload(a, smallPanorama(a, 700 << 10)).body, "OK") << "as large as before";
    EXPECT_EQ(client.upload(a, smallPanorama(a, 900 << 10)).body, "OK") << "larger, and fits";
    EXPECT_EQ(client.upload(a, smallPanorama(a, 1100 << 10)).body.substr(0, 4), "ER 1");
    EXPECT_EQ(client.upload(b, smallPanorama(b, 300 << 10)).body.substr(0, 4), "ER 1");
    EXPECT_EQ(client.upload(a, smallPanorama(a, 300 << 10)).body, "OK") << "smaller";
    EXPECT_EQ(client.upload(b, smallPanorama(b, 300 << 10)).body, "OK") << "the room that it gave back";
    EXPECT_THAT(client.listed(), ElementsAre(a, b));
}

TEST(AccountsOverHttp, TwoAccountsSeeNothingOfEachOther)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM));
    ASSERT_TRUE(service.addUser(QStringLiteral("other@example.com"), QStringLiteral("other1home")));
    Client one(service.port()), other(service.port());
    ASSERT_TRUE(one.login());
    ASSERT_TRUE(other.login("other@example.com", "other1home"));
    const std::string a = idNumber(0);
    ASSERT_EQ(one.upload(a, smallPanorama(a)).body, "OK");
    EXPECT_THAT(other.listed(), IsEmpty());
    EXPECT_EQ(other.createAlbum({a}), "");
    const std::string album = one.createAlbum({a});
    const Items place{{"token", other.token}, {"albumid", album}, {"panoid", a}};
    EXPECT_EQ(other.post("/set_albumpano_location", place, locationText(1, 2, 3)).status, 404);
    EXPECT_EQ(other.post("/set_albumpano_linktags", place, infoTag(0, 1, "c", "t")).status, 404);
    ASSERT_EQ(other.upload(a, smallPanorama(a, 1000)).body, "OK") << "the same panorama, for itself";
    EXPECT_EQ(other.post("/set_albumpano_location", place, locationText(1, 2, 3)).status, 404);
    EXPECT_THAT(one.listed(), ElementsAre(a));
}

TEST(AccountsOverHttp, PasswordsAndTokensStandNowhere)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM));
    Client client(service.port());
    ASSERT_TRUE(client.login());
    client.get("/login", {{"email", kAccount}, {"password", "not1right"}});
    ASSERT_EQ(service.terminate(), 0);
    const std::string all = service.output().toStdString();
    int files = 0;
    QDirIterator walk(service.dataFolder(), QDir::Files, QDirIterator::Subdirectories);
    std::string bytes = all;
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (file.open(QIODevice::ReadOnly)) bytes += file.readAll().toStdString();
        ++files;
    }
    EXPECT_GT(files, 1);
    EXPECT_EQ(bytes.find(kPassword), std::string::npos);
    EXPECT_EQ(bytes.find("not1right"), std::string::npos);
    EXPECT_EQ(bytes.find(client.token), std::string::npos);
    EXPECT_NE(bytes.find("argon2id"), std::string::npos);
}

TEST(AccountsOverHttp, TheDataFolderIsItsOwnersAlone)
{
    AlbumService service(QStringLiteral(ALBUMD_PROGRAM));
    EXPECT_EQ(QFileInfo(service.dataFolder()).permissions() &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              QFile::Permissions());
}

} // namespace
