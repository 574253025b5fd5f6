// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "project/RoamProject.h"
#include "views/HotSpotOwner.h"
#include "views/PntCloudOwner.h"

#include <QImage>
#include <QMainWindow>

#include <memory>

namespace Ui {
class TourwrightClass;
}
class Linker;
class PanoMatchEditor;
class QLabel;
class QNetworkAccessManager;
class QNetworkReply;
class UploadManager;
struct AutoLinkStep;
namespace publish {
struct UploadAction;
struct UploadRequest;
} // namespace publish
struct MapStep;

/// The main window: owns the one open tour and the linking library, and turns every user command into one of
/// its slots. A slot reads the widgets, calls what does the work and shows the result; the slots of one page
/// of work stand in one source file (ProjectCommands.cpp, PanoramaCommands.cpp, LinkCommands.cpp,
/// MapCommands.cpp, HotspotCommands.cpp, PublishingCommands.cpp).
class Tourwright : public QMainWindow, private HotSpotOwner, private PntCloudOwner
{
    Q_OBJECT

public:
    /// @param linker  the linking library, or what stands for it in a test; never null
    explicit Tourwright(std::unique_ptr<Linker> linker, QWidget* parent = nullptr);
    /// Resets the project, which deletes the scratch files, and releases the linking library.
    ~Tourwright() override;

    /// Start-up hand-over: called once, between construction and showing. Starts the linking library in the
    /// working folder and makes a new project there. All folders end in "/".
    void handOver(const QString& applicationFolder, const QString& workingFolder, const QString& outputFolder,
                  const QString& viewerPath);

    RoamProject& project() { return m_project; }
    Linker& linker() { return *m_linker; }

public Q_SLOTS:
    void NewRoam();
    void OpenRoam();
    void SaveRoam();
    void SaveAsRoam();
    void Quit();
    void Preview();
    void UploadConfigure();
    void Upload();
    void ReplyFinished(QNetworkReply* reply);
    void AddPano();
    void DelPano();
    void SelPano(int currentRow);
    void AutoGenLink();
    void AddLink();
    void DelLink();
    void GenMap();
    void SelLink(int row, int column);
    void AddPhoto();
    void DelPhoto();
    void AddInfo();
    void DelInfo();
    void EditPhotoCaption(const QString& caption);
    void EditPhotoSrc();
    void EditInfoCaption(const QString& caption);
    void EditInfoContent();
    void SelPhoto(int currentRow, int currentColumn, int previousRow, int previousColumn);
    void SelInfo(int currentRow, int currentColumn, int previousRow, int previousColumn);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // HotSpotOwner
    void selectPhotoRow(int row) override;
    void selectInfoRow(int row) override;
    void markModified() override;

    // PntCloudOwner (MapCommands.cpp)
    bool confirmPointDeletion() override;
    void pointCloudRewritten(const QString& path) override;

    // Construction (Tourwright.cpp)
    void loadMarkers();
    void setUpViews();
    void setUpTables();
    void connectCommands();
    template <typename Sender, typename Signal, typename Slot>
    void command(Sender* control, Signal signal, Slot slot);

    // Project
    void reset();
    void emptyViews();
    bool saveTo(const QString& path);
    void readFrom(const QString& path);

    // Panoramas
    void refreshPanoList();
    void applyEnabling();
    PanoNode* selectedPanorama() const;
    static void drawPanorama(const PanoNode& panorama, QImage* image);

    // Links
    void refreshLinkTable();
    void openLinkEditor(const PanoNode& panorama_0, const PanoNode& panorama_1);
    void refreshAfterLinkEdit();
    void showAutoLinkStep(const AutoLinkStep& step);
    void showNewestMatchPicture();
    void clearLinkViews();
    void whitenLinkImages();

    // Map
    void showMapStep(const MapStep& step);
    void showNewestCloud();
    void showPlanPicture(const QString& path);

    // Hotspots
    void refreshPhotoTable();
    void refreshInfoTable();
    void refreshPhotoRow();
    void refreshInfoRow();
    PhotoHotspot* selectedPhoto() const;
    InfoHotspot* selectedInfo() const;
    void showPhoto(const QImage& picture);

    // Upload
    void sendUpload(const publish::UploadRequest& request);
    void performUpload(const publish::UploadAction& action);
    void showUploadNotice(const publish::UploadAction& action);
    void lockForUpload();
    void unlockAfterUpload();

    void showStatus();

    const std::unique_ptr<Ui::TourwrightClass> m_ui;
    const std::unique_ptr<Linker> m_linker;
    RoamProject m_project;
    QImage m_panoramaImage;  ///< 8192 x 4096, 24-bit RGB: the selected panorama
    QImage m_linkImages[2];  ///< 4096 x 2048, 24-bit RGB: the two panoramas of the selected link
    QImage m_matchPicture;   ///< what the picture view shows
    QImage m_planPicture;    ///< what the plan view shows
    QImage m_photoPicture;   ///< picture of the selected photo hotspot, or null
    QImage m_markerPhoto[2]; ///< normal and selected; this and the following in R, G, B, A order
    QImage m_markerInfo[2];  ///< normal and selected
    QImage m_markerLink;
    QImage m_markerBox[2]; ///< box selection off and on
    QImage m_markerDelete;
    QString m_importFolder;                        ///< where the next import dialog starts
    QString m_photoFolder;                         ///< where the next photo dialog starts
    std::unique_ptr<PanoMatchEditor> m_linkEditor; ///< made at the first manual link with lidar
    QLabel* m_status = nullptr;
    QLabel* m_warning = nullptr; ///< in the status bar: what could not be read back once saved
    QNetworkAccessManager* m_network = nullptr;
    UploadManager* m_uploadManager = nullptr; ///< made when it is first asked for; the window's child
    bool m_uploading = false;                 ///< logged in and not at the end yet
};
