// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/ChoosePhoto.h"

#include "project/PhotoPicture.h"
#include "project/RecordName.h"

#include <QFile>
#include <QImageWriter>
#include <QSaveFile>

namespace {

constexpr int kDigits = 8;
constexpr int kJpegQuality = 90;

// The names follow the toolkit's classic generator, as do those in tours that exist.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
void seedDigits(QTime now)
{
    qsrand(static_cast<uint>(QTime(0, 0).secsTo(now)));
}

QString drawDigits()
{
    QString digits;
    for (int i = 0; i < kDigits; ++i)
        digits += QString::number(qrand() % 10);
    return digits;
}
QT_WARNING_POP

bool writeScaled(const QImage& picture, const QString& destination)
{
    QSaveFile file(destination);
    if (!file.open(QIODevice::WriteOnly)) return false;
    QImageWriter writer(&file, "jpg");
    writer.setQuality(kJpegQuality);
    // Flushed first: what is still buffered when a QSaveFile commits may fail unseen.
    return writer.write(picture) && file.flush() && file.commit();
}

bool copyUnchanged(const QString& chosen, const QString& destination)
{
    if (!QFile::copy(chosen, destination)) return false;
    // A photo from a write-protected card would leave a copy that no reset can delete on some systems.
    QFile::setPermissions(destination, QFile::permissions(destination) | QFile::ReadOwner |
                                           QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
    return true;
}

} // namespace

QString photoCopyPath(const QString& workingFolder, const PanoNode& panorama, const QString& chosen,
                      QTime now)
{
    if (!chosen.contains(QLatin1Char('/'))) return {};
    const QString name = QString::fromLatin1(panorama.name());
    seedDigits(now);
    // Two photos chosen within one second would otherwise share a name.
    for (;;) {
        const QString file = name + QLatin1Char('-') + drawDigits() + QStringLiteral(".jpg");
        if (!tour::isBareName(file)) return {};
        if (!QFile::exists(workingFolder + file)) return workingFolder + file;
    }
}

ChosenPhoto copyPhoto(const QString& chosen, const QString& destination)
{
    const QSize size = statedPhotoSize(chosen);
    if (!size.isValid()) return {PhotoOutcome::NotAPicture, {}, {}};

    if (exceedsPhotoSide(size)) {
        const QImage picture = loadPhoto(chosen);
        if (picture.isNull()) return {PhotoOutcome::NotAPicture, {}, {}};
        if (destination.isEmpty() || !writeScaled(picture, destination))
            return {PhotoOutcome::NotCopied, {}, {}};
    } else if (destination.isEmpty() || !copyUnchanged(chosen, destination)) {
        return {PhotoOutcome::NotCopied, {}, {}};
    }

    const QImage copy = loadPhoto(destination);
    if (copy.isNull()) {
        QFile::remove(destination);
        return {PhotoOutcome::NotAPicture, {}, {}};
    }
    return {PhotoOutcome::Chosen, destination, copy};
}

ChosenPhoto choosePhoto(const PanoNode& panorama, PhotoHotspot& photo, const QString& chosen,
                        const QString& workingFolder)
{
    const QString destination = photoCopyPath(workingFolder, panorama, chosen, QTime::currentTime());
    const ChosenPhoto result = copyPhoto(chosen, destination);
    if (result.outcome == PhotoOutcome::Chosen) {
        photo.photo_path = result.path;
        photo.photo_width = result.picture.width();
        photo.photo_height = result.picture.height();
    }
    return result;
}
