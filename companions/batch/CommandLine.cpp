// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/CommandLine.h"

#include "project/LocalText.h"

#include <cstdio>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

void print(std::FILE* stream, const QString& text)
{
    const QByteArray bytes = localtext::toLocal(text);
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

bool onTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(fileno(stderr)) != 0;
#endif
}

} // namespace

void say(const QString& line)
{
    print(stderr, QStringLiteral("tourwright-batch: %1\n").arg(line));
}

void print(const QString& text)
{
    print(stdout, text);
}

int refused(const QString& reason)
{
    say(reason);
    return ExitFailed;
}

int wrongUsage(const QString& problem)
{
    say(problem + QStringLiteral("; see tourwright-batch --help"));
    return ExitWrongUsage;
}

void showProgress(const QString& what, int percent)
{
    if (!onTerminal()) return;
    print(stderr, QStringLiteral("\r%1: %2 % ").arg(what).arg(percent, 3));
    if (percent >= 100) print(stderr, QStringLiteral("\n"));
}

int printHelp()
{
    print(stdout, QStringLiteral(R"(tourwright-batch: panorama tours without a window

tourwright-batch link FILE.pno... --work DIR --out TOUR.roa [options]
    Imports the panoramas, has the linking library link them and saves the tour.
    --work DIR       stands for the program's folder: DIR/Tmp/ is the working folder, DIR/Out/ the output
                     folder; both are made where missing, and what an earlier run left in DIR/Tmp/ is deleted
    --out TOUR.roa   the tour file; one that is there is replaced once the new one is whole
    --report R.json  poses, links, times and memory
    --entry N        row of the entry panorama among those imported, from 0
    --pairs P.csv    rows id0,id1,azimuth0,polar0,azimuth1,polar1 (radians; polar from the upper pole): the pairs
                     of directions of each two ids become one link made by hand; at least three pairs each
    --map 2d|3d      also merges the lidar into a navigation map, the black-and-white plan or the coloured
                     cloud, and puts pictures and pose table into DIR/Out/, where an earlier file stays
    --scene indoor|outdoor   for --map: whether to take ceilings away (indoor)
    --density high|mid|low   for --map: one point per 1, 2 or 5 cm (high)
    --pts, --bin             for --map: also the whole cloud in DIR/Out/, as PTS text, in binary form

tourwright-batch open TOUR.roa --work DIR [--report R.json] [--out COPY.roa]
    Reads a saved tour into DIR, hands it to the linking library, and on request reports on it and saves it again.

tourwright-batch upload TOUR.roa --work DIR --account A --album NAME [--url URL] [--timeout SECONDS]
    Uploads a saved tour to an album service and prints the album's identifier. The password comes from the
    environment variable TOURWRIGHT_PASSWORD or from standard input.
    --account A        e-mail address
    --album NAME       letters of any script, digits and "_"
    --url URL          the service, where it is not the one of TOURWRIGHT_ALBUM_URL
    --timeout SECONDS  how long the service may be silent, or take to list a panorama (300)

tourwright-batch compare REPORT.json TRUTH.json [--map DIR]
    Prints the report's poses against the true ones of a made-up building, aligned by one rigid motion (by a
    similarity where there is no lidar), and its links against who truly sees whom.
    --map DIR        the --work folder of `link --map`: also prints what the merged cloud and the plan are worth
                     beside surfaces.ply and floorplan.json, which lie beside TRUTH.json

Exit status: 0 done, 1 the input was refused or the work failed, 2 wrong usage.
)"));
    return ExitDone;
}
