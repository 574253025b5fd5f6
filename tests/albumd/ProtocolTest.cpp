// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Every request of an upload, as uploading programs send it, and the replies that they need.

#include "tests/albumd/Client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

using namespace albumtest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class Protocol : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_FALSE(service.baseUrl().isEmpty());
        ASSERT_TRUE(client.login());
    }

    nlohmann::json tour(const std::string& album)
    {
        return nlohmann::json::parse(client.get("/album/" + album + "/tour").body);
    }

    int send(const char* path, const std::string& album, const std::string& pano, const std::string& text)
    {
        return client.post(path, {{"token", client.token}, {"albumid", album}, {"panoid", pano}}, text)
            .status;
    }

    AlbumService service{QStringLiteral(ALBUMD_PROGRAM)};
    Client client{service.port()};
    const std::string a = idNumber(0), b = idNumber(1), c = idNumber(2);
};

TEST_F(Protocol, LoginAnswersOkATokenAndAtLeastEightLines)
{
    const auto reply = lines(client.get("/login", {{"email", kAccount}, {"password", kPassword}}).body);
    ASSERT_GE(reply.size(), 8u);
    EXPECT_EQ(reply[0], "OK");
    EXPECT_THAT(reply[1], SizeIs(64));
    EXPECT_NE(reply[1], client.token) << "each login has a token of its own";
}

TEST_F(Protocol, APlusSignInAPasswordIsItself)
{
    // The toolkit's query items leave "+" as it is.
    ASSERT_TRUE(service.addUser(QStringLiteral("plus@example.com"), QStringLiteral("a+b+c123")));
    const Answer answer = client.get("/login?email=plus@example.com&password=a+b+c123");
    EXPECT_EQ(answer.body.substr(0, 4), "OK\r\n");
}

TEST_F(Protocol, ThePanoramaIsListedOnceItIsUploaded)
{
    EXPECT_THAT(client.listed(), IsEmpty());
    const Answer answer = client.upload(a, smallPanorama(a));
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body.substr(0, 2), "OK");
    EXPECT_THAT(client.listed(), ElementsAre(a));
    EXPECT_EQ(client.upload(a, smallPanorama(a, 5000)).body, "OK") << "again, in its place";
    EXPECT_THAT(client.listed(), ElementsAre(a));
}

TEST_F(Protocol, WhatIsNoSoundPanoramaOfThatIdIsRefusedAndNotListed)
{
    pnotest::Bytes cut = smallPanorama(a);
    cut.resize(cut.size() - 100);
    EXPECT_EQ(client.upload(a, cut).status, 400);
    EXPECT_EQ(client.upload(a, smallPanorama(b)).status, 400);
    EXPECT_EQ(client.upload(a, pnotest::Bytes(5000, 1)).status, 400);
    EXPECT_EQ(client.upload(a, {}).status, 400);
    EXPECT_THAT(client.listed(), IsEmpty());
}

TEST_F(Protocol, AnAlbumHasA14CharacterIdOnLineOne)
{
    client.upload(a, smallPanorama(a));
    client.upload(b, smallPanorama(b));
    const std::string album = client.createAlbum({a, b}, "样板间_1", b);
    ASSERT_THAT(album, SizeIs(14));
    EXPECT_EQ(tour(album).at("name"), "样板间_1");
    EXPECT_EQ(tour(album).at("entry"), b);
    EXPECT_NE(client.createAlbum({a, b}), album);
}

TEST_F(Protocol, AnAlbumOfPanoramasThatAreNotThereIsAnsweredWithAnError)
{
    client.upload(a, smallPanorama(a));
    EXPECT_EQ(client.createAlbum({a, b}), "");
    EXPECT_EQ(client.createAlbum({a, a}), "");
    EXPECT_EQ(client.createAlbum({a}, "Tour", b), "");
    EXPECT_EQ(client.createAlbum({a}, std::string("x\n")), "");
    const Answer answer = client.post("/create_roaming_album", {{"token", client.token}}, a);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body.substr(0, 2), "ER");
}

TEST_F(Protocol, TheLocationHasBlanksAroundItsFirstEqualsSign)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    ASSERT_THAT(locationText(1.5, -2, 0.25), HasSubstr("<location position_x = \"1.5000000\""));
    EXPECT_EQ(send("/set_albumpano_location", album, a, locationText(1.5, -2, 0.25)), 200);
    const auto location = tour(album).at("panoramas").at(0).at("location");
    EXPECT_EQ(location.at("x"), 1.5);
    EXPECT_EQ(location.at("y"), -2);
    EXPECT_EQ(location.at("direction"), 0.25);
    EXPECT_FALSE(location.contains("plan"));
}

TEST_F(Protocol, WhatIsNoLocationIsRefused)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    for (const std::string& text :
         {std::string(), std::string("<location/>"), locationText(1, 2, 3) + "x", locationText(NAN, 2, 3),
          locationText(INFINITY, 2, 3), "<location onload=\"1\"" + locationText(1, 2, 3).substr(9)})
        EXPECT_EQ(send("/set_albumpano_location", album, a, text), 400) << text;
    EXPECT_FALSE(tour(album).at("panoramas").at(0).contains("location"));
}

TEST_F(Protocol, HotspotsKeepUnescapedCaptionsAndTheirContent)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    const std::string awkward = "a \"b\" <c> & src=\"x\" </link_info>";
    const std::string tags = photoTag(0.5, 1.5, awkward, a + "-00000000.jpg") +
                             infoTag(-1, 1.25, awkward + "\">", "a&lt;b &amp; c\r\nnext &amp;lt;") +
                             photoTag(0, 1, "", "elsewhere/../x.jpg");
    EXPECT_EQ(send("/set_albumpano_linktags", album, a, tags), 200);
    const auto spots = tour(album).at("panoramas").at(0).at("hotspots");
    ASSERT_EQ(spots.size(), 3u);
    EXPECT_EQ(spots[0].at("caption"), awkward);
    EXPECT_EQ(spots[0].at("photo"), a + "-00000000.jpg");
    EXPECT_EQ(spots[0].at("x"), 0.5);
    EXPECT_EQ(spots[1].at("caption"), awkward + "\">");
    EXPECT_EQ(spots[1].at("text"), "a<b & c\r\nnext &lt;");
    EXPECT_EQ(spots[2].at("photo"), "");
}

TEST_F(Protocol, APanoramaWithoutHotspotsSendsAnEmptyBody)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    EXPECT_EQ(send("/set_albumpano_linktags", album, a, infoTag(0, 1, "c", "t")), 200);
    EXPECT_EQ(send("/set_albumpano_linktags", album, a, ""), 200);
    EXPECT_THAT(tour(album).at("panoramas").at(0).at("hotspots"), IsEmpty());
}

TEST_F(Protocol, WhatAreNoHotspotsIsRefused)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    for (const std::string& text :
         {std::string("hello"), std::string("<script>x</script>"), infoTag(0, 1, "c", "t") + "tail",
          std::string("\t<link_info sphere_x=\"1\">x</link_info>"), "x" + infoTag(0, 1, "c", "t"),
          std::string("\xff\xfe"), infoTag(0, 1, "c\xC0\x80", "t"),
          photoTag(0, 1, "c", "s") + std::string(1, '\0')})
        EXPECT_EQ(send("/set_albumpano_linktags", album, a, text), 400) << text;
}

TEST_F(Protocol, ALinkJoinsTwoPanoramasOfTheAlbum)
{
    for (const std::string& id : {a, b, c})
        client.upload(id, smallPanorama(id));
    const std::string album = client.createAlbum({a, b});
    const auto add = [&](const std::string& one, const std::string& other, const std::string& text) {
        return client
            .post("/add_panolink",
                  {{"token", client.token}, {"albumid", album}, {"panoid0", one}, {"panoid1", other}}, text)
            .status;
    };
    EXPECT_EQ(add(a, b, linkText(a, b, {0.5, -0.25, 1.9, 2.1})), 200);
    EXPECT_EQ(add(a, c, linkText(a, c, {})), 404) << "not in the album";
    EXPECT_EQ(add(a, b, linkText(b, a, {})), 400) << "says other ends";
    EXPECT_EQ(add(a, b, "<pano_link/>"), 400);
    const auto links = tour(album).at("links");
    ASSERT_EQ(links.size(), 1u);
    EXPECT_EQ(links[0].at("rot0"), 0.5);
    EXPECT_EQ(links[0].at("rot1"), -0.25);
    EXPECT_EQ(links[0].at("iconY0"), 1.9);
    EXPECT_EQ(links[0].at("iconY1"), 2.1);
}

TEST_F(Protocol, ModelsAndPhotosBelongToUploadedPanoramas)
{
    client.upload(a, smallPanorama(a));
    client.upload(b, smallPanorama(b));
    const auto model = [&](const std::string& one, const std::string& other, const std::string& level) {
        return client
            .post("/upload_linkmodel",
                  {{"token", client.token}, {"panoid0", one}, {"panoid1", other}, {"levelSel", level}},
                  "match data")
            .status;
    };
    EXPECT_EQ(model(a, b, "0"), 200);
    EXPECT_EQ(model(a, b, "1"), 200);
    EXPECT_EQ(model(a, c, "0"), 400);
    EXPECT_EQ(model(a, b, "/"), 400);
    const auto photo = [&](const std::string& pano, const std::string& name) {
        return client
            .post("/upload_linkphoto", {{"token", client.token}, {"panoid", pano}, {"photoname", name}}, "x")
            .status;
    };
    EXPECT_EQ(photo(a, a + "-00000000.jpg"), 200);
    EXPECT_EQ(photo(a, a + "-00000000.cld"), 200);
    EXPECT_EQ(photo(a, b + "-00000000.jpg"), 400);
    EXPECT_EQ(photo(c, c + "-00000000.jpg"), 400);
    EXPECT_EQ(photo(a, a + "-0000000.html"), 400);
}

TEST_F(Protocol, APhotoIsServedOnlyAsThePictureThatItIs)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    const std::string name = a + "-00000000.jpg";
    const auto store = [&](const std::string& bytes) {
        client.post("/upload_linkphoto", {{"token", client.token}, {"panoid", a}, {"photoname", name}},
                    bytes);
        return client.get("/album/" + album + "/photo/" + name);
    };
    EXPECT_EQ(store("\x89PNG\r\n\x1A\n rest").status, 404) << "no hotspot shows it";
    send("/set_albumpano_linktags", album, a, photoTag(0, 1, "", name));
    const Answer png = store("\x89PNG\r\n\x1A\n rest");
    EXPECT_EQ(png.status, 200);
    EXPECT_EQ(png.headers.find("Content-Type")->second, "image/png");
    EXPECT_EQ(png.headers.find("X-Content-Type-Options")->second, "nosniff");
    EXPECT_EQ(store("<html><script>x</script>").status, 404);
}

TEST_F(Protocol, WithoutATokenNothingIsAnsweredButALogin)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    for (const std::string& token :
         {std::string(), std::string("x"), std::string(64, '0'), client.token + "0"}) {
        EXPECT_EQ(client.get("/get_pano_list", {{"token", token}}).status, 403);
        for (const char* path :
             {"/upload", "/create_roaming_album", "/set_albumpano_location", "/set_albumpano_linktags",
              "/add_panolink", "/upload_linkmodel", "/upload_linkphoto"})
            EXPECT_EQ(client.post(path, {{"token", token}, {"albumid", album}, {"panoid", a}}, "x").status,
                      403);
    }
}

TEST_F(Protocol, TheServiceEndsCleanlyAndKeepsEverything)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a});
    EXPECT_EQ(service.terminate(), 0);
    ASSERT_TRUE(service.start());
    Client again(service.port());
    again.token = client.token;
    EXPECT_THAT(again.listed(), ElementsAre(a)) << "the token outlives it, too";
    EXPECT_EQ(again.get("/album/" + album).status, 200);
}

TEST_F(Protocol, TheCommandsListAlbumsAndTakeThemOff)
{
    client.upload(a, smallPanorama(a));
    const std::string album = client.createAlbum({a}, "名字");
    EXPECT_EQ(service.run({QStringLiteral("list-albums")}), 0);
    EXPECT_THAT(service.output().toStdString(), HasSubstr("album/" + album + "\t" + kAccount + "\t名字\n"));
    EXPECT_EQ(service.run({QStringLiteral("remove-album"), QString::fromStdString(album)}), 0);
    EXPECT_EQ(client.get("/album/" + album).status, 404);
    EXPECT_EQ(service.run({QStringLiteral("remove-album"), QString::fromStdString(album)}), 1);
    EXPECT_EQ(service.run({QStringLiteral("dance")}), 2);
}

TEST_F(Protocol, ASecondServiceOnTheSameFolderIsRefused)
{
    EXPECT_EQ(service.run({QStringLiteral("--port"), QStringLiteral("0")}), 1);
    EXPECT_THAT(service.output().toStdString(), HasSubstr("another albumd serves this folder"));
}

} // namespace
