// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Pictures out of a panorama file: the whole, one tile, the thumbnail.
#include "companions/pnotool/Arguments.h"
#include "companions/pnotool/Commands.h"
#include "companions/pnotool/PanoramaInput.h"
#include "linking/pictures/PanoramaPicture.h"
#include "linking/pictures/Thumbnail.h"
#include "project/LocalText.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>

namespace pnotool {
namespace {

/// Encodes in the format that the output's ending names, and writes it.
int writePicture(const QImage& picture, const std::string& path)
{
    const QByteArray format =
        QFileInfo(localtext::fromLocal(QByteArray::fromStdString(path))).suffix().toLower().toLatin1();
    if (!QImageWriter::supportedImageFormats().contains(format))
        return failed(path + ": the ending names no picture format; .png and .jpg always work");
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (format == "jpg" || format == "jpeg") writer.setQuality(95);
    if (!writer.write(picture))
        return failed(path + ": " + localtext::toLocal(writer.errorString()).toStdString());
    return writeOutput(path, buffer.data().constData(), static_cast<std::size_t>(buffer.size()));
}

} // namespace

int imageCommand(const Words& words)
{
    Arguments arguments = parseArguments(words, {"width", "out"}, {});
    const int width = arguments.integer("width", 8192);
    if (arguments.problem.empty() && arguments.places.size() != 1)
        arguments.problem = "image wants one panorama file";
    if (arguments.problem.empty() && arguments.text("out").empty()) arguments.problem = "image wants --out";
    if (arguments.problem.empty() && width != 8192 && width != 4096)
        arguments.problem = "--width is 8192 or 4096";
    if (!arguments.problem.empty()) return wrongUsage(arguments.problem);
    const std::string& path = arguments.places[0];
    if (!openPanorama(path)) return kFailed;
    QImage picture(width, width / 2, QImage::Format_RGB888);
    if (picture.isNull()) return failed("there is not enough memory");
    picture.fill(Qt::black);
    if (!assemblePanorama(localtext::fromLocal(QByteArray::fromStdString(path)), &picture))
        return failed(path + ": the panorama cannot be read");
    return writePicture(picture, arguments.text("out"));
}

int tileCommand(const Words& words)
{
    const Arguments arguments = parseArguments(words, {"out"}, {});
    if (!arguments.problem.empty()) return wrongUsage(arguments.problem);
    int place[3] = {};
    if (arguments.places.size() != 4 || !parseInteger(arguments.places[1], place[0]) ||
        !parseInteger(arguments.places[2], place[1]) || !parseInteger(arguments.places[3], place[2]))
        return wrongUsage("tile wants a panorama file, a level, a column and a row");
    if (arguments.text("out").empty()) return wrongUsage("tile wants --out");
    const std::string& path = arguments.places[0];
    const auto file = openPanorama(path);
    if (!file) return kFailed;
    std::uint32_t size = 0;
    const PnoBytes bytes = file->ReadTile(place[0], place[1], place[2], &size);
    if (!bytes)
        return failed(path + ": there is no tile at level " + arguments.places[1] + ", column " +
                      arguments.places[2] + ", row " + arguments.places[3]);
    return writeOutput(arguments.text("out"), bytes.get(), size);
}

int thumbnailCommand(const Words& words)
{
    const Arguments arguments = parseArguments(words, {"out"}, {});
    if (!arguments.problem.empty()) return wrongUsage(arguments.problem);
    if (arguments.places.size() != 1) return wrongUsage("thumbnail wants one panorama file");
    if (arguments.text("out").empty()) return wrongUsage("thumbnail wants --out");
    const auto file = openPanorama(arguments.places[0]);
    if (!file) return kFailed;
    const QImage picture = panoramaThumbnail(*file);
    if (picture.isNull())
        return failed(arguments.places[0] + ": the smallest level's tile cannot be decoded");
    return writePicture(picture, arguments.text("out"));
}

} // namespace pnotool
