// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Answers modal message boxes and file dialogs while a command waits in them, and remembers what they said.

#pragma once

#include <QFileDialog>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <variant>
#include <vector>

/// What a message box showed.
struct SeenBox
{
    QMessageBox::Icon kind = QMessageBox::NoIcon;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton preset = QMessageBox::NoButton; ///< the default button
    bool modalToWindow = false;                                 ///< its parent is the window under test
};

/// What a file dialog showed.
struct SeenFileDialog
{
    QString title;
    QString folder; ///< where it started
    QStringList filters;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
    QFileDialog::FileMode fileMode = QFileDialog::AnyFile;
};

/// Looks for a modal dialog whenever the event loop runs. Answers are given in the order in which they were
/// put in; a dialog for which there is none is closed and fails the test.
class DialogRobot : public QObject
{
public:
    explicit DialogRobot(QWidget* window);
    ~DialogRobot() override;

    void press(QMessageBox::StandardButton button) { m_answers.push_back(button); }
    /// Chooses these files, full paths; an empty list cancels the dialog.
    void choose(const QStringList& files) { m_answers.push_back(files); }
    void choose(const QString& file) { choose(QStringList{file}); }
    void cancel() { choose(QStringList()); }

    std::vector<SeenBox> boxes;
    std::vector<SeenFileDialog> fileDialogs;
    /// Whether every answer was needed.
    bool done() const { return m_answers.empty(); }

private:
    using Answer = std::variant<QMessageBox::StandardButton, QStringList>;

    void look();
    void answerBox(QMessageBox* box);
    void answerFileDialog(QFileDialog* dialog);

    QWidget* m_window;
    QTimer m_timer;
    std::deque<Answer> m_answers;
};
