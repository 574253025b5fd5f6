// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/files/MatchPicture.h"

#include "nexomap/src/Geometry.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdio>

namespace nexomap {
namespace {

constexpr int kWidth = 1024, kHeight = 512, kCaption = 44, kGap = 6;
constexpr std::size_t kMostLines = 300;

cv::Mat3b greyed(const cv::Mat3b& preview)
{
    cv::Mat3b picture;
    if (preview.empty()) return cv::Mat3b(kHeight, kWidth, cv::Vec3b(128, 128, 128));
    cv::resize(preview, picture, {kWidth, kHeight}, 0, 0, cv::INTER_AREA);
    cv::Mat1b grey;
    cv::cvtColor(picture, grey, cv::COLOR_BGR2GRAY);
    cv::Mat3b back;
    cv::cvtColor(grey, back, cv::COLOR_GRAY2BGR);
    cv::addWeighted(picture, 0.35, back, 0.65, 0.0, picture);
    return picture;
}

cv::Scalar hueOf(double azimuth)
{
    const cv::Mat3b hsv(1, 1, cv::Vec3b(std::uint8_t((azimuth + kPi) / (2 * kPi) * 179.0), 230, 255));
    cv::Mat3b bgr;
    cv::cvtColor(hsv, bgr, cv::COLOR_HSV2BGR);
    return bgr(0, 0);
}

void drawLine(cv::Mat3b& picture, const Eigen::Vector2d& from, const Eigen::Vector2d& to,
              const cv::Scalar& colour, int thickness = 1)
{
    const auto line = [&](double shift) {
        cv::Point2d a(from.x() + shift, from.y()), b(to.x() + shift, to.y());
        if (to.x() - from.x() > kWidth / 2) b.x -= kWidth;
        if (from.x() - to.x() > kWidth / 2) b.x += kWidth;
        cv::line(picture, a, b, colour, thickness, cv::LINE_AA);
        cv::circle(picture, a, 2, colour, 1, cv::LINE_AA);
        cv::circle(picture, b, 2, colour, 1, cv::LINE_AA);
    };
    line(0.0);
    if (to.x() - from.x() > kWidth / 2) line(kWidth);
    if (from.x() - to.x() > kWidth / 2) line(-kWidth);
}

void write(cv::Mat3b& picture, const std::string& text, int y)
{
    cv::putText(picture, text, {10, y}, cv::FONT_HERSHEY_SIMPLEX, 0.48, {40, 40, 40}, 1, cv::LINE_AA);
}

/// In red on white, at the top of a panorama.
void remark(cv::Mat3b& picture, const std::string& text, int top)
{
    if (text.empty()) return;
    cv::rectangle(picture, {4, top + 4, 12 + 9 * int(text.size()), 20}, {255, 255, 255}, cv::FILLED);
    cv::putText(picture, text, {10, top + 19}, cv::FONT_HERSHEY_SIMPLEX, 0.45, {0, 0, 255}, 1, cv::LINE_AA);
}

} // namespace

cv::Mat3b drawMatch(const Panorama& panorama_0, const Panorama& panorama_1, const PairPose& pose,
                    const MatchCaption& caption)
{
    cv::Mat3b picture(kCaption + kGap + 2 * kHeight, kWidth, cv::Vec3b(255, 255, 255));
    greyed(panorama_0.preview).copyTo(picture(cv::Rect(0, kCaption, kWidth, kHeight)));
    greyed(panorama_1.preview).copyTo(picture(cv::Rect(0, kCaption + kHeight + kGap, kWidth, kHeight)));

    const EquirectGrid grid{kWidth, kHeight};
    const std::size_t step = (pose.inliers.size() + kMostLines - 1) / kMostLines;
    for (std::size_t k = 0; k < pose.inliers.size(); k += std::max<std::size_t>(1, step)) {
        const Eigen::Vector3d u_0 = pose.inliers[k].bearing_0.cast<double>();
        const Eigen::Vector3d u_1 = pose.inliers[k].bearing_1.cast<double>();
        const Eigen::Vector2d from = grid.pixel(u_0) + Eigen::Vector2d(0, kCaption);
        const Eigen::Vector2d to = grid.pixel(u_1) + Eigen::Vector2d(0, kCaption + kHeight + kGap);
        drawLine(picture, from, to, hueOf(azimuthOf(u_0)));
    }
    for (const LeftOutPair& pair : caption.left_out) {
        const cv::Scalar red(0, 0, 255);
        const Eigen::Vector2d from = grid.pixel(pair.bearing_0) + Eigen::Vector2d(0, kCaption);
        const Eigen::Vector2d to = grid.pixel(pair.bearing_1) + Eigen::Vector2d(0, kCaption + kHeight + kGap);
        drawLine(picture, from, to, red, 2);
        char text[96];
        const int length =
            std::snprintf(text, sizeof text, "pair %d left out, %.1f degrees off", pair.number, pair.degrees);
        if (pair.metres > 0.0 && length > 0)
            std::snprintf(text + length, sizeof text - std::size_t(length), ", %.2f m", pair.metres);
        const cv::Point at(std::min(int(from.x()) + 6, kWidth - 310),
                           std::max(kCaption + 16, int(from.y()) - 6));
        cv::rectangle(picture, at + cv::Point(-3, -14), at + cv::Point(305, 5), {255, 255, 255}, cv::FILLED);
        cv::putText(picture, text, at, cv::FONT_HERSHEY_SIMPLEX, 0.45, red, 1, cv::LINE_AA);
    }
    remark(picture, panorama_0.remark, kCaption);
    remark(picture, panorama_1.remark, kCaption + kHeight + kGap);
    char numbers[160];
    const int length = std::snprintf(numbers, sizeof numbers, "%s, %zu of %d matches fit, reliability %.2f",
                                     caption.origin, pose.inliers.size(), pose.matches, caption.reliability);
    if (caption.scale_known && length > 0)
        std::snprintf(numbers + length, sizeof numbers - length, ", %.2f m apart", caption.spacing_m);
    write(picture, caption.name_0 + " (above) and " + caption.name_1, 17);
    write(picture, numbers, 36);
    return picture;
}

} // namespace nexomap
