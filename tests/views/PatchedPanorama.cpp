// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/views/PatchedPanorama.h"

#include <cmath>

namespace {

constexpr double kPi = sphere::kPi;

double angleBetween(sphere::SpherePoint a, sphere::SpherePoint b)
{
    const double cosine = std::cos(a.polar) * std::cos(b.polar) +
                          std::sin(a.polar) * std::sin(b.polar) * std::cos(a.azimuth - b.azimuth);
    return std::acos(std::min(1.0, cosine));
}

void drawPatch(QImage& image, const Patch& patch, double radius)
{
    const int width = image.width(), height = image.height();
    const int top = std::max(0, int((patch.centre.polar - radius) / kPi * height) - 1);
    const int bottom = std::min(height - 1, int((patch.centre.polar + radius) / kPi * height) + 1);
    const double reach = radius / std::sin(patch.centre.polar) * 1.2;
    const int left = int((kPi - patch.centre.azimuth - reach) / (2 * kPi) * width) - 1;
    const int right = int((kPi - patch.centre.azimuth + reach) / (2 * kPi) * width) + 1;
    for (int y = top; y <= bottom; ++y) {
        uchar* line = image.scanLine(y);
        for (int x = left; x <= right; ++x) {
            const sphere::SpherePoint here{kPi - (x + 0.5) / width * 2 * kPi, (y + 0.5) / height * kPi};
            if (angleBetween(here, patch.centre) > radius) continue;
            uchar* pixel = line + 3 * ((x + width) % width);
            pixel[0] = static_cast<uchar>(qRed(patch.colour));
            pixel[1] = static_cast<uchar>(qGreen(patch.colour));
            pixel[2] = static_cast<uchar>(qBlue(patch.colour));
        }
    }
}

/// How much of the patch's colour a pixel shows, 0 to 255.
int share(QRgb pixel, QRgb colour)
{
    int least = 255;
    if (qRed(colour)) least = std::min(least, qRed(pixel));
    if (qGreen(colour)) least = std::min(least, qGreen(pixel));
    if (qBlue(colour)) least = std::min(least, qBlue(pixel));
    return least;
}

} // namespace

std::vector<Patch> patchesAllAround()
{
    const QRgb colours[] = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 255)};
    std::vector<Patch> patches;
    unsigned next = 0;
    for (double polar = 0.25; polar < kPi - 0.24; polar += 0.3) {
        const int count = std::max(3, int(2 * kPi * std::sin(polar) / 0.3));
        for (int i = 0; i < count; ++i)
            patches.push_back({{kPi - 0.02 - i * 2 * kPi / count, polar}, colours[next++ % 4]});
        ++next;
    }
    return patches;
}

QImage patchedPanorama(int width, const std::vector<Patch>& patches, double radius)
{
    QImage image(width, width / 2, QImage::Format_RGB888);
    image.fill(Qt::black);
    for (const Patch& patch : patches)
        drawPatch(image, patch, radius);
    return image;
}

sphere::PixelPoint patchCentre(const QImage& frame, const Patch& patch, sphere::PixelPoint expected,
                               int reach)
{
    double sum = 0, sumX = 0, sumY = 0;
    const int middleX = qRound(expected.x), middleY = qRound(expected.y);
    for (int y = std::max(0, middleY - reach); y <= std::min(frame.height() - 1, middleY + reach); ++y) {
        for (int x = std::max(0, middleX - reach); x <= std::min(frame.width() - 1, middleX + reach); ++x) {
            const int weight = share(frame.pixel(x, y), patch.colour);
            sum += weight;
            sumX += double(weight) * x;
            sumY += double(weight) * y;
        }
    }
    if (sum < 255) return {std::nan(""), std::nan("")};
    return {sumX / sum, sumY / sum};
}
