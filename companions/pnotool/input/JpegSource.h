// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/PictureSource.h"

namespace pnotool {

/// A JPEG picture as a stream of rows: baseline or progressive, grey, colour, CMYK. Takes memory for a few
/// rows; the coefficients of a large progressive one lie in a temporary file. Damaged or cut-off data is an
/// error, not a grey area.
class JpegSource : public PictureSource
{
public:
    /// @param spillAbove_bytes  coefficients that take more than this lie in a temporary file
    explicit JpegSource(std::string path, std::uint64_t spillAbove_bytes = std::uint64_t(128) << 20);
    ~JpegSource() override;

    bool open();
    int width() const override;
    int height() const override;
    bool readRows(std::uint8_t* rgb, int count) override;
    bool rewind() override;

private:
    struct Decoder;
    void keepMarkers();

    std::string m_path;
    std::uint64_t m_spillAbove_bytes;
    std::unique_ptr<Decoder> m_decoder;
};

} // namespace pnotool
