// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/XmlElement.h"

#include <gtest/gtest.h>

namespace {

QString parsed(const QByteArray& document)
{
    XmlElement root;
    QString error;
    return XmlElement::parse(document, &root, &error) ? QString() : error;
}

XmlElement tree(const QByteArray& document)
{
    XmlElement root;
    QString error;
    EXPECT_TRUE(XmlElement::parse(document, &root, &error)) << error.toStdString();
    return root;
}

/// "abc" ten times over, nested: `depth` levels of entities, each ten of the one before.
QByteArray entityBomb(const char* mark, int depth)
{
    QByteArray text = QByteArray("<!DOCTYPE a [<!ENTITY ") + mark + "e0 \"abc\">";
    for (int i = 1; i <= depth; ++i) {
        text += QByteArray("<!ENTITY ") + mark + "e" + QByteArray::number(i) + " \"";
        for (int k = 0; k < 10; ++k)
            text += "&e" + QByteArray::number(i - 1) + ";";
        text += "\">";
    }
    return text + "]><a>&e" + QByteArray::number(depth) + ";</a>";
}

TEST(XmlElement, AttributesChildrenAndTextAreReadInDocumentOrder)
{
    const XmlElement root = tree("<r a = \"1\" b='2'>x<c>y<d/>z</c>w<c n='second'/></r>");
    EXPECT_EQ(root.name(), QStringLiteral("r"));
    EXPECT_EQ(root.attribute("a", "-"), QStringLiteral("1"));
    EXPECT_EQ(root.attribute("b", "-"), QStringLiteral("2"));
    EXPECT_EQ(root.attribute("c", "-"), QStringLiteral("-"));
    EXPECT_EQ(root.text(), QStringLiteral("xyzw"));
    ASSERT_NE(root.child("c"), nullptr);
    EXPECT_EQ(root.child("c")->text(), QStringLiteral("yz"));
    EXPECT_EQ(root.child("d"), nullptr);
    EXPECT_EQ(root.descendants("d").size(), 1u);
    ASSERT_EQ(root.descendants("c").size(), 2u);
    EXPECT_EQ(root.descendants("c")[1]->attribute("n", ""), QStringLiteral("second"));
}

TEST(XmlElement, BlanksAloneAreText)
{
    EXPECT_EQ(tree("<r>  \n </r>").text(), QStringLiteral("  \n "));
}

TEST(XmlElement, EntitiesAndCharacterReferencesAreResolved)
{
    const XmlElement root = tree("<r a=\"&quot;&amp;&#65;\">&lt;&gt;&#x4E2D;<![CDATA[<&>]]></r>");
    EXPECT_EQ(root.attribute("a", ""), QStringLiteral("\"&A"));
    EXPECT_EQ(root.text(), QStringLiteral("<>中<&>"));
}

TEST(XmlElement, WhatIsNotWellFormedIsRefusedWithItsPlace)
{
    for (const char* document :
         {"", " \r\n", "<a>", "<a/><b/>", "<a/>x", "<a b=\"x\"y\"/>", "<a b=\"x<y\"/>", "<a b=\"x & y\"/>",
          "<a>x < y</a>", "<a>&unknown;</a>", "<a b=\"1\" b=\"2\"/>", "<a>\x01</a>", "<a></b>"})
        EXPECT_TRUE(parsed(document).contains(QLatin1String("line "))) << document;
}

TEST(XmlElement, BytesThatAreNotUtf8AreRefused)
{
    EXPECT_EQ(parsed("<a b=\"\xFF\"/>"), QStringLiteral("it is not UTF-8"));
    EXPECT_EQ(parsed("<a/>\xE4\xB8"), QStringLiteral("it is not UTF-8"));
    EXPECT_EQ(parsed("\xEF\xBB\xBF<a/>"), QString());
}

TEST(XmlElement, EntityBombsAreRefusedAtOnce)
{
    EXPECT_EQ(parsed(entityBomb("", 40)), QStringLiteral("it declares a document type"));
    EXPECT_EQ(parsed(entityBomb("% ", 40)), QStringLiteral("it declares a document type"));
    // One entity of some length, used often, grows as well.
    QByteArray often = "<!DOCTYPE a [<!ENTITY e \"" + QByteArray(4000, 'x') + "\">]><a>";
    for (int i = 0; i < 100000; ++i)
        often += "&e;";
    EXPECT_EQ(parsed(often + "</a>"), QStringLiteral("it declares a document type"));
}

TEST(XmlElement, ExternalEntitiesAreNotFollowed)
{
    EXPECT_EQ(parsed("<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>"),
              QStringLiteral("it declares a document type"));
}

TEST(XmlElement, DepthIsBounded)
{
    const auto nested = [](int depth) {
        return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
    };
    EXPECT_EQ(parsed(nested(XmlElement::kDeepest)), QString());
    EXPECT_TRUE(parsed(nested(XmlElement::kDeepest + 1)).contains(QLatin1String("too deep")));
    EXPECT_TRUE(parsed(QByteArray("<a>").repeated(1000000)).contains(QLatin1String("too deep")));
}

TEST(XmlElement, AttributesOfATagAreBounded)
{
    const auto attributes = [](int count) {
        QByteArray tag = "<a";
        for (int i = 0; i < count; ++i)
            tag += " a" + QByteArray::number(i) + "='>'";
        return tag + "/>";
    };
    EXPECT_EQ(parsed(attributes(XmlElement::kMostAttributes)), QString());
    EXPECT_EQ(parsed(attributes(XmlElement::kMostAttributes + 1)),
              QStringLiteral("an element has too many attributes"));
    // Quotation marks in text and comments are none of a tag.
    const QByteArray marks = QByteArray("a=\"b\" ").repeated(500);
    EXPECT_EQ(parsed("<!--<a " + marks + "--><a>" + marks + "<![CDATA[<a " + marks + "]]></a>"), QString());
}

TEST(XmlElement, LengthIsBounded)
{
    EXPECT_EQ(parsed("<a>" + QByteArray(XmlElement::kLongest, 'x') + "</a>"),
              QStringLiteral("it is too long"));
}

TEST(XmlElement, AFailedParseLeavesTheElementAsItWas)
{
    XmlElement root = tree("<kept/>");
    QString error;
    EXPECT_FALSE(XmlElement::parse("<a>", &root, &error));
    EXPECT_EQ(root.name(), QStringLiteral("kept"));
}

} // namespace
