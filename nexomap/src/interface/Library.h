// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "nexomap/src/Failure.h"
#include "nexomap/src/FrontEnd.h"
#include "nexomap/src/model/Model.h"

#include <mutex>
#include <new>
#include <optional>

namespace nexomap {

/// The one linking state of the process.
struct Library
{
    std::mutex lock;
    FrontEnd front_end;
    std::optional<WorkingFolder> folder; ///< none: not started
    Model model;
};

Library& library();

/// Replaces what reads and matches panoramas; for tests. Drops the state.
void setFrontEnd(FrontEnd front_end);

/// Tells a failure's reason on standard error when the environment variable NEXOMAP_VERBOSE is set.
void tell(const char* reason) noexcept;

/// The only place where exceptions end: runs one call's work under the lock.
template <class Work>
int guarded(const Work& work) noexcept
{
    try {
        Library& here = library();
        const std::lock_guard<std::mutex> guard(here.lock);
        return work(here);
    } catch (const Failure& failure) {
        tell(failure.what());
        return failure.status();
    } catch (const std::bad_alloc&) {
        tell("out of memory");
        return NEXOMAP_NO_MEMORY;
    } catch (const std::exception& error) {
        tell(error.what());
        return NEXOMAP_INTERNAL;
    } catch (...) {
        return NEXOMAP_INTERNAL;
    }
}

/// A call that changes the state: works on a copy, which replaces the state only when nothing failed.
/// @param work  (Model&, const Workplace&)
template <class Work>
int changing(const Work& work) noexcept
{
    return guarded([&](Library& here) {
        if (!here.folder) throw Failure(NEXOMAP_NOT_READY, "NexomapInit was not called");
        Model next = here.model;
        work(next, Workplace{*here.folder, here.front_end});
        std::swap(here.model, next);
        return int(NEXOMAP_OK);
    });
}

/// As `changing`, and refused while panoramas are being added.
template <class Work>
int changingSettled(const Work& work) noexcept
{
    return changing([&](Model& model, const Workplace& workplace) {
        if (model.adding) throw Failure(NEXOMAP_NOT_READY, "NexomapFinishAddNode was not called");
        work(model, workplace);
    });
}

/// A call that only reads; refused while panoramas are being added.
/// @param work  (const Model&, const Workplace&) -> int
template <class Work>
int reading(const Work& work) noexcept
{
    return guarded([&](Library& here) {
        if (!here.folder) throw Failure(NEXOMAP_NOT_READY, "NexomapInit was not called");
        if (here.model.adding) throw Failure(NEXOMAP_NOT_READY, "NexomapFinishAddNode was not called");
        return int(work(const_cast<const Model&>(here.model), Workplace{*here.folder, here.front_end}));
    });
}

} // namespace nexomap
