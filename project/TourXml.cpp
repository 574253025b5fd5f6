// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/TourXml.h"

#include "project/TourContainer.h"

#include <algorithm>
#include <cmath>

namespace tourxml {

namespace {

QString attribute(const char* name, const QString& value)
{
    return QLatin1Char(' ') + QLatin1String(name) + QLatin1String("=\"") + value + QLatin1Char('"');
}

QString attribute(const char* name, double value, int digits = 7)
{
    return attribute(name, fixedPoint(value, digits));
}

QString attribute(const char* name, qint32 value)
{
    return attribute(name, QString::number(value));
}

QString attribute(const char* name, quint32 value)
{
    return attribute(name, QString::number(value));
}

QString line(int tabs, const QString& text)
{
    return QString(tabs, QLatin1Char('\t')) + text + QLatin1String("\r\n");
}

QString line(int tabs, const char* text)
{
    return line(tabs, QString(QLatin1String(text)));
}

QString imageAttributes(const PanoNode& node)
{
    const PnoImageInfo& info = node.parameters;
    return QLatin1String("<image_attributes") + attribute("max_zoom_level", info.max_zoom_level) +
           attribute("mosaic_pixel_size", info.mosaic_pixel_size) +
           attribute("pixel_scale", info.pixel_scale, 13) + attribute("output_min_x", info.output_min_x, 13) +
           attribute("output_min_y", info.output_min_y, 13) +
           attribute("output_max_x", info.output_max_x, 13) +
           attribute("output_max_y", info.output_max_y, 13) + attribute("lidar", node.lidar ? 1 : 0) +
           QLatin1String("/>");
}

QString panorama(const PanoNode& node)
{
    return line(3, QLatin1String("<panorama") + attribute("pano_id", identityText(node.parameters.identity)) +
                       attribute("base_name", node.base_name) + QLatin1Char('>')) +
           line(4, imageAttributes(node)) + line(4, location(node)) +
           line(4, QLatin1String("<notes>") + node.base_name + QLatin1String("</notes>")) +
           hotspotLines(node) + line(3, "</panorama>");
}

} // namespace

QString fixedPoint(double value, int digits)
{
    const QString text = QString::number(std::isfinite(value) ? value : 0.0, 'f', digits);
    // What rounds to zero is zero: a sign would be lost on reading, and saving again would change the file.
    const auto counts = [](QChar c) { return c >= u'1' && c <= u'9'; };
    return std::any_of(text.begin(), text.end(), counts) || !text.startsWith(u'-') ? text : text.mid(1);
}

QString identityText(const char (&name)[16])
{
    return QString::fromLatin1(name, static_cast<int>(qstrnlen(name, sizeof name)));
}

QString escapedContent(const QString& content)
{
    QString text = content;
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    return text;
}

QString location(const PanoNode& node)
{
    // The blanks round the first "=" are part of the format.
    return QLatin1String("<location position_x = \"") + fixedPoint(node.position_x) + QLatin1Char('"') +
           attribute("position_y", node.position_y) + attribute("position_z", node.position_z) +
           attribute("vertex_x", node.vertex_x) + attribute("vertex_y", node.vertex_y) +
           attribute("direction", node.direction) + attribute("plan_center_x", node.plan_center_x) +
           attribute("plan_center_y", node.plan_center_y) +
           attribute("plan_src", tour::fileNameOf(node.plan_src)) + QLatin1String("/>");
}

QString linkPhoto(const PhotoHotspot& photo)
{
    return QLatin1String("<link_photo") + attribute("sphere_x", photo.sphere_x) +
           attribute("sphere_y", photo.sphere_y) + attribute("caption", photo.caption) +
           attribute("src", tour::fileNameOf(photo.photo_path)) + QLatin1String("/>");
}

QString linkInfo(const InfoHotspot& info)
{
    return QLatin1String("<link_info") + attribute("sphere_x", info.sphere_x) +
           attribute("sphere_y", info.sphere_y) + attribute("caption", info.caption) + QLatin1Char('>') +
           escapedContent(info.content) + QLatin1String("</link_info>");
}

QString panoLink(const PanoLink& link, Reliability reliability)
{
    QString text = QLatin1String("<pano_link") + attribute("pano_id_0", identityText(link.name_0)) +
                   attribute("pano_id_1", identityText(link.name_1)) + attribute("rot_0", link.rot_0) +
                   attribute("rot_1", link.rot_1) + attribute("tilt_x0", link.tilt_x0) +
                   attribute("tilt_x1", link.tilt_x1) + attribute("tilt_y0", link.tilt_y0) +
                   attribute("icon_y0", link.icon_y0) + attribute("icon_y1", link.icon_y1) +
                   attribute("spacing", link.spacing) + attribute("mode", link.mode);
    if (reliability == Reliability::Written) text += attribute("reliability", link.reliability);
    return text + QLatin1String("/>");
}

QString hotspotLines(const PanoNode& node)
{
    QString text;
    for (const PhotoHotspot& photo : node.photos)
        if (!photo.photo_path.isEmpty()) text += line(4, linkPhoto(photo));
    for (const InfoHotspot& info : node.infos)
        text += line(4, linkInfo(info));
    return text;
}

QString build(RoamProject& project, int entrySelector)
{
    const int count = static_cast<int>(project.panoramas.size());
    project.entry_index = entrySelector >= 0 && entrySelector < count ? entrySelector : 0;
    if (count == 0) return QString();

    const PanoNode& entry = *project.panoramas[static_cast<std::size_t>(project.entry_index)];
    const QString entryId = identityText(entry.parameters.identity);

    QString text = line(1, QLatin1String("<pano_group") + attribute("group_id", entryId) + QLatin1Char('>'));
    text += line(2, QLatin1String("<entry_point") + attribute("pano_id", entryId) +
                        QLatin1String(" direction=\"0\" elevation=\"1.5707963267949\""
                                      " view_angle=\"1.5707963267949\"/>"));
    text += line(2, "<panorama_list>");
    for (const auto& node : project.panoramas)
        text += panorama(*node);
    text += line(2, "</panorama_list>") + line(2, "<pano_link_list>");
    for (const auto& link : project.links)
        text += line(3, panoLink(*link));
    text += line(2, "</pano_link_list>") + line(1, "</pano_group>");
    return text;
}

} // namespace tourxml
