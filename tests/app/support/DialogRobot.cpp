// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/app/support/DialogRobot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

QMessageBox::StandardButton defaultButton(const QMessageBox& box)
{
    for (QAbstractButton* button : box.buttons())
        if (auto* push = qobject_cast<QPushButton*>(button); push && push->isDefault())
            return box.standardButton(button);
    return QMessageBox::NoButton;
}

} // namespace

DialogRobot::DialogRobot(QWidget* window)
    : m_window(window)
{
    connect(&m_timer, &QTimer::timeout, this, &DialogRobot::look);
    m_timer.start(5);
}

DialogRobot::~DialogRobot()
{
    EXPECT_TRUE(done()) << "a dialog was expected that never came";
}

void DialogRobot::look()
{
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible()) return;
    if (auto* box = qobject_cast<QMessageBox*>(dialog)) answerBox(box);
    if (auto* files = qobject_cast<QFileDialog*>(dialog)) answerFileDialog(files);
}

void DialogRobot::answerBox(QMessageBox* box)
{
    boxes.push_back({box->icon(), box->windowTitle(), box->text(), box->standardButtons(),
                     defaultButton(*box), box->parentWidget() == m_window});
    const bool expected =
        !m_answers.empty() && std::holds_alternative<QMessageBox::StandardButton>(m_answers.front());
    EXPECT_TRUE(expected) << "unexpected box: " << box->text().toStdString();
    if (!expected) return box->reject();
    QAbstractButton* button = box->button(std::get<QMessageBox::StandardButton>(m_answers.front()));
    m_answers.pop_front();
    EXPECT_NE(button, nullptr) << "the box lacks the button to press: " << box->text().toStdString();
    if (!button) return box->reject();
    QTest::mouseClick(button, Qt::LeftButton);
}

void DialogRobot::answerFileDialog(QFileDialog* dialog)
{
    fileDialogs.push_back({dialog->windowTitle(), dialog->directory().absolutePath() + QLatin1Char('/'),
                           dialog->nameFilters(), dialog->acceptMode(), dialog->fileMode()});
    const bool expected = !m_answers.empty() && std::holds_alternative<QStringList>(m_answers.front());
    EXPECT_TRUE(expected) << "unexpected file dialog: " << dialog->windowTitle().toStdString();
    if (!expected) return dialog->reject();
    const QStringList files = std::get<QStringList>(m_answers.front());
    m_answers.pop_front();
    if (files.isEmpty()) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->setText(files.size() == 1
                      ? files.first()
                      : QLatin1Char('"') + files.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
    QTest::keyClick(name, Qt::Key_Return);
}
