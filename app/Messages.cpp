// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "app/Messages.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace {

struct Message
{
    QMessageBox::Icon kind;
    const char* title;
    const char* text; ///< may hold %1
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton preset = QMessageBox::Ok;
};

constexpr QMessageBox::StandardButtons kYesNo = QMessageBox::Yes | QMessageBox::No;
constexpr QMessageBox::StandardButtons kYesNoCancel = kYesNo | QMessageBox::Cancel;

// clang-format off
constexpr Message kSaveBeforeNew = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Create Panorama Roaming"),
    QT_TRANSLATE_NOOP("Tourwright", "Whether to save the current roaming file?"), kYesNoCancel, QMessageBox::Yes};
constexpr Message kSaveBeforeOpen = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Open Panorama Roaming"),
    QT_TRANSLATE_NOOP("Tourwright", "Whether to save the current roaming file?"), kYesNoCancel, QMessageBox::Yes};
constexpr Message kSaveBeforeExit = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Exit"),
    QT_TRANSLATE_NOOP("Tourwright", "Whether to save the current roaming file?"), kYesNoCancel, QMessageBox::Yes};
constexpr Message kOverwrite = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Save As"),
    QT_TRANSLATE_NOOP("Tourwright", "The file already exists. Is it overwritten?"), kYesNo, QMessageBox::No};
constexpr Message kDroppedWithoutLidar = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Add Panorama File"),
    QT_TRANSLATE_NOOP("Tourwright", "All panoramas must either all contain radar data or none of them. "
         "Panoramas without radar data are automatically deleted!")};
constexpr Message kDroppedWithLidar = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Add Panorama File"),
    QT_TRANSLATE_NOOP("Tourwright", "All panoramas must either all contain radar data or none of them. "
         "Panoramas with radar data are automatically deleted!")};
constexpr Message kSamePanorama = {
    QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Add Panorama Link"),
    QT_TRANSLATE_NOOP("Tourwright", "The selected panoramas cannot be the same!")};
constexpr Message kLinkExists = {
    QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Add Panorama Link"),
    QT_TRANSLATE_NOOP("Tourwright", "Have a panoramic link with the same name!")};
constexpr Message kNothingToPreview = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Preview Panorama Roaming"),
    QT_TRANSLATE_NOOP("Tourwright", "Please add panoramas first!")};
constexpr Message kNothingToUpload = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload Panorama Roaming"),
    QT_TRANSLATE_NOOP("Tourwright", "Please add panoramas first!")};
constexpr Message kInvalidEmail = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Invalid Email!")};
constexpr Message kInvalidPassword = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Invalid Password!")};
constexpr Message kInvalidAlbumName = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Invalid Album Name!")};
constexpr Message kServiceFailed = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Error accessing %1: ")};
constexpr Message kLoginIncomplete = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Error accessing %1")};
constexpr Message kWrongPassword = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Incorrect password! You can retry ")};
constexpr Message kWrongEmail = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Incorrect email")};
constexpr Message kStorageFull = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Insufficient cloud storage")};
constexpr Message kAlbumRefused = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Error when create album")};
constexpr Message kWrongModelName = {
    QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Error model file name: ")};
constexpr Message kWrongPhotoName = {
    QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Error photo file name: ")};
constexpr Message kUploadCompleted = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Upload File"),
    QT_TRANSLATE_NOOP("Tourwright", "Uploading completed!")};
constexpr const char* kTriesToday = QT_TRANSLATE_NOOP("Tourwright", " times today");
constexpr Message kNotConnected = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Create Map"),
    QT_TRANSLATE_NOOP("Tourwright", "Some panoramas are not connected, do you want to continue anyway?"), kYesNo, QMessageBox::No};
constexpr Message kDeletePoints = {
    QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Delete Points in Point Cloud"),
    QT_TRANSLATE_NOOP("Tourwright", "The selected points in the point cloud will be deleted. Do you want to continue?"),
    kYesNo, QMessageBox::No};
constexpr Message kLibraryMissing = {
    QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Panorama Linking"),
    QT_TRANSLATE_NOOP("Tourwright", "Panoramas cannot be linked.")};
constexpr Message kFolderInUse = {
    QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Start"),
    QT_TRANSLATE_NOOP("Tourwright", "The folder %1 is in use by another running instance of this program.")};

// Messages about files put the path between two pieces, whatever the language.
constexpr const char* kFile = QT_TRANSLATE_NOOP("Tourwright", "File ");
constexpr Message kSaveFailed = {QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Save File"), QT_TRANSLATE_NOOP("Tourwright", " save failed!")};
constexpr Message kOpenFailed = {QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Open File"), QT_TRANSLATE_NOOP("Tourwright", " open failed!")};
constexpr Message kUploadOpenFailed = {QMessageBox::Warning, QT_TRANSLATE_NOOP("Tourwright", "Upload File"), QT_TRANSLATE_NOOP("Tourwright", " open failed!")};
constexpr Message kFileEmpty = {QMessageBox::Information, QT_TRANSLATE_NOOP("Tourwright", "Open File"), QT_TRANSLATE_NOOP("Tourwright", " is empty!")};
// clang-format on

QString translated(const char* words)
{
    return QCoreApplication::translate("Tourwright", words);
}

QMessageBox::StandardButton show(QWidget* parent, const Message& message, const QString& text,
                                 const QString& reason = {})
{
    QMessageBox box(message.kind, translated(message.title), text, message.buttons, parent);
    box.setDefaultButton(message.preset);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(reason);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

QMessageBox::StandardButton show(QWidget* parent, const Message& message)
{
    return show(parent, message, translated(message.text));
}

messages::Answer ask(QWidget* parent, const Message& message)
{
    switch (show(parent, message)) {
    case QMessageBox::Yes:
        return messages::Answer::Yes;
    case QMessageBox::No:
        return messages::Answer::No;
    default:
        return messages::Answer::Cancel;
    }
}

void showFile(QWidget* parent, const Message& message, const QString& path, const QString& reason)
{
    show(parent, message, translated(kFile) + path + translated(message.text), reason);
}

} // namespace

namespace messages {

Answer askSaveBeforeNew(QWidget* parent)
{
    return ask(parent, kSaveBeforeNew);
}

Answer askSaveBeforeOpen(QWidget* parent)
{
    return ask(parent, kSaveBeforeOpen);
}

Answer askSaveBeforeExit(QWidget* parent)
{
    return ask(parent, kSaveBeforeExit);
}

bool askOverwrite(QWidget* parent)
{
    return ask(parent, kOverwrite) == Answer::Yes;
}

void saveFailed(QWidget* parent, const QString& path, const QString& reason)
{
    showFile(parent, kSaveFailed, path, reason);
}

void openFailed(QWidget* parent, const QString& path, const QString& reason)
{
    showFile(parent, kOpenFailed, path, reason);
}

void fileEmpty(QWidget* parent, const QString& path)
{
    showFile(parent, kFileEmpty, path, QString());
}

void droppedWithoutLidar(QWidget* parent)
{
    show(parent, kDroppedWithoutLidar);
}

void droppedWithLidar(QWidget* parent)
{
    show(parent, kDroppedWithLidar);
}

void samePanorama(QWidget* parent)
{
    show(parent, kSamePanorama);
}

void linkExists(QWidget* parent)
{
    show(parent, kLinkExists);
}

void nothingToPreview(QWidget* parent)
{
    show(parent, kNothingToPreview);
}

void nothingToUpload(QWidget* parent)
{
    show(parent, kNothingToUpload);
}

void invalidEmail(QWidget* parent)
{
    show(parent, kInvalidEmail);
}

void invalidPassword(QWidget* parent)
{
    show(parent, kInvalidPassword);
}

void invalidAlbumName(QWidget* parent)
{
    show(parent, kInvalidAlbumName);
}

void albumServiceFailed(QWidget* parent, const QString& baseUrl, const QString& reason)
{
    show(parent, kServiceFailed, translated(kServiceFailed.text).arg(baseUrl) + reason);
}

void loginIncomplete(QWidget* parent, const QString& baseUrl)
{
    show(parent, kLoginIncomplete, translated(kLoginIncomplete.text).arg(baseUrl));
}

void wrongPassword(QWidget* parent, const QString& tries)
{
    show(parent, kWrongPassword, translated(kWrongPassword.text) + tries + translated(kTriesToday));
}

void wrongEmail(QWidget* parent)
{
    show(parent, kWrongEmail);
}

void storageFull(QWidget* parent)
{
    show(parent, kStorageFull);
}

void albumRefused(QWidget* parent)
{
    show(parent, kAlbumRefused);
}

void uploadOpenFailed(QWidget* parent, const QString& path)
{
    showFile(parent, kUploadOpenFailed, path, QString());
}

void wrongModelName(QWidget* parent, const QString& name)
{
    show(parent, kWrongModelName, translated(kWrongModelName.text) + name);
}

void wrongPhotoName(QWidget* parent, const QString& name)
{
    show(parent, kWrongPhotoName, translated(kWrongPhotoName.text) + name);
}

void uploadCompleted(QWidget* parent)
{
    show(parent, kUploadCompleted);
}

bool askMapOfUnconnected(QWidget* parent)
{
    return show(parent, kNotConnected) == QMessageBox::Yes;
}

bool confirmPointDeletion(QWidget* parent)
{
    return show(parent, kDeletePoints) == QMessageBox::Yes;
}

void linkingLibraryMissing(QWidget* parent, const QString& problem)
{
    show(parent, kLibraryMissing, translated(kLibraryMissing.text), problem);
}

void folderInUse(QWidget* parent, const QString& folder)
{
    show(parent, kFolderInUse, translated(kFolderInUse.text).arg(folder));
}

} // namespace messages
