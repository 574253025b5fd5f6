// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/PictureSource.h"

namespace pnotool {

/// A JPEG picture as a stream of rows: baseline or progressive, grey, colour, CMYK. A progressive one needs
/// its coefficients in memory, 3 to 6 bytes a pixel; any other a few rows. Damaged or cut-off data is an
/// error, not a grey area.
class JpegSource : public PictureSource
{
public:
    explicit JpegSource(std::string path);
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
    std::unique_ptr<Decoder> m_decoder;
};

} // namespace pnotool
