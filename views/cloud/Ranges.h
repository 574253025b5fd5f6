// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace cloud {

/// Consecutive parts of 0 .. count, about as many as the machine has cores.
/// @param least  no part is smaller, so that a thread is worth its start
/// @param align  every part but the last ends at a multiple of it
/// @return the borders: part i is [borders[i], borders[i + 1])
inline std::vector<std::size_t> rangeBorders(std::size_t count, std::size_t least, std::size_t align = 1)
{
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t parts = std::clamp<std::size_t>(count / std::max<std::size_t>(least, 1), 1, cores);
    std::vector<std::size_t> borders{0};
    for (std::size_t part = 1; part < parts; ++part)
        borders.push_back(count / parts * part / align * align);
    borders.push_back(count);
    return borders;
}

/// Calls work(part, first, last) once for each part, each in a thread of its own; returns when all are done.
/// A machine that gives no more threads does the parts one after the other.
/// @param work  does not throw
template <class Work>
void forEachRange(const std::vector<std::size_t>& borders, const Work& work)
{
    std::vector<std::thread> threads;
    const std::size_t parts = borders.size() - 1;
    threads.reserve(parts);
    for (std::size_t part = 1; part < parts; ++part) {
        const auto run = [&work, &borders, part] { work(part, borders[part], borders[part + 1]); };
        try {
            threads.emplace_back(run);
        } catch (const std::system_error&) {
            run();
        }
    }
    work(0, borders[0], borders[1]);
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace cloud
