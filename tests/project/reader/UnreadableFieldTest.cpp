// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/UnreadableField.h"
#include "project/TourXml.h"
#include "project/TourXmlReader.h"
#include "tests/project/Tours.h"

#include <gtest/gtest.h>

#include <random>

namespace {

class Unreadable : public TourForTest, public testing::Test
{
protected:
    Unreadable()
    {
        node = add("AAAAAAAAAAAAAB", QStringLiteral("room"));
        node->photos.append(PhotoHotspot());
        node->photos[0].caption = QStringLiteral("photo");
        node->photos[0].photo_path = file(QStringLiteral("p.jpg"));
        node->infos.append(InfoHotspot());
    }

    std::string field() const
    {
        const auto found = firstUnreadableField(project);
        return found ? found->field.toStdString() : "none";
    }

    /// Whether the description that is written now can be read.
    bool readable()
    {
        said = {};
        QString error;
        return tourxml::read(tourxml::build(project, 0).toUtf8(), &said, &error);
    }

    /// What `readable` read.
    tourxml::Description said;

    PanoNode* node;
};

TEST_F(Unreadable, OrdinaryTextsAreReadable)
{
    node->base_name = QStringLiteral("客厅 é > 'a'");
    node->infos[0].content = QStringLiteral("\"<b> & </b>]]>\n\t");
    EXPECT_EQ(field(), "none");
    EXPECT_TRUE(readable());
}

TEST_F(Unreadable, AQuotationMarkInACaptionIsNamedWithItsField)
{
    node->photos[0].caption = QStringLiteral("the \"big\" room");
    EXPECT_EQ(field(), "caption of the photo");
    EXPECT_EQ(firstUnreadableField(project)->text, QStringLiteral("the \"big\" room"));
    EXPECT_FALSE(readable());
}

TEST_F(Unreadable, EachFieldHasItsName)
{
    const QString bad = QStringLiteral("a & b");
    const struct
    {
        std::function<void(PanoNode&)> spoil;
        const char* name;
    } fields[] = {
        {[&](PanoNode& n) { std::memcpy(n.parameters.identity, "a<b", 4); }, "panorama identity"},
        {[&](PanoNode& n) { n.base_name = bad; }, "panorama name"},
        {[&](PanoNode& n) { n.base_name = QStringLiteral("a]]>b"); }, "panorama name"},
        {[&](PanoNode& n) { n.file_path = QStringLiteral("/x/a\\b.pno"); }, "file name of the panorama"},
        {[&](PanoNode& n) { n.file_path = QStringLiteral("/x/") + QString(256, u'a'); },
         "file name of the panorama"},
        {[&](PanoNode& n) { n.photos[0].caption = bad; }, "caption of the photo"},
        {[&](PanoNode& n) { n.photos[0].photo_path = QStringLiteral("/x/a & b.jpg"); },
         "file name of the photo"},
        {[&](PanoNode& n) { n.infos[0].caption = bad; }, "caption of the text"},
        {[&](PanoNode& n) { n.infos[0].content = QChar(1); }, "content of the text"},
        {[&](PanoNode& n) { n.infos[0].content = QStringLiteral("&lt;"); }, "content of the text"},
    };
    for (const auto& each : fields) {
        PanoNode& fresh = *add("AAAAAAAAAAAAAC", QStringLiteral("other"));
        fresh.photos = node->photos;
        fresh.infos = node->infos;
        EXPECT_EQ(field(), "none");
        each.spoil(fresh);
        EXPECT_EQ(field(), each.name);
        project.panoramas.pop_back();
    }
}

TEST_F(Unreadable, APhotoWithoutAFileIsNotWrittenAndNotNamed)
{
    node->photos[0].photo_path.clear();
    node->photos[0].caption = QStringLiteral("\"");
    EXPECT_EQ(field(), "none");
    EXPECT_TRUE(readable());
}

TEST_F(Unreadable, WhatIsNotNamedComesBackWhateverTheCharacters)
{
    std::mt19937 random(20261121);
    const QString alphabet = QStringLiteral("ab \"&<>';#x41lt]]>-!中é\t\n\r/\\:%") + QChar(1) +
                             QChar(0xFFFF) + QChar(0x85) + QChar(0x7F) + QChar(0x2028) + QChar(0xD83D) +
                             QChar(0xDE00);
    const auto text = [&] {
        QString made;
        for (unsigned length = random() % 6; length > 0; --length)
            made += alphabet[static_cast<int>(random() % static_cast<unsigned>(alphabet.size()))];
        return made;
    };
    int named = 0;
    for (int i = 0; i < 5000; ++i) {
        node->base_name = text();
        node->photos[0].caption = text();
        node->infos[0].caption = text();
        node->infos[0].content = text();
        if (firstUnreadableField(project))
            ++named;
        else {
            ASSERT_TRUE(readable()) << tourxml::build(project, 0).toStdString();
            EXPECT_EQ(said.panoramas[0]->photos[0].caption, node->photos[0].caption);
            EXPECT_EQ(said.panoramas[0]->infos[0].caption, node->infos[0].caption);
            EXPECT_EQ(said.panoramas[0]->infos[0].content, node->infos[0].content);
        }
    }
    EXPECT_GT(named, 500);
    EXPECT_LT(named, 4900);
}

} // namespace
