// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "project/StreamCopy.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <memory>
#ifdef Q_OS_LINUX
#include <cerrno>
#include <unistd.h>
#endif

namespace {

constexpr qint64 kBufferBytes = qint64(1) << 20;

/// Lets the kernel copy as much as it is willing to; whatever is left, an error included, the portable loop
/// meets again and reports.
qint64 copyInKernel(QFile& source, QFile& target, qint64 bytes)
{
#ifdef Q_OS_LINUX
    constexpr qint64 kStepBytes = qint64(64) << 20;
    qint64 done = 0;
    while (done < bytes) {
        const auto step = static_cast<std::size_t>(std::min(bytes - done, kStepBytes));
        const ssize_t count = ::copy_file_range(source.handle(), nullptr, target.handle(), nullptr, step, 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += count;
    }
    return done;
#else
    Q_UNUSED(source)
    Q_UNUSED(target)
    Q_UNUSED(bytes)
    return 0;
#endif
}

bool copyThroughBuffer(QFile& source, QFile& target, qint64 bytes, QString* error)
{
    const std::unique_ptr<char[]> buffer(new char[kBufferBytes]);
    while (bytes > 0) {
        const qint64 got = source.read(buffer.get(), std::min(bytes, kBufferBytes));
        if (got <= 0) {
            *error = QCoreApplication::translate("SaveTour", "%1 cannot be read to its end")
                         .arg(source.fileName());
            return false;
        }
        for (qint64 done = 0; done < got;) {
            const qint64 count = target.write(buffer.get() + done, got - done);
            if (count <= 0) {
                *error = target.errorString();
                return false;
            }
            done += count;
        }
        bytes -= got;
    }
    return true;
}

} // namespace

bool streamCopy(QFile& source, QFile& target, qint64 bytes, QString* error)
{
    const bool seekable = !source.isSequential() && !target.isSequential();
    const qint64 sourceStart = source.pos();
    const qint64 targetStart = target.pos();
    const qint64 done = seekable ? copyInKernel(source, target, bytes) : 0;
    // The kernel moved the positions behind the toolkit's back.
    if (done > 0 && !(source.seek(sourceStart + done) && target.seek(targetStart + done))) {
        *error = target.errorString();
        return false;
    }
    return copyThroughBuffer(source, target, bytes - done, error);
}
