// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/samplescene/Arguments.h"
#include "companions/samplescene/MapTruth.h"
#include "companions/samplescene/Truth.h"
#include "companions/samplescene/Writer.h"

#include <cstdio>
#include <exception>
#include <filesystem>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

bool onTerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

int fail(const std::string& line, int status)
{
    std::fprintf(stderr, "samplescene: %s\n", line.c_str());
    return status;
}

int makeFiles(const samplescene::Arguments& arguments)
{
    const std::filesystem::path folder(arguments.folder);
    std::filesystem::create_directories(folder);
    const samplescene::Scene scene = samplescene::makeScene(arguments.options);
    const int count = static_cast<int>(scene.stations.size());
    if (count < arguments.options.count)
        return fail("only " + std::to_string(count) + " panoramas find a place; give it more --rooms", 1);
    std::vector<std::string> files;
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "pano-%02d", i + 1);
        if (onTerminal()) std::fprintf(stderr, "\r%s of %d ", name, count);
        const samplescene::Rendering picture = samplescene::render(scene, i, arguments.width);
        const std::string stem = (folder / name).string();
        files.push_back(std::string(name) + ".pno");
        std::string wrong = samplescene::writePanorama(scene.stations[static_cast<std::size_t>(i)], i,
                                                       picture, stem + ".pno");
        if (wrong.empty() && arguments.pictures) wrong = samplescene::writePpm(picture, stem + ".ppm");
        if (wrong.empty() && arguments.pictures && !picture.range.empty())
            wrong = samplescene::writeRangePgm(picture, stem + ".pgm");
        if (!wrong.empty()) return fail(wrong, 1);
    }
    if (onTerminal()) std::fprintf(stderr, "\n");
    const std::pair<const char*, std::string> texts[] = {{"surfaces.ply", samplescene::surfacesOf(scene)},
                                                         {"floorplan.json", samplescene::floorPlanOf(scene)},
                                                         {"truth.json", samplescene::truthOf(scene, files)}};
    for (const auto& [name, text] : texts) {
        const std::string wrong = samplescene::writeText(text, (folder / name).string());
        if (!wrong.empty()) return fail(wrong, 1);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    samplescene::Arguments arguments;
    const std::string wrong =
        samplescene::parseArguments(std::vector<std::string>(argv + 1, argv + argc), &arguments);
    if (!wrong.empty()) return fail(wrong, 2);
    if (arguments.help) {
        std::fputs(samplescene::helpText().c_str(), stdout);
        return 0;
    }
    try { // a folder that cannot be made, memory that runs out
        return makeFiles(arguments);
    } catch (const std::exception& e) {
        return fail(e.what(), 1);
    }
}
