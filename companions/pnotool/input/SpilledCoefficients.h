// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>

struct jpeg_decompress_struct;

namespace pnotool {

/// Keeps the coefficients of a JPEG picture of several scans in an unnamed temporary file instead of in
/// memory: a progressive panorama needs up to 6 bytes a pixel of them. The decoder walks through them scan by
/// scan, so only a window has to be resident.
class SpilledCoefficients
{
public:
    ~SpilledCoefficients();
    SpilledCoefficients(const SpilledCoefficients&) = delete;
    SpilledCoefficients& operator=(const SpilledCoefficients&) = delete;

    /// To be called after the header is read. The result must outlive the decoding.
    /// @param above_bytes  pictures with fewer bytes of coefficients stay in memory
    /// @return null, and nothing changed, when the picture needs no coefficients kept or there is no room for
    /// a
    ///         temporary file; the decoder then uses memory
    static std::unique_ptr<SpilledCoefficients> install(jpeg_decompress_struct& info,
                                                        std::uint64_t above_bytes);

private:
    struct State;
    explicit SpilledCoefficients(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

} // namespace pnotool
