// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/Cloud.h"

#include "companions/pnotool/input/Ply.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>

namespace pnotool {
namespace {

std::uint8_t shade(double value)
{
    return static_cast<std::uint8_t>(std::min(std::max(value, 0.0), 255.0) + 0.5);
}

/// @param values  what the line holds, 3, 4, 6 or 7 numbers
pnomaker::CloudPoint pointOf(const double* values, int count)
{
    pnomaker::CloudPoint point = {static_cast<float>(values[0]),
                                  static_cast<float>(values[1]),
                                  static_cast<float>(values[2]),
                                  200,
                                  200,
                                  200};
    if (count >= 6) {
        const double* colour = values + count - 3;
        point.red = shade(colour[0]);
        point.green = shade(colour[1]);
        point.blue = shade(colour[2]);
    }
    return point;
}

std::string readLines(std::istream& in, EvenSelection& points)
{
    std::string line;
    for (std::size_t number = 1; std::getline(in, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::size_t start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line[start] == '#' || line.compare(start, 2, "//") == 0) continue;
        double values[7];
        const int count = numbersOfLine(line, values, 7);
        if (count == 1 && points.empty()) continue; // the count of a PTS file
        if (count != 3 && count != 4 && count != 6 && count != 7)
            return "line " + std::to_string(number) +
                   " is not a point: x y z, followed or not by an intensity and by red green blue";
        points.add(pointOf(values, count));
    }
    return {};
}

} // namespace

int numbersOfLine(const std::string& line, double* values, int limit)
{
    const auto isGap = [](char c) { return c == ' ' || c == '\t' || c == ',' || c == ';' || c == '\r'; };
    const char* at = line.data();
    const char* const end = at + line.size();
    int count = 0;
    for (;;) {
        at = std::find_if_not(at, end, isGap);
        if (at == end || count == limit) return count;
        if (*at == '+' && at + 1 != end) ++at;
        const auto result = std::from_chars(at, end, values[count]);
        if (result.ec != std::errc() || (result.ptr != end && !isGap(*result.ptr))) return -1;
        at = result.ptr;
        ++count;
    }
}

std::string readCloud(const std::string& path, std::vector<pnomaker::CloudPoint>& points)
{
    std::ifstream in(path, std::ios::binary);
    char magic[4] = {};
    if (!in) return std::string("cannot be read: ") + std::strerror(errno);
    in.read(magic, sizeof(magic));
    const bool ply =
        in.gcount() == 4 && std::memcmp(magic, "ply", 3) == 0 && (magic[3] == '\n' || magic[3] == '\r');
    in.clear();
    in.seekg(0);
    EvenSelection selection;
    const std::string error = ply ? readPly(in, selection) : readLines(in, selection);
    if (!error.empty()) return error;
    if (selection.empty()) return "the cloud has no points";
    points = selection.take();
    return {};
}

} // namespace pnotool
