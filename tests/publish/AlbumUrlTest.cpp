// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Where the album service is looked for.

#include "publish/AlbumUrl.h"

#include <gtest/gtest.h>

TEST(AlbumUrl, TheBuildsDefaultStandsWhereTheEnvironmentSaysNothing)
{
    qunsetenv("TOURWRIGHT_ALBUM_URL");
    EXPECT_EQ(publish::albumUrl(), QStringLiteral(DEFAULT_ALBUM_URL));
    qputenv("TOURWRIGHT_ALBUM_URL", "  ");
    EXPECT_EQ(publish::albumUrl(), QStringLiteral(DEFAULT_ALBUM_URL));
}

TEST(AlbumUrl, TheEnvironmentGoesBeforeTheDefault)
{
    qputenv("TOURWRIGHT_ALBUM_URL", "http://album.example/tours/");
    EXPECT_EQ(publish::albumUrl(), QStringLiteral("http://album.example/tours/"));
}

TEST(AlbumUrl, ASlashAtTheEndIsAdded)
{
    qputenv("TOURWRIGHT_ALBUM_URL", " http://album.example:81");
    EXPECT_EQ(publish::albumUrl(), QStringLiteral("http://album.example:81/"));
}
