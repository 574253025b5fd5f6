// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Both languages are complete: every text of the sources has a finished translation.

#include "tests/app/support/WindowTest.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTranslator>

namespace {

struct Translations
{
    QMap<QString, QString> finished; ///< context + " | " + source text -> translation
    QStringList unfinished;
};

Translations read(const QString& path)
{
    QFile file(path);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file)) ADD_FAILURE() << path.toStdString();
    Translations translations;
    const QDomNodeList messages = document.elementsByTagName(QStringLiteral("message"));
    for (int i = 0; i < messages.size(); ++i) {
        const QDomElement message = messages.at(i).toElement();
        const QString key = message.parentNode().firstChildElement(QStringLiteral("name")).text() +
                            QStringLiteral(" | ") +
                            message.firstChildElement(QStringLiteral("source")).text();
        const QDomElement translation = message.firstChildElement(QStringLiteral("translation"));
        if (translation.hasAttribute(QStringLiteral("type")) || translation.text().isEmpty())
            translations.unfinished << key;
        else
            translations.finished.insert(key, translation.text());
    }
    return translations;
}

QString translationSource(const char* language)
{
    return QStringLiteral(TW_SOURCE_DIR "/resources/translations/tourwright_") + QLatin1String(language) +
           QStringLiteral(".ts");
}

/// All texts that the sources of the program have today.
QStringList textsOfTheSources()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("now.ts"));
    QStringList arguments{QStringLiteral("-silent"), QStringLiteral("-I"), QStringLiteral(TW_SOURCE_DIR)};
    for (const char* room : {"project", "linking", "views", "publish", "app"}) {
        const QString source = QStringLiteral(TW_SOURCE_DIR "/") + QLatin1String(room);
        if (QFileInfo::exists(source)) arguments << source;
    }
    QProcess lupdate;
    lupdate.setStandardErrorFile(QProcess::nullDevice());
    lupdate.start(QStringLiteral(TW_LUPDATE), arguments << QStringLiteral("-ts") << path);
    EXPECT_TRUE(lupdate.waitForFinished(60000));
    const Translations now = read(path);
    return now.unfinished + now.finished.keys();
}

bool hasChinese(const QString& text)
{
    return text.contains(QRegularExpression(QStringLiteral("\\p{Han}")));
}

class Translation : public testing::TestWithParam<const char*>
{};

TEST_P(Translation, EveryTextOfTheSourcesIsTranslated)
{
    const QStringList texts = textsOfTheSources();
    EXPECT_GT(texts.size(), 70);
    const Translations translations = read(translationSource(GetParam()));
    for (const QString& text : texts)
        EXPECT_TRUE(translations.finished.contains(text)) << text.toStdString();
    EXPECT_TRUE(translations.unfinished.isEmpty())
        << translations.unfinished.join(QLatin1Char('\n')).toStdString();
}

TEST_P(Translation, NothingIsTranslatedThatNoSourceHasAnyMore)
{
    const QStringList texts = textsOfTheSources();
    for (const QString& text : read(translationSource(GetParam())).finished.keys())
        EXPECT_TRUE(texts.contains(text)) << text.toStdString();
}

TEST_P(Translation, PlaceholdersSurvive)
{
    const QMap<QString, QString> finished = read(translationSource(GetParam())).finished;
    for (auto it = finished.begin(); it != finished.end(); ++it)
        for (const char* placeholder : {"%1", "%2", "(*.roa)", "(*.pno)", "(*.jpg)"})
            EXPECT_EQ(it.key().contains(QLatin1String(placeholder)),
                      it.value().contains(QLatin1String(placeholder)))
                << it.key().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Languages, Translation, testing::Values("zh", "en"),
                         [](const auto& info) { return std::string(info.param); });

TEST(TranslationLanguages, TheEnglishOneHasNoChineseInIt)
{
    for (const QString& text : read(translationSource("en")).finished)
        EXPECT_FALSE(hasChinese(text)) << text.toStdString();
}

TEST(TranslationLanguages, TheChineseOneIsChinese)
{
    for (const QString& text : read(translationSource("zh")).finished)
        EXPECT_TRUE(hasChinese(text)) << text.toStdString();
}

class TranslatedWindow : public testing::TestWithParam<const char*>
{
protected:
    TranslatedWindow()
    {
        const QString file =
            QStringLiteral(TW_PROGRAMS "/tourwright_") + QLatin1String(GetParam()) + QStringLiteral(".qm");
        if (!translator.load(file)) ADD_FAILURE() << "no translation " << file.toStdString();
        QCoreApplication::installTranslator(&translator);
    }

    QTranslator translator;
};

TEST_P(TranslatedWindow, EveryTextOfAControlIsOfOneLanguage)
{
    const bool chinese = GetParam() == std::string("zh");
    const Tourwright window(std::make_unique<RecordingLinker>());
    int texts = 0;
    QList<QObject*> objects = window.findChildren<QObject*>();
    for (const QObject* object : objects)
        for (const char* property : {"text", "title", "toolTip", "windowTitle"}) {
            const QString text = object->property(property).toString();
            if (text.isEmpty() ||
                text.contains(QRegularExpression(QStringLiteral("^[\\W\\d]+$"),
                                                 QRegularExpression::UseUnicodePropertiesOption)))
                continue;
            if (object->objectName().isEmpty() || object->objectName().startsWith(QLatin1String("qt_")))
                continue;
            EXPECT_EQ(hasChinese(text), chinese)
                << object->objectName().toStdString() << ": " << text.toStdString();
            ++texts;
        }
    EXPECT_GT(texts, 50);
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslatedWindow, testing::Values("zh", "en"),
                         [](const auto& info) { return std::string(info.param); });

} // namespace
