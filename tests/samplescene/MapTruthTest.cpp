// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/MapTruth.h"
#include "companions/samplescene/PlanCut.h"
#include "companions/samplescene/Tessellation.h"
#include "tests/samplescene/SceneFixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <set>

using namespace scenetest;
using namespace samplescene;

namespace {

/// A place of one shape in the air.
World worldOf(const Shape& shape)
{
    World world;
    world.materials.emplace_back();
    world.shapes.push_back(shape);
    world.surfaces.emplace_back();
    world.bvh.build(world.shapes);
    return world;
}

Shape turnedShape(Shape::Kind kind, Vec3 half)
{
    Shape s;
    s.kind = kind;
    s.center = {3, -2, 1};
    s.half = half;
    s.axis = {Vec3{0.6f, 0.8f, 0}, Vec3{-0.8f, 0.6f, 0}, Vec3{0, 0, 1}};
    s.aligned = kind == Shape::Cylinder; // cylinders are upright and round: never turned
    if (s.aligned) s.axis = Shape().axis;
    return s;
}

Vec3 normalOf(const Triangles& mesh, const Triangle& t)
{
    const Vec3 a = mesh.points[t.corner[0]];
    return cross(mesh.points[t.corner[1]] - a, mesh.points[t.corner[2]] - a);
}

Vec3 middleOf(const Triangles& mesh, const Triangle& t)
{
    return (mesh.points[t.corner[0]] + mesh.points[t.corner[1]] + mesh.points[t.corner[2]]) * (1 / 3.0f);
}

float distanceToPlane(const Triangles& mesh, const Triangle& t, Vec3 p)
{
    return std::fabs(dot(normalized(normalOf(mesh, t)), p - mesh.points[t.corner[0]]));
}

/// Whether the foot of the perpendicular lies in the triangle, a little slack about its edges.
bool above(const Triangles& mesh, const Triangle& t, Vec3 p)
{
    const Vec3 n = normalized(normalOf(mesh, t));
    for (std::size_t i = 0; i < 3; ++i) {
        const Vec3 a = mesh.points[t.corner[i]];
        const Vec3 side = mesh.points[t.corner[(i + 1) % 3]] - a;
        if (dot(cross(n, normalized(side)), p - a) < -2e-3f) return false;
    }
    return true;
}

double areaOf(const Triangles& mesh)
{
    double area = 0;
    for (const Triangle& t : mesh.triangles)
        area += 0.5 * static_cast<double>(length(normalOf(mesh, t)));
    return area;
}

} // namespace

TEST(Tessellation, ABoxHasTwelveTrianglesOfItsAreaThatFaceOutward)
{
    const Shape box = turnedShape(Shape::Box, {0.5f, 1, 1.5f});
    const Triangles mesh = tessellate(worldOf(box));
    ASSERT_EQ(mesh.triangles.size(), 12u);
    EXPECT_NEAR(areaOf(mesh), 2 * (1 * 2 + 2 * 3 + 1 * 3), 1e-4);
    for (const Triangle& t : mesh.triangles)
        EXPECT_GT(dot(normalOf(mesh, t), middleOf(mesh, t) - box.center), 0);
}

TEST(Tessellation, RoundShapesComeWithinAMillimetreAndFaceOutward)
{
    for (const Shape::Kind kind : {Shape::Cylinder, Shape::Ellipsoid})
        for (const float size : {0.01f, 0.16f, 1.2f}) {
            const Shape shape = turnedShape(kind, {size, size, kind == Shape::Cylinder ? 0.9f : 0.7f * size});
            const Triangles mesh = tessellate(worldOf(shape));
            const float least = std::min(size, shape.half.z);
            for (const Triangle& t : mesh.triangles) {
                const Vec3 middle = middleOf(mesh, t);
                EXPECT_GT(dot(normalOf(mesh, t), middle - shape.center), 0);
                // A chord's middle lies farthest within: 1 mm farther out it has left the shape.
                const Vec3 out = middle + normalized(normalOf(mesh, t)) * std::min(1.05e-3f, least);
                EXPECT_FALSE(contains(shape, out)) << size;
            }
        }
}

TEST(Tessellation, FacesWithinSolidsAreLeftOut)
{
    Shape low = turnedShape(Shape::Box, {0.5f, 0.5f, 0.5f});
    Shape high = low;
    high.center.z += 1; // stands on the first
    World world = worldOf(low);
    world.shapes.push_back(high);
    world.surfaces.emplace_back();
    world.bvh.build(world.shapes);
    const Triangles mesh = tessellate(world);
    EXPECT_EQ(mesh.triangles.size(), 20u);
    EXPECT_NEAR(areaOf(mesh), 10, 1e-4);
}

TEST(Tessellation, WhatAPerfectScannerMeasuresLiesOnTheTriangles)
{
    const Scene scene = makeScene(exactOptions(Kind::Flat, 2));
    const Triangles mesh = tessellate(*scene.worlds[0]);
    const Rendering picture = render(scene, 0, 256);
    const Station& station = scene.stations[0];
    int looked = 0, off = 0;
    for (int row = 3; row < picture.height; row += 9)
        for (int column = 2; column < picture.width; column += 11) {
            const std::uint16_t range =
                picture.range[static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width) +
                              static_cast<std::size_t>(column)];
            if (range == 0 || range > 12000) continue;
            Point p = pixelDirection(column, row, picture.width, picture.height);
            for (double& v : p)
                v *= range * 0.001;
            const Point w = toWorld(station, p);
            const Vec3 at{static_cast<float>(w[0]), static_cast<float>(w[1]), static_cast<float>(w[2])};
            ++looked;
            const bool found =
                std::any_of(mesh.triangles.begin(), mesh.triangles.end(), [&](const Triangle& t) {
                    return distanceToPlane(mesh, t, at) < 2.5e-3f && above(mesh, t, at);
                });
            if (!found) ++off;
        }
    EXPECT_GT(looked, 200);
    EXPECT_LE(off, looked / 50); // beams that straddle an edge come back from the air between
}

TEST(Tessellation, EveryPartOfAFlatAndOfAStreetIsThere)
{
    const auto partsOf = [](Kind kind) {
        std::set<Part> parts;
        for (const Triangle& t : tessellate(*makeScene(smallOptions(kind, 2)).worlds[0]).triangles)
            parts.insert(t.part);
        return parts;
    };
    const std::set<Part> flat = partsOf(Kind::Flat);
    for (const Part part : {Part::Furniture, Part::Floor, Part::Ceiling, Part::Wall, Part::Lintel, Part::Door,
                            Part::Window, Part::Lamp, Part::Glass, Part::Ground, Part::House, Part::Plant})
        EXPECT_TRUE(flat.count(part)) << static_cast<int>(part);
    const std::set<Part> street = partsOf(Kind::Street);
    for (const Part part : {Part::Ground, Part::House, Part::Outdoor})
        EXPECT_TRUE(street.count(part)) << static_cast<int>(part);
    for (const Part part : {Part::Floor, Part::Ceiling, Part::Wall})
        EXPECT_FALSE(street.count(part)) << static_cast<int>(part);
}

TEST(PlanCut, AnUprightBoxIsCutToItsRectangleAndMissedAboveIt)
{
    const Shape box = turnedShape(Shape::Box, {0.5f, 1, 1.5f});
    const Outline outline = cutAt(box, 1.2f);
    ASSERT_EQ(outline.size(), 4u);
    double area = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const Vec2 a = outline[i], b = outline[(i + 1) % 4];
        area += 0.5 * static_cast<double>(a.x * b.y - a.y * b.x);
    }
    EXPECT_NEAR(area, 2, 1e-4); // above 0: counter-clockwise
    EXPECT_TRUE(cutAt(box, 2.6f).empty());
    EXPECT_TRUE(cutAt(box, -0.6f).empty());
}

TEST(PlanCut, RoundShapesAreCutToTheirRadius)
{
    for (const Vec2 p : cutAt(turnedShape(Shape::Cylinder, {0.3f, 0.3f, 1}), 1.2f))
        EXPECT_NEAR(std::hypot(p.x - 3, p.y + 2), 0.3f, 1e-5f);
    for (const Vec2 p : cutAt(turnedShape(Shape::Ellipsoid, {0.5f, 0.5f, 0.5f}), 1.3f))
        EXPECT_NEAR(std::hypot(p.x - 3, p.y + 2), 0.4f, 1e-5f);
}

TEST(FloorPlanTruth, LevelRaysThatMeetWallsMeetTheOutlines)
{
    const Scene scene = makeScene(smallOptions(Kind::Flat, 4));
    const World& world = *scene.worlds[0];
    const auto plan = nlohmann::json::parse(floorPlanOf(scene));
    const auto& storey = plan["storeys"][0];
    EXPECT_EQ(storey["floor"], 0.0);
    EXPECT_NEAR(storey["cut"].get<double>(), 1.2, 1e-6);
    EXPECT_NEAR(storey["ceiling"].get<double>(), static_cast<double>(world.rooms[0].ceiling), 1e-4);
    int walls = 0;
    for (const Station& s : scene.stations)
        for (int i = 0; i < 90; ++i) {
            const float a = 6.2831853f * static_cast<float>(i) / 90;
            const Vec3 from{static_cast<float>(s.position[0]), static_cast<float>(s.position[1]), 1.2f};
            const Hit hit = world.trace(from, {std::cos(a), std::sin(a), 0}, 1e-3f, 30);
            if (hit.shape < 0 || world.surfaces[static_cast<std::size_t>(hit.shape)].part != Part::Wall)
                continue;
            ++walls;
            double nearest = 1;
            for (const auto& outline : storey["walls"])
                for (std::size_t k = 0; k < outline.size(); ++k) {
                    const auto p = outline[k].get<std::array<double, 2>>();
                    const auto q = outline[(k + 1) % outline.size()].get<std::array<double, 2>>();
                    const double dx = q[0] - p[0], dy = q[1] - p[1];
                    const double x = static_cast<double>(hit.point.x) - p[0];
                    const double y = static_cast<double>(hit.point.y) - p[1];
                    const double along = std::clamp((x * dx + y * dy) / (dx * dx + dy * dy), 0.0, 1.0);
                    nearest = std::min(nearest, std::hypot(x - along * dx, y - along * dy));
                }
            EXPECT_LT(nearest, 1e-3);
        }
    EXPECT_GT(walls, 40);
}

TEST(FloorPlanTruth, HoldsRoomsAndStationsWhereTheyAre)
{
    const Scene scene = makeScene(smallOptions(Kind::Office, 3));
    const auto plan = nlohmann::json::parse(floorPlanOf(scene));
    ASSERT_EQ(plan["stations"].size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(plan["stations"][i]["id"], scene.stations[i].id);
        EXPECT_EQ(plan["stations"][i]["position"].get<Point>(), scene.stations[i].position);
    }
    const auto& rooms = plan["storeys"][0]["rooms"];
    EXPECT_EQ(rooms.size(), scene.worlds[0]->rooms.size());
    for (const Station& s : scene.stations) {
        const bool inside = std::any_of(rooms.begin(), rooms.end(), [&](const auto& room) {
            return s.position[0] > room["low"][0] && s.position[0] < room["high"][0] &&
                   s.position[1] > room["low"][1] && s.position[1] < room["high"][1];
        });
        EXPECT_TRUE(inside) << s.id;
    }
}

TEST(FloorPlanTruth, AStreetHasHousesForWallsAndNoCeiling)
{
    const auto plan = nlohmann::json::parse(floorPlanOf(makeScene(smallOptions(Kind::Street, 2))));
    EXPECT_TRUE(plan["storeys"][0]["ceiling"].is_null());
    EXPECT_TRUE(plan["storeys"][0]["rooms"].empty());
    EXPECT_GT(plan["storeys"][0]["walls"].size(), 5u);
}

TEST(SurfacesTruth, TheFileHoldsWhatItsHeadPromises)
{
    const Scene scene = makeScene(smallOptions(Kind::Flat, 2));
    const Triangles mesh = tessellate(*scene.worlds[0]);
    const std::string bytes = surfacesOf(scene);
    const std::string end = "end_header\n";
    const std::size_t head = bytes.find(end) + end.size();
    EXPECT_NE(bytes.find("element vertex " + std::to_string(mesh.points.size()) + "\n"), std::string::npos);
    EXPECT_NE(bytes.find("element face " + std::to_string(mesh.triangles.size()) + "\n"), std::string::npos);
    EXPECT_EQ(bytes.size(), head + 12 * mesh.points.size() + 14 * mesh.triangles.size());
    EXPECT_EQ(bytes[head + 12 * mesh.points.size()], 3);
    EXPECT_EQ(bytes, surfacesOf(makeScene(smallOptions(Kind::Flat, 2))));
}
