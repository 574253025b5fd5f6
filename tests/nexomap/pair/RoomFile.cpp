// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/nexomap/pair/RoomFile.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

pnotest::Bytes encoded(const cv::Mat& tile, const char* kind)
{
    pnotest::Bytes bytes;
    cv::imencode(kind, tile, bytes);
    return bytes;
}

pnotest::PnoOptions roomFile(const MadeUpRoom::Shot& shot, bool lidar)
{
    pnotest::PnoOptions options;
    options.identity = "ABCDEFGHIJKLMN";
    cv::Mat3b picture;
    cv::resize(shot.picture, picture, cv::Size(4096, 2048), 0, 0, cv::INTER_LINEAR);
    options.tiles = [picture](int level, int column, int row) {
        if (level != 8) return pnotest::Bytes{1, 2, 3, 4};
        return encoded(picture(cv::Rect(3840 - 256 * column, 256 * row, 256, 256)), ".jpg");
    };
    if (!lidar) return options;
    const cv::Mat1w range = shot.range_mm;
    options.depthTiles = [range](int, int column, int row) {
        cv::Mat1w tile;
        cv::resize(range(cv::Rect((31 - column) * 64, row * 64, 64, 64)), tile, cv::Size(256, 256), 0, 0,
                   cv::INTER_NEAREST);
        return encoded(tile, ".png");
    };
    return options;
}
