// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/TourXmlReader.h"

#include "project/LocalText.h"
#include "project/PanoIdentity.h"
#include "project/RecordName.h"
#include "project/XmlElement.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tourxml {

namespace {

constexpr const char* kHorizon = "1.5707963267949";

double real(const XmlElement& element, const char* name, const char* ifMissing)
{
    bool isNumber = false;
    const double value = element.attribute(name, ifMissing).toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? value : 0.0;
}

qint32 integer(const XmlElement& element, const char* name)
{
    return element.attribute(name, "0").toInt();
}

quint64 identityNumber(const XmlElement& element, const char* name)
{
    return panoIdFromName(localtext::toLocal(element.attribute(name, "")).toStdString());
}

QString bareName(const XmlElement& element, const char* name, const char* ifMissing)
{
    const QString text = element.attribute(name, ifMissing);
    return tour::isBareName(text) ? text : QString();
}

PhotoHotspot photo(const XmlElement& element)
{
    PhotoHotspot hotspot;
    hotspot.sphere_x = real(element, "sphere_x", "0");
    hotspot.sphere_y = real(element, "sphere_y", kHorizon);
    hotspot.caption = element.attribute("caption", "0");
    hotspot.photo_path = bareName(element, "src", "0");
    return hotspot;
}

InfoHotspot info(const XmlElement& element)
{
    InfoHotspot hotspot;
    hotspot.sphere_x = real(element, "sphere_x", "0");
    hotspot.sphere_y = real(element, "sphere_y", kHorizon);
    hotspot.caption = element.attribute("caption", "0");
    hotspot.content = unescapedContent(element.text());
    return hotspot;
}

void readLocation(const XmlElement& element, PanoNode* node)
{
    node->position_x = real(element, "position_x", "0");
    node->position_y = real(element, "position_y", "0");
    node->position_z = real(element, "position_z", "0");
    node->vertex_x = real(element, "vertex_x", "0");
    node->vertex_y = real(element, "vertex_y", "0");
    node->direction = real(element, "direction", "0");
    node->plan_center_x = integer(element, "plan_center_x");
    node->plan_center_y = integer(element, "plan_center_y");
    node->plan_src = bareName(element, "plan_src", "");
}

std::unique_ptr<PanoNode> panorama(const XmlElement& element)
{
    auto node = std::make_unique<PanoNode>();
    node->id = identityNumber(element, "pano_id");
    if (const XmlElement* image = element.child("image_attributes"))
        node->lidar = image->attribute("lidar", "0") == QLatin1String("1");
    if (const XmlElement* location = element.child("location")) readLocation(*location, node.get());
    for (const XmlElement* each : element.descendants("link_photo"))
        node->photos.append(photo(*each));
    for (const XmlElement* each : element.descendants("link_info"))
        node->infos.append(info(*each));
    return node;
}

/// The field's last byte stays zero: an identity has 14 characters, and readers of the field count on its
/// end.
qint64 readIdentity(const XmlElement& element, const char* name, char (&field)[16])
{
    const QByteArray text = localtext::toLocal(element.attribute(name, "aaaaaaaaaaaaaa"));
    std::memcpy(field, text.constData(), std::min(sizeof field - 1, static_cast<std::size_t>(text.size())));
    return static_cast<qint64>(panoIdFromName(field));
}

std::unique_ptr<PanoLink> link(const XmlElement& element)
{
    auto link = std::make_unique<PanoLink>();
    link->id_0 = readIdentity(element, "pano_id_0", link->name_0);
    link->id_1 = readIdentity(element, "pano_id_1", link->name_1);
    link->rot_0 = real(element, "rot_0", kHorizon);
    link->rot_1 = real(element, "rot_1", kHorizon);
    link->tilt_x0 = real(element, "tilt_x0", "0");
    link->tilt_x1 = real(element, "tilt_x1", "0");
    link->tilt_y0 = real(element, "tilt_y0", "0");
    link->icon_y0 = real(element, "icon_y0", "2.356");
    link->icon_y1 = real(element, "icon_y1", "2.356");
    link->spacing = real(element, "spacing", "2");
    link->mode = element.attribute("mode", "2") == QLatin1String("2") ? LinkByPose : LinkByHand;
    link->reliability = real(element, "reliability", "0");
    return link;
}

EntryView entryView(const XmlElement& element)
{
    EntryView view;
    view.direction = real(element, "direction", "0");
    view.elevation = real(element, "elevation", kHorizon);
    view.view_angle = real(element, "view_angle", kHorizon);
    return view;
}

QString missing(const char* element)
{
    return QCoreApplication::translate("OpenTour", "its description has no %1").arg(QLatin1String(element));
}

} // namespace

bool read(const QByteArray& xml, Description* description, QString* error)
{
    XmlElement root;
    if (!XmlElement::parse(xml, &root, error)) {
        *error = QCoreApplication::translate("OpenTour", "its description cannot be read: %1").arg(*error);
        return false;
    }
    if (root.name() != QLatin1String("pano_group")) {
        *error = missing("pano_group");
        return false;
    }
    for (const char* part : {"panorama_list", "entry_point", "pano_link_list"}) {
        if (root.child(part)) continue;
        *error = missing(part);
        return false;
    }

    Description said;
    for (const XmlElement* each : root.child("panorama_list")->descendants("panorama"))
        said.panoramas.push_back(panorama(*each));
    said.entry_id = identityNumber(*root.child("entry_point"), "pano_id");
    said.entry_view = entryView(*root.child("entry_point"));
    for (const XmlElement* each : root.child("pano_link_list")->descendants("pano_link"))
        said.links.push_back(link(*each));
    *description = std::move(said);
    return true;
}

QString unescapedContent(const QString& text)
{
    QString content = text;
    content.replace(QLatin1String("&lt;"), QLatin1String("<"));
    content.replace(QLatin1String("&gt;"), QLatin1String(">"));
    content.replace(QLatin1String("&amp;"), QLatin1String("&"));
    return content;
}

} // namespace tourxml
