// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "nexomap/src/merge/SurfaceMerge.h"

#include "nexomap/src/merge/LayerDrawing.h"
#include "nexomap/src/merge/StationSurfels.h"
#include "nexomap/src/model/ParallelFor.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <thread>

namespace nexomap {
namespace {

constexpr double kStorey_m = 1.2; // cameras within it stand on one storey
constexpr double kWitness_m = 25.0;
constexpr std::size_t kMostWitnesses = 12;
constexpr std::size_t kMostInPart = 1000000;
constexpr double kDrawn_m = 0.03;
constexpr std::uint64_t kMostPoints = 0xFFFFFFFFu / 9;

/// One map of ceilings for each set of stations that stand on one storey.
class Storeys
{
public:
    Storeys(const std::vector<const MergeStation*>& stations, const std::vector<StationSurvey>& surveys)
    {
        std::map<std::vector<std::size_t>, std::shared_ptr<CeilingMap>> made;
        for (const MergeStation* station : stations) {
            std::vector<std::size_t> set;
            for (std::size_t k = 0; k < stations.size(); ++k)
                if (std::abs(station->up.dot(stations[k]->pose.t - station->pose.t)) < kStorey_m)
                    set.push_back(k);
            std::shared_ptr<CeilingMap>& map = made[set];
            if (!map) {
                std::vector<const Overhead*> overheads;
                std::vector<Eigen::Vector2d> places;
                for (const std::size_t k : set) {
                    overheads.push_back(&surveys[k].overhead);
                    places.push_back(stations[k]->pose.t.head<2>());
                }
                map = std::make_shared<CeilingMap>(overheads, places);
            }
            m_of_station.push_back(map);
        }
    }
    const CeilingMap& of(std::size_t station) const { return *m_of_station[station]; }
    bool isInside(double x, double y) const
    {
        return std::any_of(m_of_station.begin(), m_of_station.end(),
                           [&](const auto& map) { return map->empty() || map->isInside(x, y); });
    }

private:
    std::vector<std::shared_ptr<CeilingMap>> m_of_station;
};

/// The nearest stations, which may have looked through a station's points.
std::vector<const SeenSpace*> witnessesOf(std::size_t own, const std::vector<const MergeStation*>& stations,
                                          const std::vector<StationSurvey>& surveys)
{
    std::vector<std::pair<double, std::size_t>> by_distance;
    for (std::size_t k = 0; k < stations.size(); ++k) {
        const double distance = (stations[k]->pose.t - stations[own]->pose.t).norm();
        if (k != own && distance < kWitness_m) by_distance.emplace_back(distance, k);
    }
    std::sort(by_distance.begin(), by_distance.end());
    std::vector<const SeenSpace*> seen;
    for (std::size_t k = 0; k < std::min(kMostWitnesses, by_distance.size()); ++k)
        seen.push_back(surveys[by_distance[k].second].seen.get());
    return seen;
}

CloudGrid gridOf(const SurfaceVolume& volume, const Storeys* storeys,
                 const std::vector<const MergeStation*>& stations, int cell_cm)
{
    Eigen::Vector3f low = stations.front()->pose.t.cast<float>(), high = low;
    const auto add = [&](const Eigen::Vector3f& a, const Eigen::Vector3f& b) {
        low = low.cwiseMin(a);
        high = high.cwiseMax(b);
    };
    for (const MergeStation* station : stations) // and the floor below them
        add(station->pose.t.cast<float>() - Eigen::Vector3f(0.f, 0.f, 2.f), station->pose.t.cast<float>());
    const auto isInside = [&](const Eigen::Vector3f& p) {
        return !storeys || storeys->isInside(double(p.x()), double(p.y()));
    };
    for (const auto& [key, block] : volume.blocks())
        if (isInside(block.low) || isInside(block.high) || isInside(0.5f * (block.low + block.high)))
            add(block.low, block.high);
    const Eigen::Vector3d margin = Eigen::Vector3d::Constant(0.1);
    return gridFor(low.cast<double>() - margin, high.cast<double>() + margin, cell_cm);
}

} // namespace

struct SurfaceMerge::Cells : CloudBlocks
{
    Cells(const CloudGrid& cloud_grid, SpillFolder& folder)
        : m_grid(cloud_grid)
        , points(folder)
    {}
    const CloudGrid& grid() const override { return m_grid; }
    std::uint64_t size() const override { return points.size(); }
    void forEachBlock(const Take& take) const override { points.forEachBlock(take); }

    CloudGrid m_grid;
    Spill<CloudPoint> points;
};

struct SurfaceMerge::Measurements : SurfaceBlocks
{
    explicit Measurements(const SurfelBuckets& from)
        : buckets(from)
    {}
    std::uint64_t size() const override { return buckets.owned(); }
    void forEachBlock(const Take& take) const override
    {
        for (int part = 0; part < buckets.count(); ++part) {
            const std::vector<Surfel> surfels = buckets.readOwned(part);
            std::vector<SurfacePoint> points(surfels.size());
            for (std::size_t k = 0; k < surfels.size(); ++k)
                points[k] = {surfels[k].x,   surfels[k].y,     surfels[k].z,
                             surfels[k].red, surfels[k].green, surfels[k].blue};
            if (!points.empty()) take(points.data(), points.size());
        }
    }

    const SurfelBuckets& buckets;
};

SurfaceMerge::SurfaceMerge(const std::vector<MergeStation>& stations, const FrontEnd& front_end,
                           const std::filesystem::path& working_folder, const SurfaceMergeOptions& options)
    : m_folder(std::make_unique<SpillFolder>(working_folder, options.memory_bytes))
{
    SurfaceVolume volume;
    ExposureBalance balance;
    std::vector<const MergeStation*> used;
    std::vector<StationSurvey> surveys;
    for (const MergeStation& station : stations) {
        std::string reason;
        auto survey = surveyStation(station, front_end, options.indoor, &volume, &balance, &reason);
        if (!survey) {
            m_left_out.push_back(reason);
            continue;
        }
        used.push_back(&station);
        surveys.push_back(std::move(*survey));
    }
    if (used.empty()) throw Failure(NEXOMAP_CANNOT_SOLVE, "no panorama of the largest group has lidar");
    const std::vector<Eigen::Vector3f> factors = balance.factors();
    balance = {}; // a few megabytes for each station
    std::unique_ptr<Storeys> storeys;
    if (options.indoor) storeys = std::make_unique<Storeys>(used, surveys);
    for (StationSurvey& survey : surveys)
        survey.overhead = {}; // the storeys know

    const CloudGrid grid = gridOf(volume, storeys.get(), used, options.cell_cm);
    const double cell_m = 1.0 / grid.stepsPerMetre();
    m_buckets = std::make_unique<SurfelBuckets>(*m_folder, grid, volume, cell_m, kMostInPart);
    for (std::size_t k = 0; k < used.size(); ++k) {
        std::string reason;
        const RangePicture picture = rangesOf(*used[k], front_end, &reason);
        if (picture.empty()) { // gone since the survey
            m_left_out.push_back(reason);
            continue;
        }
        const RangePyramid pyramid(picture, kFarthest_m);
        StationColours colours(*used[k], front_end);
        colours.balance(factors[k]);
        const PointRules rules{witnessesOf(k, used, surveys), storeys ? &storeys->of(k) : nullptr, cell_m,
                               options.indoor};
        forEachWantedSurfel(*used[k], pyramid, colours, rules,
                            [&](const std::vector<Surfel>& surfels) { m_buckets->add(surfels); });
    }

    m_cells = std::make_unique<Cells>(grid, *m_folder);
    const int reach = std::clamp(int(std::lround(kDrawn_m / cell_m)), 1, 4);
    const int at_once = std::max(1, std::min(2, int(std::thread::hardware_concurrency())));
    for (int from = 0; from < m_buckets->count(); from += at_once) {
        const int count = std::min(at_once, m_buckets->count() - from);
        std::vector<std::vector<CloudPoint>> points(static_cast<std::size_t>(count));
        parallelFor(count, [&](int k) {
            std::vector<SurfaceCell> cells = cellsOf(m_buckets->read(from + k), grid);
            drawTogether(cells, grid, reach);
            points[std::size_t(k)] = pointsOf(cells, m_buckets->rangeOf(from + k));
        });
        for (const std::vector<CloudPoint>& part : points)
            m_cells->points.append(part.data(), part.size());
        if (m_folder->inMemory() > m_folder->budget()) m_cells->points.flush();
    }
    if (m_cells->size() == 0) throw Failure(NEXOMAP_CANNOT_SOLVE, "the lidar shows no surface");
    if (m_cells->size() > kMostPoints)
        throw Failure(NEXOMAP_CANNOT_SOLVE, "more points than a cloud file can hold; take a lower density");
    m_measurements = std::make_unique<Measurements>(*m_buckets);
}

SurfaceMerge::~SurfaceMerge() = default;

const CloudBlocks& SurfaceMerge::cloud() const
{
    return *m_cells;
}

const SurfaceBlocks& SurfaceMerge::measurements() const
{
    return *m_measurements;
}

} // namespace nexomap
