// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnotool/input/SpilledCoefficients.h"

#include <cstdio>
#include <deque>
#include <vector>

// The library's header needs <cstdio> before it.
#include <jerror.h>
#include <jpeglib.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace pnotool {
namespace {

constexpr std::uint64_t kWindow = std::uint64_t(16) << 20; ///< bytes of one component between two releases
constexpr std::uint64_t kAlign = 65536;                    ///< a whole number of pages everywhere

std::uint64_t roundedUp(std::uint64_t value, std::uint64_t step)
{
    return (value + step - 1) / step * step;
}

/// Bytes that the decoder will ask for, component by component.
std::uint64_t coefficientBytes(const jpeg_decompress_struct& info)
{
    std::uint64_t total = 0;
    for (int i = 0; i < info.num_components; ++i) {
        const jpeg_component_info& component = info.comp_info[i];
        const std::uint64_t columns =
            roundedUp(component.width_in_blocks, static_cast<std::uint64_t>(component.h_samp_factor));
        const std::uint64_t rows =
            roundedUp(component.height_in_blocks, static_cast<std::uint64_t>(component.v_samp_factor));
        total += roundedUp(columns * rows * sizeof(JBLOCK), kAlign);
    }
    return total;
}

/// One component's coefficients; the library only hands the pointer back to us.
struct Array
{
    std::uint8_t* base = nullptr;
    std::uint64_t rowBytes = 0;
    std::uint64_t rows = 0;
    std::uint64_t windowStart = 0;
    std::vector<JBLOCKROW> pointers; ///< of the rows last asked for
};

} // namespace

struct SpilledCoefficients::State
{
    std::FILE* file = nullptr;
    std::uint8_t* base = nullptr;
    std::uint64_t size = 0;
    std::uint64_t used = 0;
    std::deque<Array> arrays;

    static State& of(j_common_ptr info) { return *static_cast<State*>(info->client_data); }

#ifndef _WIN32
    ~State()
    {
        if (base) munmap(base, size);
        if (file) std::fclose(file);
    }

    static jvirt_barray_ptr request(j_common_ptr info, int, boolean, JDIMENSION columns, JDIMENSION rows,
                                    JDIMENSION)
    {
        State& state = of(info);
        Array array;
        array.base = state.base + state.used;
        array.rowBytes = std::uint64_t(columns) * sizeof(JBLOCK);
        array.rows = rows;
        state.used += roundedUp(array.rowBytes * rows, kAlign);
        if (state.used > state.size) ERREXIT1(info, JERR_OUT_OF_MEMORY, 1);
        state.arrays.push_back(std::move(array));
        return reinterpret_cast<jvirt_barray_ptr>(&state.arrays.back());
    }

    static JBLOCKARRAY access(j_common_ptr info, jvirt_barray_ptr handle, JDIMENSION first, JDIMENSION count,
                              boolean)
    {
        Array& array = *reinterpret_cast<Array*>(handle);
        if (std::uint64_t(first) + count > array.rows) ERREXIT(info, JERR_BAD_VIRTUAL_ACCESS);
        const std::uint64_t at = first * array.rowBytes;
        if (at < array.windowStart || at > array.windowStart + kWindow) {
            // The pages stay in the file and come back when they are touched.
            madvise(array.base, roundedUp(array.rowBytes * array.rows, kAlign), MADV_DONTNEED);
            array.windowStart = at;
        }
        array.pointers.resize(count);
        for (JDIMENSION i = 0; i < count; ++i)
            array.pointers[i] = reinterpret_cast<JBLOCKROW>(array.base + at + i * array.rowBytes);
        return array.pointers.data();
    }
#endif
};

SpilledCoefficients::SpilledCoefficients(std::unique_ptr<State> state)
    : m_state(std::move(state))
{}

SpilledCoefficients::~SpilledCoefficients() = default;

std::unique_ptr<SpilledCoefficients> SpilledCoefficients::install(jpeg_decompress_struct& info,
                                                                  std::uint64_t above_bytes)
{
#ifdef _WIN32
    (void)info;
    (void)above_bytes;
    return nullptr;
#else
    if (!jpeg_has_multiple_scans(&info) || coefficientBytes(info) <= above_bytes) return nullptr;
    auto state = std::make_unique<State>();
    state->size = coefficientBytes(info);
    state->file = std::tmpfile();
    // Room is taken before it is used: a disk that fills up later would end the program in the middle of a
    // write to memory.
    if (!state->file || posix_fallocate(fileno(state->file), 0, static_cast<off_t>(state->size)) != 0)
        return nullptr;
    void* base = mmap(nullptr, state->size, PROT_READ | PROT_WRITE, MAP_SHARED, fileno(state->file), 0);
    if (base == MAP_FAILED) return nullptr;
    state->base = static_cast<std::uint8_t*>(base);
    info.client_data = state.get();
    info.mem->request_virt_barray = State::request;
    info.mem->access_virt_barray = State::access;
    return std::unique_ptr<SpilledCoefficients>(new SpilledCoefficients(std::move(state)));
#endif
}

} // namespace pnotool
