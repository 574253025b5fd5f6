// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#pragma once

#include "companions/pnotool/input/PictureSource.h"

#include <vector>

namespace pnotool {

/// A PNG picture of any kind as a stream of 8-bit RGB rows; transparent parts stand on black. An interlaced
/// one has its rows spread over the whole file and is held in memory.
class PngSource : public PictureSource
{
public:
    explicit PngSource(std::string path);
    ~PngSource() override;

    bool open();
    int width() const override { return m_width; }
    int height() const override { return m_height; }
    bool readRows(std::uint8_t* rgb, int count) override;
    bool rewind() override;

private:
    struct Decoder;
    void keepMetadata();
    bool readAll();

    std::string m_path;
    std::unique_ptr<Decoder> m_decoder;
    int m_width = 0;
    int m_height = 0;
    bool m_interlaced = false;
    std::vector<std::uint8_t> m_whole; ///< an interlaced picture
    std::size_t m_nextByte = 0;        ///< of it
};

} // namespace pnotool
