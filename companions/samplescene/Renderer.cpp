// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Companions.h"
#include "companions/samplescene/Parallel.h"
#include "companions/samplescene/Random.h"
#include "companions/samplescene/RangeModel.h"
#include "companions/samplescene/RayTracer.h"
#include "companions/samplescene/Scene.h"

namespace samplescene {
namespace {

constexpr float kPi = 3.14159265358979f;
constexpr int kBand = 64; ///< rows that are worked on at a time

/// The camera of one station: rays in, values of a sensor out.
class Camera
{
public:
    Camera(const Scene& scene, const Station& station, int width)
        : m_options(scene.options)
        , m_width(width)
        , m_height(width / 2)
        , m_seed(hash(station.id, scene.options.seed))
    {
        for (std::size_t i = 0; i < 9; ++i)
            m_rotation[i] = static_cast<float>(station.rotation[i]);
        eye = {static_cast<float>(station.position[0]), static_cast<float>(station.position[1]),
               static_cast<float>(station.position[2])};
        const bool street = scene.options.kind == Kind::Street;
        gain = (street ? 1.1f : 2.4f) * std::exp2(static_cast<float>(station.exposure));
        for (int x = 0; x < 4 * width; ++x) { // quarter pixels: the centre and the four samples of an edge
            const float azimuth =
                kPi - 2 * kPi * (static_cast<float>(x) + 0.5f) / static_cast<float>(4 * width);
            m_cosine.push_back(std::cos(azimuth));
            m_sine.push_back(std::sin(azimuth));
        }
        for (int x = 0; x < width; ++x) {
            const double azimuth = 3.14159265358979323846 * (1 - (2.0 * x + 1) / width);
            m_centerCosine.push_back(static_cast<float>(std::cos(azimuth)));
            m_centerSine.push_back(static_cast<float>(std::sin(azimuth)));
        }
    }

    Vec3 eye;
    float gain = 1;
    float pixelAngle() const { return 2 * kPi / static_cast<float>(m_width); }
    std::uint32_t lot(int x, int y) const
    {
        return hash(m_seed, static_cast<std::uint32_t>(y * m_width + x));
    }

    Vec3 center(int x, int y) const
    {
        const float polar = kPi * (static_cast<float>(y) + 0.5f) / static_cast<float>(m_height);
        return turned(m_centerCosine[static_cast<std::size_t>(x)], m_centerSine[static_cast<std::size_t>(x)],
                      polar);
    }
    /// One of four samples within the pixel.
    Vec3 quarter(int x, int y, int i) const
    {
        const auto column = static_cast<std::size_t>(4 * x + (i % 2 ? 2 : 1));
        const float polar =
            kPi * (static_cast<float>(y) + (i / 2 ? 0.75f : 0.25f)) / static_cast<float>(m_height);
        return turned(m_cosine[column], m_sine[column], polar);
    }
    void expose(Vec3 light, int x, int y, std::uint8_t* rgb) const
    {
        std::uint32_t noise = lot(x, y);
        const float band = m_options.interleavedNoise > 0
                               ? gaussianOf(hash(m_seed, static_cast<std::uint32_t>(2 * y + x % 2), 0x171e)) *
                                     static_cast<float>(m_options.interleavedNoise)
                               : 0.0f;
        for (int c = 0; c < 3; ++c) {
            const float v = std::sqrt(1 - std::exp(-light[c] * gain));
            noise = hash(noise);
            // Shot noise after the square root is even; the read-out adds to the shadows.
            const float deviation = static_cast<float>(m_options.pictureNoise) * (0.8f + 0.2f / (0.3f + v));
            const float value = 255 * v + deviation * gaussianOf(noise) + band;
            rgb[c] = static_cast<std::uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f));
        }
    }

private:
    Vec3 turned(float cosine, float sine, float polar) const
    {
        const float level = std::sin(polar);
        const Vec3 d{level * cosine, level * sine, std::cos(polar)};
        const auto& r = m_rotation;
        return {r[0] * d.x + r[1] * d.y + r[2] * d.z, r[3] * d.x + r[4] * d.y + r[5] * d.z,
                r[6] * d.x + r[7] * d.y + r[8] * d.z};
    }
    const Options& m_options;
    int m_width, m_height;
    std::uint32_t m_seed;
    std::array<float, 9> m_rotation{};
    std::vector<float> m_cosine, m_sine, m_centerCosine, m_centerSine;
};

/// Traces rows [begin, end) and the row on either side, smooths what lies on an edge, keeps the middle.
void takeBand(const Camera& camera, const RayTracer& tracer, const Scene& scene, int begin, int end,
              Rendering* out)
{
    const int width = out->width;
    const int top = std::max(0, begin - 1);
    const int bottom = std::min(out->height, end + 1);
    const auto index = [&](int x, int y) {
        return static_cast<std::size_t>(y - top) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    };
    std::vector<RayResult> rays(index(0, bottom));
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < width; ++x)
            rays[index(x, y)] =
                tracer.follow(camera.eye, camera.center(x, y), camera.pixelAngle(), camera.lot(x, y));

    const bool patch = scene.options.nadir == Nadir::Patch;
    for (int y = begin; y < end; ++y) {
        for (int x = 0; x < width; ++x) {
            const RayResult& ray = rays[index(x, y)];
            const int left = x ? x - 1 : width - 1;
            const int right = x + 1 < width ? x + 1 : 0;
            const RayResult* around[] = {&rays[index(left, y)], &rays[index(right, y)],
                                         &rays[index(x, std::max(y - 1, top))],
                                         &rays[index(x, std::min(y + 1, bottom - 1))]};
            Vec3 color = ray.color;
            bool edge = false;
            for (const RayResult* other : around)
                edge = edge || other->path != ray.path;
            if (edge) {
                color = {};
                for (int i = 0; i < 4; ++i)
                    color += tracer
                                 .follow(camera.eye, camera.quarter(x, y, i), camera.pixelAngle(),
                                         camera.lot(x, y))
                                 .color *
                             0.25f;
            }
            if (patch) color = withNadirPatch(color, x, y, width);
            const std::size_t pixel =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
            camera.expose(color, x, y, &out->rgb[3 * pixel]);
            if (!out->range.empty()) {
                const FirstReturn* neighbours[] = {&around[0]->back, &around[1]->back, &around[2]->back,
                                                   &around[3]->back};
                out->range[pixel] =
                    measuredRange(scene.options, {x, y, width}, ray.back, neighbours, camera.lot(x, y));
            }
        }
    }
}

} // namespace

std::array<double, 3> pixelDirection(double column, double row, int width, int height)
{
    constexpr double pi = 3.14159265358979323846;
    const double azimuth = pi - 2 * pi * (column + 0.5) / width;
    const double polar = pi * (row + 0.5) / height;
    return {std::sin(polar) * std::cos(azimuth), std::sin(polar) * std::sin(azimuth), std::cos(polar)};
}

Rendering render(const Scene& scene, int number, int width)
{
    const Station& station = scene.stations[static_cast<std::size_t>(number)];
    Rendering out;
    out.width = width;
    out.height = width / 2;
    const std::size_t pixels = static_cast<std::size_t>(out.width) * static_cast<std::size_t>(out.height);
    out.rgb.resize(3 * pixels);
    if (scene.options.lidar) out.range.resize(pixels);
    const Camera camera(scene, station, width);
    const World companions = companionsOf(scene, station);
    const RayTracer tracer(scene.worldOf(number), companions.shapes.empty() ? nullptr : &companions);
    const auto bands = static_cast<std::size_t>((out.height + kBand - 1) / kBand);
    parallelFor(bands, 1, scene.options.threads, [&](std::size_t first, std::size_t last) {
        for (std::size_t band = first; band < last; ++band) {
            const int begin = static_cast<int>(band) * kBand;
            takeBand(camera, tracer, scene, begin, std::min(begin + kBand, out.height), &out);
        }
    });
    return out;
}

} // namespace samplescene
