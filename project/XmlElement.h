// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// A parsed XML document as a tree, with bounds that no description of a tour comes near.

#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

/// One element. Whitespace counts as text, so that a text of blanks alone is read back as it was written.
class XmlElement
{
public:
    /// Parses a whole document in UTF-8, with or without byte-order mark. Refused beside what is not
    /// well-formed: a document type (it could declare entities that expand without end), elements deeper than
    /// `kDeepest`, tags with more than `kMostAttributes` attributes, and more than `kLongest` bytes.
    /// @param error  the reason when false is returned; the element is untouched then
    [[nodiscard]] static bool parse(const QByteArray& document, XmlElement* root, QString* error);

    static constexpr int kDeepest = 16;
    static constexpr int kMostAttributes = 64;
    static constexpr int kLongest = 64 << 20;

    const QString& name() const { return m_name; }

    QString attribute(const char* name, const char* ifMissing) const;

    /// First child of this name; nullptr without one. Lives as long as this element.
    const XmlElement* child(const char* name) const;

    /// All elements of this name below this one at any depth, in document order.
    std::vector<const XmlElement*> descendants(const char* name) const;

    /// All text inside the element, that of its descendants included, in document order.
    QString text() const;

private:
    void collect(QLatin1String name, std::vector<const XmlElement*>* found) const;
    void appendText(QString* all) const;

    QString m_name;
    std::vector<std::pair<QString, QString>> m_attributes;
    std::vector<XmlElement> m_children;
    QString m_text;  ///< before the first child
    QString m_after; ///< between this element's end and its next sibling
};
