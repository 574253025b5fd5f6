// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/CheckedFile.h"

#include "project/StreamCopy.h"

#include <cerrno>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

bool syncHandle(int handle)
{
#ifdef Q_OS_WIN
    return _commit(handle) == 0;
#else
    int result = -1;
    do {
        result = ::fsync(handle);
    } while (result != 0 && errno == EINTR);
    // EINVAL: the file system has nothing to sync to, which is no loss of data.
    return result == 0 || errno == EINVAL;
#endif
}

} // namespace

CheckedFile::CheckedFile(const QString& path)
    : m_file(path)
{}

bool CheckedFile::fail(const QString& reason)
{
    m_error = reason;
    return false;
}

bool CheckedFile::open(Target target)
{
    m_regular = target == Target::New;
    QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    mode |= m_regular ? QIODevice::NewOnly : QIODevice::ExistingOnly;
    return m_file.open(mode) || fail(m_file.errorString());
}

bool CheckedFile::reserve(qint64 bytes)
{
#ifdef Q_OS_LINUX
    if (!seekable()) return true;
    // The file's length stays what is written: a source that shrinks meanwhile leaves no tail of zeros.
    if (::fallocate(m_file.handle(), FALLOC_FL_KEEP_SIZE, 0, bytes) == 0) return true;
    if (errno == ENOSPC || errno == EDQUOT || errno == EFBIG) return fail(qt_error_string(errno));
#else
    Q_UNUSED(bytes)
#endif
    return true;
}

bool CheckedFile::write(const QByteArray& bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 count = m_file.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0) return fail(m_file.errorString());
        done += count;
    }
    return true;
}

bool CheckedFile::copyFrom(QFile& source, qint64 bytes)
{
    return streamCopy(source, m_file, bytes, &m_error);
}

bool CheckedFile::writeAt(qint64 position, const QByteArray& bytes)
{
    return (m_file.seek(position) || fail(m_file.errorString())) && write(bytes);
}

bool CheckedFile::flushToDisk()
{
    if (!seekable()) return true;
    return syncHandle(m_file.handle()) || fail(qt_error_string(errno));
}

bool CheckedFile::close()
{
    if (!m_file.isOpen()) return true;
    m_file.unsetError();
    m_file.close();
    return m_file.error() == QFileDevice::NoError || fail(m_file.errorString());
}

void flushFolderToDisk(const QString& folder)
{
#ifndef Q_OS_WIN
    const int handle = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    syncHandle(handle);
    ::close(handle);
#else
    Q_UNUSED(folder)
#endif
}
