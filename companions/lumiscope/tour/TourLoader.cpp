// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/tour/TourLoader.h"

#include "linking/NexomapLinker.h"
#include "linking/TourAssembly.h"
#include "project/TourReader.h"
#include "project/UnpackFolder.h"
#include "project/XmlElement.h"

#include <QFileInfo>
#include <QSet>

#include <functional>

namespace lumiscope {

namespace {

/// Which panorama records a pass unpacks, by their place among the panorama records: the writer puts them
/// in the order of the panoramas, and where another writer did not, only the order of unpacking suffers.
using Wanted = std::function<bool(int)>;

} // namespace

/// One run over the file; its parts are the passes over the records.
class TourUnpacking
{
public:
    TourUnpacking(TourLoader& loader, const QString& path, const QString& folder, const QString& application)
        : m_loader(loader)
        , m_path(path)
        , m_application(application)
        , m_folder(folder, path)
    {}

    /// @return why the tour cannot be shown, or empty
    QString run()
    {
        QString problem = readHeads();
        if (!problem.isEmpty()) return problem;
        if (m_tour.stations.empty()) return TourLoader::tr("The tour %1 has no panoramas.").arg(shown());
        Q_EMIT m_loader.described(m_tour);

        QSet<int> near{m_tour.entry};
        const auto entry = [&](int row) { return row == m_tour.entry; };
        const auto neighbours = [&](int row) { return near.contains(row); };
        for (const Neighbour& neighbour : m_tour.stations[static_cast<std::size_t>(m_tour.entry)].neighbours)
            near.insert(neighbour.station);
        problem = unpackPanoramas(entry);
        if (problem.isEmpty()) m_loader.pause();
        if (problem.isEmpty()) problem = unpackPhotosAndPlans();
        if (problem.isEmpty()) problem = unpackPanoramas(neighbours);
        if (problem.isEmpty()) problem = unpackPanoramas([](int) { return true; });
        return problem;
    }

private:
    QString shown() const { return QFileInfo(m_path).fileName(); }

    /// Calls `use` for each record, until it says why not to go on.
    QString forEachRecord(const std::function<QString(TourReader&)>& use)
    {
        TourReader reader(m_path);
        switch (reader.start()) {
        case TourReader::Start::Records:
            break;
        case TourReader::Start::Empty:
            return TourLoader::tr("The tour %1 is empty.").arg(shown());
        case TourReader::Start::CannotOpen:
            return QFileInfo::exists(m_path)
                       ? TourLoader::tr("The tour %1 cannot be opened: %2").arg(shown(), reader.error())
                       : TourLoader::tr("There is no file %1.").arg(m_path);
        case TourReader::Start::NotATour:
            return TourLoader::tr("The file %1 is not a tour.").arg(shown());
        }
        TourReader::Step step = reader.next();
        for (; step == TourReader::Step::Record; step = reader.next()) {
            if (m_loader.isInterruptionRequested()) return QString();
            const QString problem = use(reader);
            if (!problem.isEmpty()) return problem;
        }
        if (step == TourReader::Step::CutShort)
            return TourLoader::tr("The tour %1 is damaged: its end is missing.").arg(shown());
        return QString();
    }

    /// Reads the description, and the heads of all other records: nothing is shown of a file cut short.
    QString readHeads()
    {
        return forEachRecord([this](TourReader& reader) {
            if (reader.kind() != tour::KindXml) return QString();
            tourxml::Description description;
            QString error;
            if (!tourxml::read(reader.data(XmlElement::kLongest + 1), &description, &error))
                return TourLoader::tr("The tour %1 cannot be shown: %2.").arg(shown(), error);
            const tourxml::EntryView view = description.entry_view;
            m_assembly.add(std::move(description));
            m_tour = walkTour(m_project, view);
            return QString();
        });
    }

    /// @return the path, or empty with `problem` set
    QString unpack(TourReader& reader, QString* problem)
    {
        QString path, error;
        if (m_folder.unpack(reader, &path, &error)) return path;
        *problem = TourLoader::tr("The tour %1 cannot be unpacked: %2").arg(shown(), error);
        return QString();
    }

    QString unpackPanoramas(const Wanted& wanted)
    {
        int row = -1;
        return forEachRecord([&](TourReader& reader) {
            if (reader.kind() != tour::KindPanorama) return QString();
            ++row;
            if (m_unpacked.contains(row) || !wanted(row)) return QString();
            m_unpacked.insert(row);
            QString problem;
            const QString path = unpack(reader, &problem);
            if (!path.isEmpty()) tell(reader.name(), path);
            return problem;
        });
    }

    void tell(const QString& name, const QString& path)
    {
        m_assembly.addPanorama(name, path);
        for (std::size_t i = 0; i < m_project.panoramas.size(); ++i) {
            const PanoNode& node = *m_project.panoramas[i];
            if (node.file_path != path || m_told.contains(int(i))) continue;
            m_told.insert(int(i));
            if (int(i) == m_tour.entry) Q_EMIT m_loader.entryReady(int(i), path);
            Q_EMIT m_loader.panoramaReady(int(i), path, node.base_name);
        }
    }

    QString unpackPhotosAndPlans()
    {
        const QString problem = forEachRecord([this](TourReader& reader) {
            QString problem;
            if (reader.kind() == tour::KindPhoto) {
                const QString path = unpack(reader, &problem);
                if (!path.isEmpty()) m_assembly.addPhoto(reader.name(), path);
            } else if (reader.kind() == tour::KindPlan) {
                const QString path = unpack(reader, &problem);
                if (!path.isEmpty()) tellMap(reader.name(), path);
            }
            return problem;
        });
        for (std::size_t i = 0; i < m_project.panoramas.size(); ++i) {
            const QList<PhotoHotspot>& photos = m_project.panoramas[i]->photos;
            for (int k = 0; k < photos.size(); ++k)
                if (photos[k].photo_path.contains(QLatin1Char('/')))
                    Q_EMIT m_loader.photoReady(int(i), k, photos[k].photo_path);
        }
        return problem;
    }

    void tellMap(const QString& name, const QString& path)
    {
        if (!path.endsWith(QLatin1String(".cld")))
            return void(Q_EMIT m_loader.mapReady(planPicture(name, path)));
        NexomapLinker(m_application).decompressCloud(path);
        const QString cloud = path.chopped(4) + QStringLiteral(".tmp");
        Q_EMIT m_loader.mapReady(cloudPicture(name, cloud));
        QFile::remove(cloud);
    }

    TourLoader& m_loader;
    QString m_path;
    QString m_application;
    UnpackFolder m_folder;
    RoamProject m_project;
    TourAssembly m_assembly{m_project};
    WalkTour m_tour;
    QSet<int> m_unpacked; ///< places among the panorama records
    QSet<int> m_told;     ///< stations
};

TourLoader::TourLoader(QString path, QString folder, QString application, QObject* parent)
    : QThread(parent)
    , m_path(std::move(path))
    , m_folder(std::move(folder))
    , m_application(std::move(application))
{
    qRegisterMetaType<WalkTour>();
    qRegisterMetaType<MapPicture>();
}

TourLoader::~TourLoader()
{
    requestInterruption();
    goOn();
    wait();
}

void TourLoader::pause()
{
    constexpr int kLongest_ms = 1000;
    if (m_pauses) m_seen.tryAcquire(1, kLongest_ms);
}

void TourLoader::run()
{
    const QString problem = TourUnpacking(*this, m_path, m_folder, m_application).run();
    if (!problem.isEmpty()) Q_EMIT failed(problem);
}

} // namespace lumiscope
