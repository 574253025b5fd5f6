// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/linking/support/MadeUpTours.h"

#include "linking/MatchFiles.h"
#include "project/PanoIdentity.h"
#include "tests/support/PnoParts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

/// Everything that an attribute carries as it stands.
QString attributeAlphabet()
{
    return QStringLiteral("abcXYZ019 .,;:!?'`´^°~+-*=()[]{}|>#@$%_äéßñ中文漫游ひら") + QChar(0x7F) +
           QChar(0x85) + QChar(0x2028) + QChar(0xE000) + QChar(0xFFFD);
}

QString nameAlphabet()
{
    QString alphabet = attributeAlphabet();
    return alphabet.remove(u']');
}

QString contentAlphabet()
{
    return attributeAlphabet() + QStringLiteral("\"\"<<&&>>\n\t\\/");
}

const pnotest::PnoParts& panoramaParts()
{
    static const pnotest::PnoParts parts = [] {
        pnotest::PnoOptions options;
        options.tiles = [](int, int, int) { return pnotest::Bytes{1, 2, 3, 4}; };
        return pnotest::parts(options);
    }();
    return parts;
}

QByteArray panoramaBytes(const QByteArray& identity)
{
    constexpr int kIdentity = 2 + 6 + 256 + 6 + 32; // magic, capture segment, head and name before it
    static const pnotest::Bytes bytes = panoramaParts().bytes();
    QByteArray file(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
    return file.replace(kIdentity, identity.size(), identity);
}

} // namespace

MadeUpTour::MadeUpTour(unsigned seed, const QString& folder)
    : m_random(seed)
    , m_folder(folder)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    // Every count from none to all forty turns up; most are small.
    const unsigned count = seed % 10 == 0 ? seed / 10 % 41 : upTo(12);
    for (unsigned i = 0; i < count; ++i) {
        PanoNode* node = addPanorama(QString(), fileName(QString()));
        setPose(node);
        addHotspots(node);
    }
    addPlans();
    addLinks();
}

int MadeUpTour::entrySelector()
{
    return static_cast<int>(upTo(static_cast<unsigned>(project.panoramas.size()) + 1)) - 1;
}

PanoNode* MadeUpTour::addPanorama(const QString& subfolder, const QString& baseName)
{
    QByteArray identity;
    for (int i = 0; i < 14; ++i)
        identity += static_cast<char>((chance(4) ? 'a' : 'A') + static_cast<int>(upTo(25)));
    auto node = std::make_unique<PanoNode>();
    node->parameters = panoramaParts().info;
    std::memcpy(node->parameters.identity, identity.constData(), 14);
    node->id = panoIdFromName(node->parameters.identity);
    node->base_name = baseName;
    node->file_path =
        write(m_folder + subfolder + baseName + QStringLiteral(".pno"), panoramaBytes(identity));
    project.panoramas.push_back(std::move(node));
    return project.panoramas.back().get();
}

double MadeUpTour::real()
{
    using Limits = std::numeric_limits<double>;
    static const double kExtremes[] = {0.0,
                                       -0.0,
                                       1e-9,
                                       -1e-9,
                                       0.00000005,
                                       -0.00000005,
                                       0.1 + 0.2,
                                       Limits::max(),
                                       -Limits::max(),
                                       Limits::min(),
                                       Limits::denorm_min(),
                                       1e15 + 0.3,
                                       -123456789.12345678,
                                       3.141592653589793,
                                       Limits::quiet_NaN(),
                                       Limits::infinity(),
                                       -Limits::infinity(),
                                       9007199254740993.0};
    if (chance(2)) return kExtremes[upTo(std::size(kExtremes) - 1)];
    const double mantissa = static_cast<double>(static_cast<qint32>(m_random())) / 4294967296.0;
    return std::ldexp(mantissa, static_cast<int>(upTo(80)) - 30);
}

qint32 MadeUpTour::integer()
{
    if (chance(3)) return chance(2) ? std::numeric_limits<qint32>::min() : std::numeric_limits<qint32>::max();
    return static_cast<qint32>(m_random());
}

QString MadeUpTour::text(const QString& alphabet, unsigned longest)
{
    QString made;
    for (unsigned length = upTo(longest); length > 0; --length)
        made += alphabet[static_cast<int>(upTo(static_cast<unsigned>(alphabet.size()) - 1))];
    if (chance(4)) made += QString::fromUtf8("\xF0\x9F\x8F\xA0");
    return made;
}

/// Numbered, so that no two files of a tour have one name.
QString MadeUpTour::fileName(const QString& ending)
{
    return QString::number(++m_files) + text(nameAlphabet(), 20) + ending;
}

QString MadeUpTour::write(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

void MadeUpTour::setPose(PanoNode* node)
{
    node->lidar = chance(2);
    for (double* value : {&node->position_x, &node->position_y, &node->position_z, &node->vertex_x,
                          &node->vertex_y, &node->direction})
        *value = real();
    node->plan_center_x = integer();
    node->plan_center_y = integer();
}

void MadeUpTour::addHotspots(PanoNode* node)
{
    QString path;
    for (unsigned count = upTo(4); count > 0; --count) {
        PhotoHotspot photo;
        photo.sphere_x = real();
        photo.sphere_y = real();
        photo.caption = text(attributeAlphabet(), 30);
        // Some have no photo, some show the one before.
        if (path.isEmpty() || !chance(4))
            path = write(m_folder + fileName(QStringLiteral(".jpg")), QByteArray::number(m_files));
        if (!chance(5)) photo.photo_path = path;
        node->photos.append(photo);
    }
    for (unsigned count = upTo(4); count > 0; --count) {
        InfoHotspot info;
        info.sphere_x = real();
        info.sphere_y = real();
        info.caption = text(attributeAlphabet(), 30);
        info.content = text(contentAlphabet(), 60);
        if (chance(8)) info.content += QStringLiteral("&amp;lt;&gt;");
        node->infos.append(info);
    }
}

void MadeUpTour::addLinks()
{
    if (project.panoramas.empty()) return;
    const auto any = [&]() -> const PanoNode& {
        return *project.panoramas[upTo(static_cast<unsigned>(project.panoramas.size()) - 1)];
    };
    const bool odd = chance(2);
    QSet<QString> keys;
    for (unsigned count = upTo(2 * static_cast<unsigned>(project.panoramas.size())); count > 0; --count) {
        auto link = std::make_unique<PanoLink>();
        const PanoNode& one = any();
        const PanoNode& other = any();
        std::memcpy(link->name_0, one.parameters.identity, sizeof link->name_0);
        std::memcpy(link->name_1, other.parameters.identity, sizeof link->name_1);
        const QString key = matchKey(one.name(), other.name());
        if (keys.contains(key)) continue;
        keys.insert(key);
        for (double* value : {&link->rot_0, &link->rot_1, &link->tilt_x0, &link->tilt_x1, &link->tilt_y0,
                              &link->icon_y0, &link->icon_y1, &link->spacing, &link->reliability})
            *value = real();
        link->mode = static_cast<qint32>(upTo(2));
        if (odd && chance(5)) link->mode = integer();
        const bool has = odd ? chance(2) : link->mode == LinkMatched;
        const auto file = [&](const char* ending) {
            return write(m_folder + key + QLatin1String(ending), key.toLatin1() + ending);
        };
        if (has) link->match_path_0 = file("_0.dat");
        if (has && !(odd && chance(3))) link->match_path_1 = file("_1.dat");
        project.links.push_back(std::move(link));
    }
}

void MadeUpTour::addPlans()
{
    QString path;
    for (const auto& node : project.panoramas) {
        if (path.isEmpty() || chance(3))
            path = write(m_folder +
                             fileName(chance(2) ? QStringLiteral("-00000000.png") : QStringLiteral(".cld")),
                         "plan");
        if (!chance(4)) node->plan_src = path;
    }
}
