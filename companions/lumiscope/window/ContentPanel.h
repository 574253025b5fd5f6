// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// What a hotspot opens: a title and a photo or a text over the dimmed panorama.

#pragma once

#include <QImage>
#include <QWidget>

class PicWidget;
class QLabel;
class QPlainTextEdit;
class QVBoxLayout;

namespace lumiscope {

/// Fills its parent. The close button, Escape and a click beside the content close it. All texts are shown
/// as they are, never as markup.
class ContentPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ContentPanel(QWidget* parent);

    void close();

Q_SIGNALS:
    void closed();

protected:
    void openWith(const QString& title);
    QVBoxLayout* content() const { return m_content; }
    /// Steps of plus and minus.
    virtual void zoom(int) {}

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLabel* m_title;
    QVBoxLayout* m_content;
};

class PhotoPanel : public ContentPanel
{
    Q_OBJECT

public:
    explicit PhotoPanel(QWidget* parent);

    /// Opens without a picture, which follows.
    void open(const QString& title);
    /// @param photo  null when it cannot be shown
    void setPhoto(const QImage& photo);

protected:
    void zoom(int steps) override;

private:
    PicWidget* m_picture;
    QLabel* m_message;
    QImage m_photo;
};

class TextPanel : public ContentPanel
{
    Q_OBJECT

public:
    explicit TextPanel(QWidget* parent);
    void open(const QString& title, const QString& text);

private:
    QPlainTextEdit* m_text;
};

} // namespace lumiscope
