// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/files/MatchFile.h"

#include "nexomap/src/Failure.h"
#include "nexomap/src/files/ByteStream.h"
#include "nexomap/src/Plausible.h"

#include <zlib.h>

#include <cmath>

namespace nexomap {
namespace {

// Persisted: never renumber.
constexpr char kPoseMagic[] = "NXP0";
constexpr char kInlierMagic[] = "NXI1";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeaderBytes = 20;
constexpr std::size_t kInlierBytes = 32;
constexpr std::size_t kTieBytes = 16 + 16 + 8 + 8;
constexpr std::size_t kStoredPoseBytes = 16 + 16 + 4 + 4 + 8 + 1 + 1 + 8 * (9 + 3 + 36);

std::uint32_t checksum(const std::uint8_t* data, std::size_t size)
{
    return std::uint32_t(crc32(crc32(0, nullptr, 0), data, uInt(size)));
}

Bytes sealed(const char* magic, const Bytes& payload)
{
    ByteWriter out;
    out.putText(magic, 4);
    out.put(kVersion);
    out.put(std::uint64_t(payload.size()));
    out.put(checksum(payload.data(), payload.size()));
    out.bytes.insert(out.bytes.end(), payload.begin(), payload.end());
    return out.bytes;
}

[[noreturn]] void refuse(const std::string& reason)
{
    throw Failure(NEXOMAP_BAD_FILE, "match file: " + reason);
}

ByteReader opened(const char* magic, const Bytes& bytes)
{
    ByteReader header(bytes.data(), bytes.size());
    if (bytes.size() < kHeaderBytes) refuse("shorter than its header");
    if (header.getText(4) != magic) refuse("not a match file");
    if (header.get<std::uint32_t>() != kVersion) refuse("of another version");
    const std::size_t size = bytes.size() - kHeaderBytes;
    if (header.get<std::uint64_t>() != size) refuse("of another length than it says");
    if (header.get<std::uint32_t>() != checksum(bytes.data() + kHeaderBytes, size)) refuse("damaged");
    return {bytes.data() + kHeaderBytes, size};
}

template <class Matrix>
void putMatrix(ByteWriter& out, const Matrix& m)
{
    for (int r = 0; r < m.rows(); ++r)
        for (int c = 0; c < m.cols(); ++c)
            out.put(double(m(r, c)));
}

template <class Matrix>
void getMatrix(ByteReader& in, Matrix& m)
{
    for (int r = 0; r < m.rows(); ++r)
        for (int c = 0; c < m.cols(); ++c)
            m(r, c) = in.get<double>();
}

bool isRotation(const Eigen::Matrix3d& R)
{
    return R.allFinite() && (R * R.transpose() - Eigen::Matrix3d::Identity()).norm() < 1e-6 &&
           R.determinant() > 0;
}

void putStoredPose(ByteWriter& out, const StoredPose& stored)
{
    out.putText(stored.name_0, 16);
    out.putText(stored.name_1, 16);
    out.put(std::int32_t(stored.mode));
    out.put(std::int32_t(stored.pose.matches));
    out.put(stored.pose.reliability);
    out.put(std::uint8_t(stored.pose.metric));
    out.put(std::uint8_t(stored.pose.rotation_only));
    putMatrix(out, stored.pose.R_0_from_1);
    putMatrix(out, stored.pose.t_0_from_1);
    putMatrix(out, stored.pose.information);
}

StoredPose getStoredPose(ByteReader& in)
{
    StoredPose stored;
    stored.name_0 = in.getText(16);
    stored.name_1 = in.getText(16);
    stored.mode = in.get<std::int32_t>();
    stored.pose.matches = in.get<std::int32_t>();
    stored.pose.reliability = in.get<double>();
    stored.pose.metric = in.get<std::uint8_t>() != 0;
    stored.pose.rotation_only = in.get<std::uint8_t>() != 0;
    getMatrix(in, stored.pose.R_0_from_1);
    getMatrix(in, stored.pose.t_0_from_1);
    getMatrix(in, stored.pose.information);
    const PairPose& pose = stored.pose;
    const bool directed = pose.metric || pose.rotation_only || pose.t_0_from_1.norm() >= kShortestDirection;
    const bool sound =
        isRotation(pose.R_0_from_1) && isPlace(pose.t_0_from_1) && directed && pose.information.allFinite() &&
        pose.information.cwiseAbs().maxCoeff() <= kMostInformation && pose.reliability >= 0.0 &&
        pose.reliability <= 1.0 && stored.mode >= 0 && stored.mode <= 2;
    if (in.failed() || !sound) refuse("holds no pose");
    return stored;
}

void putStation(ByteWriter& out, const StoredStation& station)
{
    putMatrix(out, station.world_from_pano.R);
    putMatrix(out, station.world_from_pano.t);
    putMatrix(out, station.up);
    out.put(station.height_m);
}

StoredStation getStation(ByteReader& in)
{
    StoredStation station;
    getMatrix(in, station.world_from_pano.R);
    getMatrix(in, station.world_from_pano.t);
    getMatrix(in, station.up);
    station.height_m = in.get<double>();
    const bool sound = isRotation(station.world_from_pano.R) && isPlace(station.world_from_pano.t) &&
                       std::abs(station.up.norm() - 1.0) < 1e-6 && isLength(station.height_m);
    if (in.failed() || !sound) refuse("holds no station");
    return station;
}

} // namespace

Bytes encodeMatchRecord(const MatchRecord& record)
{
    ByteWriter out;
    putStoredPose(out, record.link);
    out.put(record.inliers);
    putStation(out, record.station_0);
    putStation(out, record.station_1);
    out.put(std::uint32_t(record.companions.size()));
    for (const StoredPose& companion : record.companions)
        putStoredPose(out, companion);
    // Nothing stands here where there are none: earlier versions wrote no ties.
    for (const LengthTie& tie : record.link.pose.ties) {
        out.putText(tie.name_0, 16);
        out.putText(tie.name_1, 16);
        out.put(tie.log_ratio);
        out.put(tie.sigma);
    }
    return sealed(kPoseMagic, out.bytes);
}

MatchRecord decodeMatchRecord(const Bytes& bytes)
{
    ByteReader in = opened(kPoseMagic, bytes);
    MatchRecord record;
    record.link = getStoredPose(in);
    record.inliers = in.get<std::uint32_t>();
    record.station_0 = getStation(in);
    record.station_1 = getStation(in);
    const std::uint32_t count = in.get<std::uint32_t>();
    const std::uint64_t companions = std::uint64_t(count) * kStoredPoseBytes;
    if (in.failed() || in.left() < companions || (in.left() - companions) % kTieBytes != 0)
        refuse("of a wrong length");
    for (std::uint32_t k = 0; k < count; ++k)
        record.companions.push_back(getStoredPose(in));
    while (in.left() > 0) {
        LengthTie tie;
        tie.name_0 = in.getText(16);
        tie.name_1 = in.getText(16);
        tie.log_ratio = in.get<double>();
        tie.sigma = in.get<double>();
        if (in.failed() || !(std::abs(tie.log_ratio) <= kMostLogRatio) ||
            !(tie.sigma > 1e-3 && tie.sigma < 1e3))
            refuse("holds no tie of lengths");
        record.link.pose.ties.push_back(std::move(tie));
    }
    return record;
}

Bytes encodeInliers(const std::string& name_0, const std::string& name_1,
                    const std::vector<PairInlier>& inliers)
{
    ByteWriter out;
    out.putText(name_0, 16);
    out.putText(name_1, 16);
    out.put(std::uint32_t(inliers.size()));
    for (const PairInlier& inlier : inliers) {
        for (int k = 0; k < 3; ++k)
            out.put(inlier.bearing_0[k]);
        for (int k = 0; k < 3; ++k)
            out.put(inlier.bearing_1[k]);
        out.put(inlier.range_0_m);
        out.put(inlier.range_1_m);
    }
    return sealed(kInlierMagic, out.bytes);
}

std::vector<PairInlier> decodeInliers(const Bytes& bytes, const std::string& name_0,
                                      const std::string& name_1)
{
    ByteReader in = opened(kInlierMagic, bytes);
    if (in.getText(16) != name_0 || in.getText(16) != name_1) refuse("of another pair");
    const std::uint32_t count = in.get<std::uint32_t>();
    if (in.failed() || in.left() != std::uint64_t(count) * kInlierBytes) refuse("of a wrong length");
    std::vector<PairInlier> inliers(count);
    for (PairInlier& inlier : inliers) {
        for (int k = 0; k < 3; ++k)
            inlier.bearing_0[k] = in.get<float>();
        for (int k = 0; k < 3; ++k)
            inlier.bearing_1[k] = in.get<float>();
        inlier.range_0_m = in.get<float>();
        inlier.range_1_m = in.get<float>();
        const bool sound = std::abs(inlier.bearing_0.norm() - 1.f) < 1e-3f &&
                           std::abs(inlier.bearing_1.norm() - 1.f) < 1e-3f && inlier.range_0_m >= 0.f &&
                           inlier.range_1_m >= 0.f && isLength(inlier.range_0_m) &&
                           isLength(inlier.range_1_m);
        if (!sound) refuse("holds a feature that is none");
    }
    return inliers;
}

} // namespace nexomap
