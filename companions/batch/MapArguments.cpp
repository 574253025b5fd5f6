// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/batch/MapArguments.h"

namespace {

template <class Value>
struct Word
{
    QLatin1String word;
    Value value;
};

constexpr Word<MapOptions::Mode> kModes[] = {{QLatin1String("2d"), MapOptions::Plan2D},
                                             {QLatin1String("3d"), MapOptions::Cloud3D}};
constexpr Word<MapOptions::Scene> kScenes[] = {{QLatin1String("indoor"), MapOptions::Indoor},
                                               {QLatin1String("outdoor"), MapOptions::Outdoor}};
constexpr Word<MapOptions::Density> kDensities[] = {{QLatin1String("high"), MapOptions::High},
                                                    {QLatin1String("mid"), MapOptions::Mid},
                                                    {QLatin1String("low"), MapOptions::Low}};

QCommandLineOption option(const char* name, const char* value = "")
{
    return QCommandLineOption(QString::fromLatin1(name), QString(), QString::fromLatin1(value));
}

/// @return what is wrong, or empty; an option that is not given leaves `*value`
template <class Value, std::size_t count>
QString readWord(const QCommandLineParser& parser, const QCommandLineOption& given,
                 const Word<Value> (&words)[count], Value* value)
{
    if (!parser.isSet(given)) return QString();
    QStringList known;
    for (const Word<Value>& word : words) {
        if (parser.value(given) == word.word) {
            *value = word.value;
            return QString();
        }
        known << word.word;
    }
    return QStringLiteral("--%1 wants %2")
        .arg(given.names().constFirst(), known.join(QStringLiteral(" or ")));
}

} // namespace

MapArguments::MapArguments()
    : m_map(option("map", "2d|3d"))
    , m_scene(option("scene", "indoor|outdoor"))
    , m_density(option("density", "high|mid|low"))
    , m_pts(option("pts"))
    , m_bin(option("bin"))
{}

void MapArguments::addTo(QCommandLineParser& parser) const
{
    parser.addOptions({m_map, m_scene, m_density, m_pts, m_bin});
}

Parsed<MapOptions> MapArguments::read(const QCommandLineParser& parser) const
{
    if (!parser.isSet(m_map)) {
        for (const QCommandLineOption* other : {&m_scene, &m_density, &m_pts, &m_bin})
            if (parser.isSet(*other))
                return {std::nullopt,
                        QStringLiteral("--%1 goes with --map").arg(other->names().constFirst())};
        return {};
    }
    MapOptions options;
    QString problem = readWord(parser, m_map, kModes, &options.mode);
    if (problem.isEmpty()) problem = readWord(parser, m_scene, kScenes, &options.scene);
    if (problem.isEmpty()) problem = readWord(parser, m_density, kDensities, &options.density);
    if (!problem.isEmpty()) return {std::nullopt, problem};
    options.fullCloud = parser.isSet(m_pts);
    options.binaryCloud = parser.isSet(m_bin);
    return {options, QString()};
}
