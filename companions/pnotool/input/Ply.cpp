// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/Ply.h"

#include "companions/pnotool/input/Cloud.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <sstream>

namespace pnotool {
namespace {

enum class Scalar
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Float,
    Double,
    Unknown
};

struct Property
{
    std::string name;
    Scalar type = Scalar::Unknown;
    bool list = false;
};

struct Element
{
    std::string name;
    std::uint64_t count = 0;
    std::vector<Property> properties;
};

struct Header
{
    std::string format;
    std::vector<Element> elements;
};

Scalar scalarNamed(const std::string& name)
{
    static constexpr std::array<std::array<const char*, 2>, 8> kNames = {{{"char", "int8"},
                                                                          {"uchar", "uint8"},
                                                                          {"short", "int16"},
                                                                          {"ushort", "uint16"},
                                                                          {"int", "int32"},
                                                                          {"uint", "uint32"},
                                                                          {"float", "float32"},
                                                                          {"double", "float64"}}};
    for (std::size_t i = 0; i < kNames.size(); ++i)
        if (name == kNames[i][0] || name == kNames[i][1]) return static_cast<Scalar>(i);
    return Scalar::Unknown;
}

std::size_t sizeOf(Scalar type)
{
    constexpr std::size_t kSizes[] = {1, 1, 2, 2, 4, 4, 4, 8, 0};
    return kSizes[static_cast<std::size_t>(type)];
}

template <class T>
double as(const std::uint8_t* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof(T));
    return static_cast<double>(value);
}

double valueOf(Scalar type, const std::uint8_t* bytes, bool swapped)
{
    std::uint8_t ordered[8] = {};
    std::memcpy(ordered, bytes, sizeOf(type));
    if (swapped) std::reverse(ordered, ordered + sizeOf(type));
    switch (type) {
    case Scalar::Int8:
        return as<std::int8_t>(ordered);
    case Scalar::UInt8:
        return as<std::uint8_t>(ordered);
    case Scalar::Int16:
        return as<std::int16_t>(ordered);
    case Scalar::UInt16:
        return as<std::uint16_t>(ordered);
    case Scalar::Int32:
        return as<std::int32_t>(ordered);
    case Scalar::UInt32:
        return as<std::uint32_t>(ordered);
    case Scalar::Float:
        return as<float>(ordered);
    case Scalar::Double:
        return as<double>(ordered);
    case Scalar::Unknown:
        break;
    }
    return 0;
}

std::string readHeader(std::istream& in, Header& header)
{
    std::string line;
    for (int lines = 0; lines < 1000 && std::getline(in, line); ++lines) {
        std::istringstream words(line);
        std::string word, type, name;
        words >> word;
        if (word == "end_header") return header.format.empty() ? "the PLY header names no format" : "";
        if (word == "format") {
            words >> header.format;
        } else if (word == "element") {
            Element element;
            words >> element.name >> element.count;
            header.elements.push_back(element);
        } else if (word == "property" && !header.elements.empty()) {
            Property property;
            words >> type;
            property.list = type == "list";
            if (property.list) words >> type >> type;
            words >> property.name;
            property.type = scalarNamed(type);
            if (property.type == Scalar::Unknown) return "the PLY header has a property of an unknown type";
            header.elements.back().properties.push_back(property);
        }
    }
    return "the PLY header has no end";
}

/// Where a point's values stand among the vertex's properties; -1: nowhere.
struct Places
{
    int position[3] = {-1, -1, -1};
    int colour[3] = {-1, -1, -1};
    double colourScale = 1;
};

Places placesIn(const Element& vertex)
{
    static constexpr std::array<std::array<const char*, 3>, 3> kColours = {
        {{"red", "diffuse_red", "r"}, {"green", "diffuse_green", "g"}, {"blue", "diffuse_blue", "b"}}};
    Places places;
    for (int i = 0; i < static_cast<int>(vertex.properties.size()); ++i) {
        const Property& property = vertex.properties[static_cast<std::size_t>(i)];
        for (int c = 0; c < 3; ++c) {
            if (property.name == std::string(1, static_cast<char>('x' + c))) places.position[c] = i;
            for (const char* name : kColours[static_cast<std::size_t>(c)])
                if (property.name == name) places.colour[c] = i;
        }
    }
    if (places.colour[0] >= 0) {
        const Scalar type = vertex.properties[static_cast<std::size_t>(places.colour[0])].type;
        if (type == Scalar::Float || type == Scalar::Double)
            places.colourScale = 255;
        else if (type == Scalar::UInt16)
            places.colourScale = 255.0 / 65535;
    }
    return places;
}

void addPoint(const Places& places, const std::vector<double>& values, EvenSelection& points)
{
    pnomaker::CloudPoint point = {};
    float* const position[] = {&point.x, &point.y, &point.z};
    std::uint8_t* const colour[] = {&point.red, &point.green, &point.blue};
    for (int c = 0; c < 3; ++c) {
        *position[c] = static_cast<float>(values[static_cast<std::size_t>(places.position[c])]);
        const double shade = places.colour[c] < 0
                                 ? 200
                                 : values[static_cast<std::size_t>(places.colour[c])] * places.colourScale;
        *colour[c] = static_cast<std::uint8_t>(std::min(std::max(shade, 0.0), 255.0) + 0.5);
    }
    points.add(point);
}

} // namespace

std::string readPly(std::istream& in, EvenSelection& points)
{
    Header header;
    if (const std::string refusal = readHeader(in, header); !refusal.empty()) return refusal;
    const bool text = header.format == "ascii";
    if (!text && header.format != "binary_little_endian" && header.format != "binary_big_endian")
        return "the PLY format " + header.format + " is not known";
    const std::uint16_t one = 1;
    const bool machineIsLittle = *reinterpret_cast<const std::uint8_t*>(&one) == 1;
    const bool swapped = (header.format == "binary_little_endian") != machineIsLittle;

    for (const Element& element : header.elements) {
        const bool vertices = element.name == "vertex";
        const Places places = placesIn(element);
        if (vertices && *std::min_element(places.position, places.position + 3) < 0)
            return "the PLY vertices have no x, y and z";
        std::size_t recordBytes = 0;
        for (const Property& property : element.properties) {
            if (property.list) return "the PLY file has lists before or in its vertices";
            recordBytes += sizeOf(property.type);
        }
        if (element.properties.empty()) continue; // whatever its count, nothing stands for it in the data
        std::vector<double> values(element.properties.size());
        std::vector<std::uint8_t> record(recordBytes);
        std::string line;
        for (std::uint64_t i = 0; i < element.count; ++i) {
            if (text) {
                const int count = static_cast<int>(values.size());
                if (!std::getline(in, line) || numbersOfLine(line, values.data(), count) < count)
                    return "the PLY data is damaged or cut off";
            } else {
                if (!in.read(reinterpret_cast<char*>(record.data()),
                             static_cast<std::streamsize>(recordBytes)))
                    return "the PLY data is cut off";
                const std::uint8_t* at = record.data();
                for (std::size_t p = 0; p < values.size(); at += sizeOf(element.properties[p].type), ++p)
                    values[p] = valueOf(element.properties[p].type, at, swapped);
            }
            if (vertices) addPoint(places, values, points);
        }
        if (vertices) return {};
    }
    return "the PLY file has no vertices";
}

} // namespace pnotool
