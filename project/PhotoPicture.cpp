// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/PhotoPicture.h"

#include <QFileInfo>
#include <QImageReader>

namespace {

// Only the JPEG decoder scales while it reads; all others hold the whole picture first.
qint64 mostPixels(const QImageReader& reader)
{
    return reader.format() == "jpeg" ? kMostPhotoPixels : kMostPhotoPixels / 2;
}

QSize acceptedSize(const QImageReader& reader)
{
    const QSize size = reader.size();
    const bool some = size.width() > 0 && size.height() > 0;
    return some && qint64(size.width()) * size.height() <= mostPixels(reader) ? size : QSize();
}

void prepare(QImageReader* reader, const QString& path)
{
    reader->setDecideFormatFromContent(true);
    reader->setFileName(path);
    reader->setAutoTransform(true);
}

// A pipe or a device would be waited for.
bool isPlainFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

} // namespace

QSize statedPhotoSize(const QString& path)
{
    if (!isPlainFile(path)) return {};
    QImageReader reader;
    prepare(&reader, path);
    return acceptedSize(reader);
}

bool exceedsPhotoSide(QSize size)
{
    return size.width() > kLargestPhotoSide || size.height() > kLargestPhotoSide;
}

QImage loadPhoto(const QString& path)
{
    if (!isPlainFile(path)) return {};
    QImageReader reader;
    prepare(&reader, path);
    const QSize size = acceptedSize(reader);
    if (!size.isValid()) return {};
    if (exceedsPhotoSide(size))
        reader.setScaledSize(
            size.scaled(kLargestPhotoSide, kLargestPhotoSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}
