// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Copies a stretch of one open file into another without holding it in memory.

#pragma once

#include <QString>
#include <QtGlobal>

class QFile;

/// Copies exactly `bytes` bytes from the present position of `source` to that of `target`, both opened
/// unbuffered; both positions move on. The system copies inside the kernel where it can.
/// @param error  the reason when false is returned: a read or write failed or the source ended too early
[[nodiscard]] bool streamCopy(QFile& source, QFile& target, qint64 bytes, QString* error);
