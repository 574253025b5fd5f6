// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/SetAside.h"

#include "project/CheckedFile.h"
#include "project/TourContainer.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace {

constexpr int kLongestLinkChain = 40;

QString withoutLinks(QString path)
{
    for (int i = 0; i < kLongestLinkChain && QFileInfo(path).isSymLink(); ++i)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

std::filesystem::path nativePath(const QString& path)
{
#ifdef Q_OS_WIN
    return std::filesystem::path(path.toStdWString());
#else
    return std::filesystem::path(QFile::encodeName(path).toStdString());
#endif
}

/// Unlike the toolkit's rename this one replaces a file of the new name, in one step.
bool replaceByRename(const QString& from, const QString& to, QString* error)
{
    std::error_code code;
    std::filesystem::rename(nativePath(from), nativePath(to), code);
    if (code) *error = QString::fromLocal8Bit(code.message().c_str());
    return !code;
}

bool isWholeFile(const QString& path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && tour::isWhole(file);
}

} // namespace

SetAside::SetAside(const QString& path)
    : m_target(withoutLinks(path))
{}

bool SetAside::begin()
{
    const QFileInfo present(m_target);
    if (!present.exists()) return true;
    if (present.isDir()) {
        m_error = QCoreApplication::translate("SaveTour", "it is a folder");
        return false;
    }
    m_device = !present.isFile();
    if (m_device) return true;

    // Renaming asks for rights on the folder only; a write-protected file is meant to stay as it is.
    QFile writable(m_target);
    if (!writable.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        m_error = writable.errorString();
        return false;
    }
    writable.close();
    m_permissions = present.permissions();

    if (!isWholeFile(m_target) && isWholeFile(keptName())) {
        m_obsolete = true;
        if (QFile::remove(m_target)) return true;
        m_error = QCoreApplication::translate("SaveTour", "its unfinished remains cannot be removed");
        return false;
    }
    m_renamed = m_obsolete = replaceByRename(m_target, keptName(), &m_error);
    return m_renamed;
}

void SetAside::restore()
{
    QString ignored;
    if (m_renamed && replaceByRename(keptName(), m_target, &ignored)) m_renamed = m_obsolete = false;
}

void SetAside::discard()
{
    if (m_obsolete) QFile::remove(keptName());
}
