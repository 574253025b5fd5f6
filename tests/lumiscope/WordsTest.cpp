// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Both languages are complete: every text of the viewer has a finished translation, and nothing else has.

#include <QDomDocument>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Context and source text, and the finished translation; empty where there is none.
QMap<QString, QString> read(const QString& path)
{
    QFile file(path);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file)) ADD_FAILURE() << path.toStdString();
    QMap<QString, QString> texts;
    const QDomNodeList messages = document.elementsByTagName(QStringLiteral("message"));
    for (int i = 0; i < messages.size(); ++i) {
        const QDomElement message = messages.at(i).toElement();
        const QDomElement translation = message.firstChildElement(QStringLiteral("translation"));
        const bool finished = !translation.hasAttribute(QStringLiteral("type"));
        texts.insert(message.parentNode().firstChildElement(QStringLiteral("name")).text() +
                         QStringLiteral(" | ") + message.firstChildElement(QStringLiteral("source")).text(),
                     finished ? translation.text() : QString());
    }
    return texts;
}

class Words : public testing::TestWithParam<const char*>
{
protected:
    QMap<QString, QString> translated() const
    {
        return read(QStringLiteral(TW_SOURCE_DIR "/companions/lumiscope/translations/lumiscope_%1.ts")
                        .arg(QLatin1String(GetParam())));
    }
};

TEST_P(Words, EveryTextOfTheSourcesIsTranslatedAndNothingElse)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("now.ts"));
    ASSERT_EQ(QProcess::execute(
                  QStringLiteral(TW_LUPDATE),
                  {QStringLiteral("-silent"), QStringLiteral("-I"), QStringLiteral(TW_SOURCE_DIR),
                   QStringLiteral(TW_SOURCE_DIR "/companions/lumiscope"), QStringLiteral("-ts"), path}),
              0);
    const QMap<QString, QString> texts = translated();
    const QStringList now = read(path).keys();
    EXPECT_GT(now.size(), 15);
    EXPECT_EQ(texts.keys(), now);
    for (auto text = texts.begin(); text != texts.end(); ++text)
        EXPECT_FALSE(text.value().isEmpty()) << text.key().toStdString();
}

TEST_P(Words, TheyAreOfOneLanguageAndPlaceholdersSurvive)
{
    const bool chinese = GetParam() == std::string("zh");
    const QMap<QString, QString> texts = translated();
    const QRegularExpression han(QStringLiteral("\\p{Han}"));
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        EXPECT_EQ(text.value().contains(han), chinese) << text.value().toStdString();
        for (const char* placeholder : {"%1", "%2"})
            EXPECT_EQ(text.key().contains(QLatin1String(placeholder)),
                      text.value().contains(QLatin1String(placeholder)))
                << text.key().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, Words, testing::Values("zh", "en"),
                         [](const auto& info) { return std::string(info.param); });

} // namespace
