// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// The viewer's one window: brings loading, view, map and panels together.

#pragma once

#include "companions/lumiscope/pictures/PanoramaLoader.h"
#include "companions/lumiscope/tour/MapPicture.h"
#include "companions/lumiscope/tour/ScratchFolder.h"
#include "companions/lumiscope/tour/TourLoader.h"
#include "companions/lumiscope/tour/WalkTour.h"

#include <QHash>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <set>

class QLabel;
class QToolButton;

namespace lumiscope {

class MapPanel;
class PhotoPanel;
class TextPanel;
class WalkView;

class ViewerWindow : public QWidget
{
    Q_OBJECT

public:
    /// @param application  folder of the program, ends in "/"
    explicit ViewerWindow(QString application, QWidget* parent = nullptr);
    /// Waits for what is being unpacked or assembled, then removes the scratch folder.
    ~ViewerWindow() override;

    /// Shows a tour; once in a window's life.
    void open(const QString& path);
    /// Shows a sentence instead of a tour.
    void showMessage(const QString& message);

    const WalkTour& tour() const { return m_tour; }

    /// Goes to a station as soon as its picture is there; until then the present one stays.
    void goTo(int station);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildControls();
    QToolButton* button(const char* name, const QString& text, const QString& tip);
    void connectView();
    void connectLoading();
    void layOut();

    void showTour(const WalkTour& tour);
    void showControls();
    void takePanorama(int station, const QString& path, const QString& name);
    void takePicture(int station, int width, const QImage& picture);
    void endOfTour();
    void fail(const QString& message);

    bool cannotShow(int station) const;
    void arrive(int station);
    void seeFrame(int station, int width);
    void orderPictures();
    void showPlace();
    void showSheet();
    void turnMap();
    void hover(const QString& text, QPoint at);
    void openPhoto(int photo);
    void showPhoto(const QString& path);
    void openInfo(int info);
    void foldMap();
    void toggleFullScreen();

    QString m_application;
    QString m_tourName;
    WalkTour m_tour;
    std::pair<int, int> m_seen{-1, 0};      ///< station and width of the last frame
    int m_destination = -1;                 ///< where a walk waits to go
    bool m_complete = false;                ///< everything of the tour is unpacked
    std::set<std::pair<int, int>> m_broken; ///< station and width of pictures that cannot be had
    QHash<QString, MapPicture> m_maps;      ///< by plan
    QTimer m_patience;                      ///< until a visitor is told of waiting
    bool m_folded = false;
    quint64 m_photoTicket = 0;                  ///< of the photo opened last
    std::pair<int, int> m_awaitedPhoto{-1, -1}; ///< station and row of one opened before it is unpacked

    WalkView* m_view;
    MapPanel* m_map;
    PhotoPanel* m_photo;
    TextPanel* m_text;
    QLabel* m_message;
    QLabel* m_place;
    QLabel* m_notice;
    QLabel* m_hover;
    QToolButton* m_mapButton = nullptr;
    std::vector<QToolButton*> m_buttons;

    // Threads end before the folder in which they work goes.
    ScratchFolder m_scratch;
    std::unique_ptr<PanoramaLoader> m_pictures;
    std::unique_ptr<TourLoader> m_loader;
};

} // namespace lumiscope
