// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/lumiscope/window/Style.h"

#include <QLabel>

namespace lumiscope {

QString buttonStyle()
{
    return QStringLiteral("QToolButton { color: white; background: rgba(16, 20, 26, 170); border: none;"
                          " border-radius: 6px; font-size: 18px; }"
                          "QToolButton:hover { background: rgba(43, 140, 255, 220); }");
}

QLabel* plainLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(QStringLiteral("color: white;"));
    return label;
}

QLabel* groundedLabel(QWidget* parent)
{
    QLabel* label = plainLabel(QString(), parent);
    label->setStyleSheet(QStringLiteral(
        "color: white; background: rgba(16, 20, 26, 190); border-radius: 6px; padding: 5px 9px;"));
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    label->hide();
    return label;
}

} // namespace lumiscope
