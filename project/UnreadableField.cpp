// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/UnreadableField.h"

#include "project/LocalText.h"
#include "project/RecordName.h"
#include "project/TourContainer.h"
#include "project/TourXml.h"
#include "project/TourXmlReader.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

bool hasPlaceInXml(uint code)
{
    const bool control = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    return !control && !QChar::isSurrogate(code) && code != 0xFFFE && code != 0xFFFF;
}

bool fitsXml(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool pair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (!pair && !hasPlaceInXml(text[i].unicode())) return false;
        if (pair) ++i;
    }
    return true;
}

/// A carriage return would come back as a line feed, an entity as its character.
bool fitsContent(const QString& text)
{
    return fitsXml(text) && !text.contains(u'\r') && tourxml::unescapedContent(text) == text;
}

bool fitsTag(const QString& text)
{
    return fitsXml(text) && std::none_of(text.begin(), text.end(),
                                         [](QChar c) { return c == u'"' || c == u'&' || c == u'<'; });
}

/// Tabulators and line ends would come back as blanks.
bool fitsAttribute(const QString& text)
{
    return fitsTag(text) && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' '; });
}

/// Stands between tags as well, and is never read back: the panorama's file tells it.
bool fitsBaseName(const QString& text)
{
    return fitsTag(text) && !text.contains(QLatin1String("]]>"));
}

bool fitsRecordName(const QString& path)
{
    const QString name = tour::fileNameOf(path);
    return tour::isBareName(name) && localtext::toLocal(name).size() < tour::kNameBytes;
}

class Search
{
public:
    void look(bool fits, const char* field, const QString& text)
    {
        if (!fits && !m_found)
            m_found = UnreadableField{QCoreApplication::translate("UnreadableField", field), text};
    }

    void look(const PanoNode& node)
    {
        const QString identity = tourxml::identityText(node.parameters.identity);
        look(fitsAttribute(identity), QT_TRANSLATE_NOOP("UnreadableField", "panorama identity"), identity);
        look(fitsBaseName(node.base_name), QT_TRANSLATE_NOOP("UnreadableField", "panorama name"),
             node.base_name);
        look(fitsRecordName(node.file_path),
             QT_TRANSLATE_NOOP("UnreadableField", "file name of the panorama"),
             tour::fileNameOf(node.file_path));
        for (const PhotoHotspot& photo : node.photos)
            if (!photo.photo_path.isEmpty()) look(photo);
        for (const InfoHotspot& info : node.infos) {
            look(fitsAttribute(info.caption), QT_TRANSLATE_NOOP("UnreadableField", "caption of the text"),
                 info.caption);
            look(fitsContent(info.content), QT_TRANSLATE_NOOP("UnreadableField", "content of the text"),
                 info.content);
        }
    }

    std::optional<UnreadableField> found() const { return m_found; }

private:
    void look(const PhotoHotspot& photo)
    {
        const QString name = tour::fileNameOf(photo.photo_path);
        look(fitsAttribute(photo.caption), QT_TRANSLATE_NOOP("UnreadableField", "caption of the photo"),
             photo.caption);
        look(fitsAttribute(name) && fitsRecordName(photo.photo_path),
             QT_TRANSLATE_NOOP("UnreadableField", "file name of the photo"), name);
    }

    std::optional<UnreadableField> m_found;
};

} // namespace

std::optional<UnreadableField> firstUnreadableField(const RoamProject& project)
{
    Search search;
    for (const auto& node : project.panoramas)
        search.look(*node);
    return search.found();
}
