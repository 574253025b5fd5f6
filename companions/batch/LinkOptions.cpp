// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/LinkCommand.h"

#include "companions/batch/MapArguments.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace {

Parsed<LinkOptions> wrong(const QString& error)
{
    return {std::nullopt, error};
}

} // namespace

Parsed<LinkOptions> parseLinkOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    const auto option = [&](const char* name, const char* value) {
        const QCommandLineOption added(QString::fromLatin1(name), QString(), QString::fromLatin1(value));
        parser.addOption(added);
        return added;
    };
    const QCommandLineOption work = option("work", "DIR");
    const QCommandLineOption out = option("out", "TOUR.roa");
    const QCommandLineOption report = option("report", "R.json");
    const QCommandLineOption entry = option("entry", "N");
    const QCommandLineOption pairs = option("pairs", "PAIRS.csv");
    const MapArguments map;
    map.addTo(parser);

    if (!parser.parse(QStringList{QStringLiteral("link")} + arguments)) return wrong(parser.errorText());

    LinkOptions options;
    for (const QString& path : parser.positionalArguments())
        options.panoramas << QFileInfo(path).absoluteFilePath();
    if (options.panoramas.isEmpty()) return wrong(QStringLiteral("no panorama file given"));
    if (!parser.isSet(work)) return wrong(QStringLiteral("--work DIR is missing"));
    if (!parser.isSet(out)) return wrong(QStringLiteral("--out TOUR.roa is missing"));
    options.work = QFileInfo(parser.value(work)).absoluteFilePath();
    options.out = QFileInfo(parser.value(out)).absoluteFilePath();
    if (parser.isSet(report)) options.report = QFileInfo(parser.value(report)).absoluteFilePath();
    if (parser.isSet(pairs)) options.pairs = QFileInfo(parser.value(pairs)).absoluteFilePath();
    if (parser.isSet(entry)) {
        bool isNumber = false;
        options.entry = parser.value(entry).toInt(&isNumber);
        if (!isNumber || options.entry < 0) return wrong(QStringLiteral("--entry wants a number from 0"));
    }
    const Parsed<MapOptions> mapOptions = map.read(parser);
    if (!mapOptions.error.isEmpty()) return wrong(mapOptions.error);
    options.map = mapOptions.options;
    return {options, QString()};
}
