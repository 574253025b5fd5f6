// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/window/ContentPanel.h"

#include "companions/lumiscope/window/Style.h"
#include "linking/editor/PicWidget.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace lumiscope {

namespace {

constexpr int kBeside = 36;     ///< pixels left around the content
constexpr int kTextWidth = 640; ///< pixels that a text line may take
constexpr int kTextHeight = 420;
constexpr int kWheelStep = 120;

} // namespace

ContentPanel::ContentPanel(QWidget* parent)
    : QWidget(parent)
    , m_title(plainLabel(QString(), this))
    , m_content(new QVBoxLayout)
{
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setWordWrap(true);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    m_title->setFont(font);

    auto* closing = new QToolButton(this);
    closing->setObjectName(QStringLiteral("buttonClose"));
    closing->setText(QStringLiteral(u"\u00D7"));
    closing->setToolTip(tr("Close (Esc)"));
    closing->setStyleSheet(buttonStyle());
    closing->setFixedSize(kButtonSide, kButtonSide);
    closing->setFocusPolicy(Qt::NoFocus);
    connect(closing, &QToolButton::clicked, this, &ContentPanel::close);

    auto* head = new QHBoxLayout;
    head->addWidget(m_title, 1);
    head->addWidget(closing, 0, Qt::AlignTop);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kBeside, kBeside / 2, kBeside, kBeside);
    all->addLayout(head);
    all->addLayout(m_content, 1);
    setFocusPolicy(Qt::StrongFocus);
    hide();
}

void ContentPanel::openWith(const QString& title)
{
    m_title->setText(title);
    setGeometry(parentWidget()->rect());
    show();
    raise();
    setFocus();
}

void ContentPanel::close()
{
    if (!isVisible()) return;
    hide();
    Q_EMIT closed();
}

void ContentPanel::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), QColor(10, 12, 16, 225));
}

void ContentPanel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) close();
}

void ContentPanel::wheelEvent(QWheelEvent* event)
{
    event->accept(); // the view behind stays as it is
}

void ContentPanel::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        return close();
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoom(1);
    case Qt::Key_Minus:
        return zoom(-1);
    case Qt::Key_F11:
        return event->ignore();
    default:
        event->accept(); // nothing goes on behind the panel
    }
}

PhotoPanel::PhotoPanel(QWidget* parent)
    : ContentPanel(parent)
    , m_picture(new PicWidget(this))
    , m_message(plainLabel(QString(), this))
{
    setObjectName(QStringLiteral("photoPanel"));
    m_picture->setObjectName(QStringLiteral("photo"));
    m_message->setObjectName(QStringLiteral("photoMessage"));
    m_message->setAlignment(Qt::AlignCenter);
    content()->addWidget(m_picture, 1);
    content()->addWidget(m_message, 1);
}

void PhotoPanel::open(const QString& title)
{
    m_picture->clear();
    m_picture->hide();
    m_photo = QImage();
    m_message->setText(tr("Loading..."));
    m_message->show();
    openWith(title);
}

void PhotoPanel::setPhoto(const QImage& photo)
{
    m_photo = photo;
    m_message->setVisible(photo.isNull());
    m_picture->setVisible(!photo.isNull());
    if (photo.isNull()) return m_message->setText(tr("The photo cannot be shown."));
    layout()->activate(); // the picture is fitted into the room that it has
    m_picture->setImage(&m_photo, false);
}

void PhotoPanel::zoom(int steps)
{
    const QPointF middle = m_picture->rect().center();
    QWheelEvent wheel(middle, m_picture->mapToGlobal(middle.toPoint()), QPoint(),
                      QPoint(0, steps * kWheelStep), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_picture, &wheel);
}

TextPanel::TextPanel(QWidget* parent)
    : ContentPanel(parent)
    , m_text(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("textPanel"));
    m_text->setObjectName(QStringLiteral("text"));
    m_text->setReadOnly(true);
    m_text->setFocusPolicy(Qt::ClickFocus);
    m_text->setMaximumSize(kTextWidth, kTextHeight);
    content()->addWidget(m_text, 1);
    content()->setAlignment(m_text, Qt::Alignment());
}

void TextPanel::open(const QString& title, const QString& text)
{
    m_text->setPlainText(text);
    openWith(title);
}

} // namespace lumiscope
