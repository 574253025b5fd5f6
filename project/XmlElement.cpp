// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/XmlElement.h"

#include <QCoreApplication>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

QString say(const char* text)
{
    return QCoreApplication::translate("OpenTour", text);
}

bool decode(const QByteArray& bytes, QString* text)
{
    constexpr int kUtf8Mib = 106;
    QTextCodec::ConverterState state;
    *text = QTextCodec::codecForMib(kUtf8Mib)->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// Walks over the tags before the parser does: its check for repeated attributes takes quadratic time.
class TagScan
{
public:
    explicit TagScan(const QString& text)
        : m_text(text)
    {}

    /// What is wrong, or empty. Says nothing about text that is not well-formed.
    QString problem()
    {
        while ((m_at = m_text.indexOf(QLatin1Char('<'), m_at)) >= 0) {
            if (startsWith("<!--"))
                skipTo("-->");
            else if (startsWith("<![CDATA["))
                skipTo("]]>");
            else if (startsWith("<?"))
                skipTo("?>");
            else if (startsWith("<!"))
                return say(QT_TRANSLATE_NOOP("OpenTour", "it declares a document type"));
            else if (attributesOfTag() > XmlElement::kMostAttributes)
                return say(QT_TRANSLATE_NOOP("OpenTour", "an element has too many attributes"));
        }
        return QString();
    }

private:
    bool startsWith(const char* start) const { return m_text.midRef(m_at).startsWith(QLatin1String(start)); }

    void skipTo(const char* end)
    {
        const int found = m_text.indexOf(QLatin1String(end), m_at);
        m_at = found < 0 ? m_text.size() : found;
    }

    int attributesOfTag()
    {
        int count = 0;
        for (; m_at < m_text.size() && m_text[m_at] != QLatin1Char('>'); ++m_at) {
            const QChar quote = m_text[m_at];
            if (quote != QLatin1Char('"') && quote != QLatin1Char('\'')) continue;
            ++count;
            const int closing = m_text.indexOf(quote, m_at + 1);
            m_at = closing < 0 ? m_text.size() - 1 : closing;
        }
        return count;
    }

    const QString& m_text;
    int m_at = 0;
};

} // namespace

bool XmlElement::parse(const QByteArray& document, XmlElement* root, QString* error)
{
    QString text;
    if (document.size() > kLongest) {
        *error = say(QT_TRANSLATE_NOOP("OpenTour", "it is too long"));
        return false;
    }
    if (!decode(document, &text)) {
        *error = say(QT_TRANSLATE_NOOP("OpenTour", "it is not UTF-8"));
        return false;
    }
    *error = TagScan(text).problem();
    if (!error->isEmpty()) return false;

    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    XmlElement above; // holds the root as its child
    std::vector<XmlElement*> open{&above};
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            if (open.size() > static_cast<std::size_t>(kDeepest)) {
                reader.raiseError(
                    say(QT_TRANSLATE_NOOP("OpenTour", "elements stand too deep in each other")));
                break;
            }
            // Only the last child is ever open, so no pointer outlives a move of its siblings.
            XmlElement& added = open.back()->m_children.emplace_back();
            added.m_name = reader.qualifiedName().toString();
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                added.m_attributes.emplace_back(attribute.qualifiedName().toString(),
                                                attribute.value().toString());
            open.push_back(&added);
            break;
        }
        case QXmlStreamReader::EndElement:
            open.pop_back();
            break;
        case QXmlStreamReader::Characters: {
            XmlElement& inside = *open.back();
            (inside.m_children.empty() ? inside.m_text : inside.m_children.back().m_after) += reader.text();
            break;
        }
        default:
            break;
        }
    }
    if (reader.hasError()) {
        *error = say(QT_TRANSLATE_NOOP("OpenTour", "line %1, column %2: %3"))
                     .arg(reader.lineNumber())
                     .arg(reader.columnNumber())
                     .arg(reader.errorString());
        return false;
    }
    *root = std::move(above.m_children.front());
    return true;
}

QString XmlElement::attribute(const char* name, const char* ifMissing) const
{
    const auto found = std::find_if(m_attributes.begin(), m_attributes.end(),
                                    [&](const auto& each) { return each.first == QLatin1String(name); });
    return found == m_attributes.end() ? QString(QLatin1String(ifMissing)) : found->second;
}

const XmlElement* XmlElement::child(const char* name) const
{
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [&](const auto& each) { return each.m_name == QLatin1String(name); });
    return found == m_children.end() ? nullptr : &*found;
}

std::vector<const XmlElement*> XmlElement::descendants(const char* name) const
{
    std::vector<const XmlElement*> found;
    collect(QLatin1String(name), &found);
    return found;
}

void XmlElement::collect(QLatin1String name, std::vector<const XmlElement*>* found) const
{
    for (const XmlElement& child : m_children) {
        if (child.m_name == name) found->push_back(&child);
        child.collect(name, found);
    }
}

QString XmlElement::text() const
{
    QString all;
    appendText(&all);
    return all;
}

void XmlElement::appendText(QString* all) const
{
    *all += m_text;
    for (const XmlElement& child : m_children) {
        child.appendText(all);
        *all += child.m_after;
    }
}
