// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tour files that were cut, bent or made to do harm; built with the sanitizers.

#include "project/WorkingFolder.h"
#include "tests/linking/support/TourFolders.h"

#include <gtest/gtest.h>

#include <random>

namespace {

constexpr const char* kA = "AAAAAAAAAAAAAB";

class HostileTour : public TourFolders, public testing::Test
{
protected:
    /// Opens it, and looks whether anything was written outside the working folder.
    OpenOutcome outcomeOf(const QByteArray& bytes)
    {
        clearProject(project);
        linker.calls.clear();
        const OpenOutcome outcome = openBytes(bytes).outcome;
        EXPECT_EQ(entries(top()), (QStringList{QStringLiteral("工作 é"), QStringLiteral("旅程.roa")}));
        EXPECT_EQ(entries(top() + QStringLiteral("工作 é")), QStringList{QStringLiteral("Tmp")});
        if (outcome != OpenOutcome::Opened) {
            for (const QString& call : linker.calls)
                EXPECT_TRUE(call.startsWith(QLatin1String("decompressCloud"))) << call.toStdString();
        }
        QDir folder(working());
        for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System))
            folder.remove(name);
        return outcome;
    }

    static QStringList entries(const QString& folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                      QDir::Name);
    }

    /// Every kind of record; the files in it are none.
    static QByteArray smallTour()
    {
        const QByteArray panoramas =
            QByteArray("<panorama pano_id=\"") + kA +
            "\" base_name=\"a\"><image_attributes lidar=\"1\"/><location position_x = "
            "\"1.5\" plan_src=\"x-00000000.cld\"/><link_photo src=\"p.jpg\" "
            "caption=\"c\"/><link_info caption=\"i\">a&lt;b</link_info></panorama>";
        const QByteArray links = QByteArray("<pano_link pano_id_0=\"") + kA +
                                 "\" pano_id_1=\"BBBBBBBBBBBBBB\" rot_0=\"1\" mode=\"1\"/>";
        return tourBytes({{0xFFE0, "pano_group.xml", xmlOf(panoramas, links)},
                          {0xFFE1, "a.pno", "panorama"},
                          {0xFFE1, "a.pno", "another"},
                          {0xFFE2, "AAAAAAAAAAAAAB_BBBBBBBBBBBBBB_0.dat", "match"},
                          {0xFFE3, "p.jpg", "photo"},
                          {0xFFE4, "x-00000000.cld", "cloud"}});
    }

    static QByteArray withXml(const QByteArray& xml) { return tourBytes({{0xFFE0, "pano_group.xml", xml}}); }
};

TEST_F(HostileTour, EveryPrefixOfATourIsOpenedOrRefused)
{
    const QByteArray whole = smallTour();
    int opened = 0;
    for (int size = 0; size < whole.size(); ++size)
        if (outcomeOf(whole.left(size)) == OpenOutcome::Opened) ++opened;
    // Cut between two records, or one byte into the next.
    EXPECT_EQ(opened, 6 * 2);
    EXPECT_EQ(outcomeOf(whole), OpenOutcome::Opened);
}

class BentTour : public HostileTour, public testing::WithParamInterface<unsigned>
{};

TEST_P(BentTour, TwoThousandSingleByteChangesAreOpenedOrRefused)
{
    std::mt19937 random(GetParam());
    const QByteArray whole = smallTour();
    for (int i = 0; i < 2000; ++i) {
        QByteArray bent = whole;
        const int at = static_cast<int>(random() % static_cast<unsigned>(bent.size()));
        // Half of them strike the description and the names, where there is most to break.
        bent[i % 2 ? at : at % 1600] = static_cast<char>(random());
        outcomeOf(bent);
    }
}

INSTANTIATE_TEST_SUITE_P(Changes, BentTour, testing::Range(1u, 6u));

TEST_F(HostileTour, ABentPanoramaInsideATourIsTiedOrIgnored)
{
    std::mt19937 random(7);
    const QByteArray panorama = panoramaBytes(kA);
    for (int i = 0; i < 300; ++i) {
        QByteArray bent = panorama;
        for (int k = 0; k < 3; ++k)
            bent[static_cast<int>(random() % 1000u)] = static_cast<char>(random());
        if (i % 2) bent.truncate(static_cast<int>(random() % static_cast<unsigned>(bent.size())));
        EXPECT_EQ(
            outcomeOf(tourBytes({{0xFFE0, "pano_group.xml", xmlOf("<panorama pano_id='AAAAAAAAAAAAAB'/>")},
                                 {0xFFE1, "a.pno", bent}})),
            OpenOutcome::Opened);
    }
}

TEST_F(HostileTour, NamesThatWouldLeaveTheFolderAreRefused)
{
    for (const char* name : {"..", ".", "../a.pno", "../../a.pno", "/tmp/a.pno", "./a.pno", "a/../../a.pno",
                             "..\\a.pno", "C:a.pno", "\\\\server\\a.pno", "Preview/tmp.roa", ""})
        EXPECT_EQ(outcomeOf(tourBytes({{0xFFE1, name, "x"}})), OpenOutcome::Failed) << name;
    EXPECT_EQ(outcomeOf(tourBytes({{0xFFE1, QByteArray(256, '/'), "x"}})), OpenOutcome::Failed);
}

TEST_F(HostileTour, LengthsThatTheFileDoesNotHoldAllocateNothing)
{
    for (const unsigned kind : {0xFFE0u, 0xFFE1u, 0xFFE2u, 0xFFE3u, 0xFFE4u, 0u})
        for (const quint32 length : {2u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
            EXPECT_EQ(outcomeOf(tourBytes({{kind, "a", "x", length}})), OpenOutcome::Failed);
}

TEST_F(HostileTour, EntityBombsDeepElementsAndCrowdedTagsAreRefusedAtOnce)
{
    QByteArray bomb = "<!DOCTYPE pano_group [<!ENTITY e0 \"ha\">";
    for (int i = 1; i < 40; ++i)
        bomb += "<!ENTITY e" + QByteArray::number(i) + " \"" +
                ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
    EXPECT_EQ(outcomeOf(withXml(bomb + "]><pano_group>&e39;</pano_group>")), OpenOutcome::Failed);
    EXPECT_EQ(outcomeOf(withXml(xmlOf(QByteArray("<panorama>").repeated(500000)))), OpenOutcome::Failed);
    QByteArray tag = "<panorama";
    for (int i = 0; i < 200000; ++i)
        tag += " a" + QByteArray::number(i) + "=''";
    EXPECT_EQ(outcomeOf(withXml(xmlOf(tag + "/>"))), OpenOutcome::Failed);
}

TEST_F(HostileTour, ADescriptionOfManyElementsIsReadInProportion)
{
    const QByteArray panorama = "<panorama><link_photo src='p'/></panorama>";
    const QByteArray link = "<pano_link/>";
    EXPECT_EQ(outcomeOf(tourBytes({{0xFFE0, "x", xmlOf(panorama.repeated(20000), link.repeated(20000))},
                                   {0xFFE3, "p", "x"},
                                   {0xFFE2, "aaaaaaaaaaaaaa_aaaaaaaaaaaaaa_0.dat", "x"}})),
              OpenOutcome::Opened);
    EXPECT_EQ(project.panoramas.size(), 20000u);
    EXPECT_EQ(outcomeOf(withXml(xmlOf("<panorama><link_info>" + QByteArray("&lt;").repeated(500000) +
                                      "</link_info></panorama>"))),
              OpenOutcome::Opened);
}

TEST_F(HostileTour, ManyDescriptionsAndManyRecordsOfOneNameEndInTime)
{
    std::vector<RecordBytes> records;
    for (int i = 0; i < 2000; ++i) {
        records.push_back({0xFFE0, "x", xmlOf("<panorama><link_photo src='p'/></panorama>")});
        records.push_back({0xFFE3, "p", QByteArray::number(i)});
    }
    EXPECT_EQ(outcomeOf(tourBytes(records)), OpenOutcome::Opened);
    EXPECT_EQ(project.panoramas.size(), 2000u);
}

TEST_F(HostileTour, IdentitiesThatFillTheirFieldAreHandedOnTerminated)
{
    const QByteArray name = QByteArray(40, 'Z');
    EXPECT_EQ(outcomeOf(tourBytes({{0xFFE0, "x",
                                    xmlOf("<panorama pano_id='" + name + "'/>",
                                          "<pano_link pano_id_0='" + name + "' pano_id_1='é漫'/>")},
                                   {0xFFE2, QByteArray(15, 'Z') + "_0.dat", "x"}})),
              OpenOutcome::Opened);
    EXPECT_TRUE(linker.calls.last().startsWith(QStringLiteral("loadMatch ") + QString(15, u'Z') + u' '));
}

} // namespace
