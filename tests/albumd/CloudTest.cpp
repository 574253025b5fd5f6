// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A tour whose map is a cloud: what the page gets of it, and files that are none.

#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/merge/CloudChunk.h"
#include "nexomap/src/merge/CompressedCloudFormat.h"
#include "tests/albumd/Client.h"

#include <QImage>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>

using namespace albumtest;
using nexomap::ByteWriter;
using nexomap::CloudChunk;

namespace {

constexpr std::uint32_t kWidth = 200, kHeight = 100; ///< cells of 5 cm
constexpr double kOriginX = 3.0, kOriginY = 2.0;     ///< metres, subtracted

/// A floor, red in the west and green in the east, and above its north-west corner a blue board.
std::string madeUpCloud(std::uint32_t divisor = 5)
{
    CloudChunk chunk;
    chunk.points = kWidth * kHeight;
    chunk.planes.assign(CloudChunk::kPlanes * chunk.points, 0);
    for (std::uint32_t y = 0; y < kHeight; ++y)
        for (std::uint32_t x = 0; x < kWidth; ++x) {
            const std::size_t at = y * kWidth + x;
            const bool board = x < 20 && y >= kHeight - 20;
            chunk.plane(0)[at] = std::uint8_t(x);
            chunk.plane(2)[at] = std::uint8_t(y);
            chunk.plane(4)[at] = board ? 50 : 0;
            chunk.plane(board ? 6 : x < kWidth / 2 ? 8 : 7)[at] = 200;
        }
    ByteWriter header;
    header.put(std::uint32_t(kOriginX * 10000));
    header.put(std::uint32_t(kOriginY * 10000));
    header.put(std::uint32_t(0));
    header.put(divisor);
    header.put(std::uint32_t(0));
    header.put(kWidth);
    header.put(kHeight);
    header.put(std::uint32_t(0));
    header.put(std::uint32_t(1));
    header.put(std::uint32_t(1));
    header.put(std::uint32_t(0));
    header.put(std::uint32_t(0));
    header.put(std::uint32_t(chunk.points));
    header.put(std::uint32_t(CloudChunk::kPlanes * chunk.points));
    ByteWriter file;
    file.putText(nexomap::kCompressedMagic, 4);
    file.put(nexomap::kCompressedVersion);
    file.bytes.insert(file.bytes.end(), header.bytes.begin(), header.bytes.end());
    file.put(nexomap::compressedChecksum(file.bytes.data(), file.bytes.size()));
    std::vector<std::uint8_t> packed;
    nexomap::ChunkCoder().encode(chunk, &packed);
    file.put(std::uint32_t(packed.size()));
    file.bytes.insert(file.bytes.end(), packed.begin(), packed.end());
    return std::string(file.bytes.begin(), file.bytes.end());
}

/// The same with another number of points in a head whose checksum is right.
std::string claiming(std::uint32_t points)
{
    std::string file = madeUpCloud();
    ByteWriter counts;
    counts.put(points);
    counts.put(std::uint32_t(CloudChunk::kPlanes * points));
    std::copy(counts.bytes.begin(), counts.bytes.end(), file.begin() + 8 + 48);
    ByteWriter seal;
    seal.put(nexomap::compressedChecksum(reinterpret_cast<const std::uint8_t*>(file.data()), 64));
    std::copy(seal.bytes.begin(), seal.bytes.end(), file.begin() + 64);
    return file;
}

class CloudMap : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(client.login());
        ASSERT_EQ(client.upload(id, smallPanorama(id)).body, "OK");
        album = client.createAlbum({id});
        ASSERT_EQ(client
                      .post("/set_albumpano_location",
                            {{"token", client.token}, {"albumid", album}, {"panoid", id}},
                            locationText(1, 1, 0, 0, 0, name))
                      .body,
                  "OK");
    }

    Answer send(const std::string& cloud)
    {
        return client.post("/upload_linkphoto",
                           {{"token", client.token}, {"panoid", id}, {"photoname", name}}, cloud);
    }

    nlohmann::json clouds()
    {
        return nlohmann::json::parse(client.get("/album/" + album + "/tour", {}).body).at("clouds");
    }

    AlbumService service{QStringLiteral(ALBUMD_PROGRAM)};
    Client client{service.port()};
    const std::string id = idNumber(0);
    const std::string name = id + "-00000000.cld";
    std::string album;
};

TEST_F(CloudMap, ThePictureFromAboveHasEachPlaceWhereTheDescriptionSays)
{
    ASSERT_EQ(send(madeUpCloud()).body, "OK");
    const nlohmann::json cloud = clouds().at(name);
    const std::string png = client.get("/album/" + album + "/cloud/" + name, {}).body;
    const QImage picture = QImage::fromData(QByteArray::fromStdString(png), "PNG");
    ASSERT_EQ(picture.size(), QSize(cloud.at("width"), cloud.at("height")));
    const auto colourAt = [&](double x, double y) {
        const double scale = cloud.at("scale"), left = cloud.at("left"), top = cloud.at("top");
        return picture.pixel(int(std::floor(x * scale + left)), int(std::floor(top - y * scale)));
    };
    // 10 m by 5 m from (-3, -2).
    EXPECT_EQ(colourAt(-2.9, -1.9), qRgb(200, 0, 0));
    EXPECT_EQ(colourAt(1.9, 0), qRgb(200, 0, 0));
    EXPECT_EQ(colourAt(2.1, 0), qRgb(0, 200, 0));
    EXPECT_EQ(colourAt(6.9, 2.9), qRgb(0, 200, 0));
    EXPECT_EQ(colourAt(-2.9, 2.9), qRgb(0, 0, 200)) << "what stands above hides the floor";
}

TEST_F(CloudMap, TheThinnedPointsLieInTheWorldAsTheDescriptionSays)
{
    ASSERT_EQ(send(madeUpCloud()).body, "OK");
    const nlohmann::json cloud = clouds().at(name);
    const std::string points = client.get("/album/" + album + "/cloud/" + name + "/points", {}).body;
    ASSERT_EQ(points.size(), cloud.at("points").get<std::size_t>() * 10);
    ASSERT_EQ(cloud.at("points"), kWidth * kHeight);
    const auto* last = reinterpret_cast<const std::uint8_t*>(points.data()) + points.size() - 10;
    const double x =
        (last[0] + 256 * last[1]) * cloud.at("step").get<double>() + cloud.at("origin")[0].get<double>();
    EXPECT_NEAR(x, 10 - kOriginX - 0.025, 1e-9);
    EXPECT_EQ(last[7], 200) << "green";
}

TEST_F(CloudMap, AnotherCloudOfThatNameTakesThePlaceOfTheFirst)
{
    ASSERT_EQ(send("no cloud").body, "OK");
    EXPECT_TRUE(clouds().empty());
    ASSERT_EQ(send(madeUpCloud()).body, "OK");
    EXPECT_EQ(clouds().size(), 1u);
    ASSERT_EQ(send(madeUpCloud(10)).body, "OK");
    EXPECT_DOUBLE_EQ(clouds().at(name).at("step"), 0.1);
}

TEST_F(CloudMap, WhatIsNoCloudIsKeptButNotShownAndTheServiceLivesOn)
{
    const std::string good = madeUpCloud();
    std::vector<std::string> bad = {"",
                                    std::string(68, '\0'),
                                    good.substr(0, good.size() - 1),
                                    good.substr(0, 68),
                                    good + "x",
                                    madeUpCloud(0),
                                    claiming(0),
                                    claiming(1),
                                    claiming(kWidth * kHeight + 1),
                                    claiming(400'000'000),
                                    claiming(0xFFFFFFFF)};
    for (std::size_t at = 0; at < good.size(); at += 1 + good.size() / 40) {
        bad.push_back(good);
        bad.back()[at] = char(bad.back()[at] ^ 0x55);
    }
    for (std::size_t i = 0; i < bad.size(); ++i) {
        if (send(bad[i]).body != "OK") continue; // an empty body, say
        EXPECT_TRUE(clouds().empty()) << i;
        EXPECT_EQ(client.get("/album/" + album + "/cloud/" + name, {}).status, 404) << i;
        ASSERT_TRUE(service.running()) << i;
    }
    ASSERT_EQ(send(good).body, "OK");
    EXPECT_EQ(clouds().size(), 1u);
}

TEST_F(CloudMap, ACloudOfNoAlbumIsNotServed)
{
    const std::string other = idNumber(1);
    ASSERT_EQ(send(madeUpCloud()).body, "OK");
    EXPECT_EQ(client.get("/album/" + album + "/cloud/" + other + "-00000000.cld", {}).status, 404);
    EXPECT_EQ(client.get("/album/" + album + "/cloud/" + name + "/other", {}).status, 404);
    EXPECT_EQ(client.get("/album/" + album + "/cloud/..%2f" + name, {}).status, 404);
}

} // namespace
