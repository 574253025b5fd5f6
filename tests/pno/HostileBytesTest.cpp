// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Files bent at random, under the sanitizers in every build: whatever the bytes, one of the known statuses
// comes back and nothing is read or written out of bounds.

#include "tests/pno/ReaderFixture.h"

#include <algorithm>
#include <cstring>
#include <random>

using pnotest::Bytes;
using pnotest::PnoParts;

namespace {

constexpr int kFilesPerTest = 1000;

class Mischief
{
public:
    explicit Mischief(unsigned seed)
        : m_random(seed)
    {}

    std::size_t below(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }

    void cut(Bytes* bytes) { bytes->resize(below(bytes->size())); }

    void flip(Bytes* bytes)
    {
        for (std::size_t flips = 1 + below(4); flips > 0; --flips)
            (*bytes)[below(bytes->size())] ^= static_cast<std::uint8_t>(1u << below(8));
    }

    void extend(Bytes* bytes)
    {
        for (std::size_t count = 1 + below(200); count > 0; --count)
            bytes->push_back(static_cast<std::uint8_t>(below(256)));
    }

    /// Overwrites four bytes with a number that likes to overflow.
    void poke(Bytes* bytes)
    {
        static constexpr std::uint32_t kNumbers[] = {0,          1,          0x7FFFFFFF, 0x80000000,
                                                     0xFFFFFFFF, 0xFFFFFFFA, 0xFFFFFFF9, 0x10000000,
                                                     0x10000001, 0x100000,   256,        0x7FF80000};
        const std::uint32_t number = kNumbers[below(std::size(kNumbers))];
        std::memcpy(bytes->data() + below(bytes->size() - sizeof number), &number, sizeof number);
    }

    /// Moves a piece of the file elsewhere in it.
    void shuffle(Bytes* bytes)
    {
        const std::size_t size = 1 + below(std::min<std::size_t>(bytes->size() / 2, 600));
        const std::size_t from = below(bytes->size() - size);
        const std::size_t to = below(bytes->size() - size);
        std::memmove(bytes->data() + to, bytes->data() + from, size);
    }

private:
    std::mt19937 m_random;
};

} // namespace

class PnoHostileBytes : public ReaderTest
{
protected:
    // The headers and small blocks are where a bent bit matters: bend those more often than the directories.
    void bendStart(Mischief* mischief, Bytes* bytes)
    {
        constexpr std::size_t kBlocks = 2 + 6 + 256 + 6 + 448 + 6 + 40;
        Bytes start(bytes->begin(), bytes->begin() + kBlocks);
        mischief->below(2) ? mischief->poke(&start) : mischief->flip(&start);
        std::copy(start.begin(), start.end(), bytes->begin());
    }

    void expectDefinedBehaviour(const Bytes& bytes, std::int32_t length = -1)
    {
        m_path = m_folder.write("bent.pno", bytes);
        const std::int32_t status = m_file->Open(m_path.c_str(), 0, length);
        EXPECT_TRUE(status == 0 || status == -2 || status == -3 || status == -4 || status == -7) << status;
        EXPECT_EQ(m_file->loaded(), status == 0);
        m_loaded += status == 0;
        touchEverything();
    }

    void touchEverything()
    {
        std::uint32_t size = 0;
        const std::int32_t levels = m_file->imageInfo().max_zoom_level > 15 ? 16 : 13;
        for (std::int32_t level = -1; level < levels; ++level) {
            tile(level, 0, 0);
            tile(level, 31, 15);
        }
        for (const auto& read : {m_file->ReadPoints(&size), m_file->ReadExtra(&size),
                                 m_file->ReadDepthTile(31, 15, &size), m_file->ReadDepthTile(0, 0, &size)}) {
            if (read && size > 0) m_sum += read[0];
        }
        m_file->pointValues();
        m_file->captureTime();
        m_file->panoId();
    }

    const Bytes m_valid = [] {
        pnotest::PnoOptions options;
        options.depthTiles = pnotest::tinyTiles();
        return pnotest::panorama(options);
    }();
    int m_loaded = 0;
    unsigned m_sum = 0;
};

TEST_F(PnoHostileBytes, CutFilesAreRefused)
{
    Mischief mischief(1);
    for (int i = 0; i < kFilesPerTest; ++i) {
        Bytes bytes = m_valid;
        mischief.cut(&bytes);
        expectDefinedBehaviour(bytes);
        // The same bytes under a caller's word that they are all there.
        expectDefinedBehaviour(bytes, static_cast<std::int32_t>(m_valid.size()));
    }
}

TEST_F(PnoHostileBytes, FlippedBitsDoNoHarm)
{
    Mischief mischief(2);
    for (int i = 0; i < kFilesPerTest; ++i) {
        Bytes bytes = m_valid;
        mischief.below(2) ? mischief.flip(&bytes) : bendStart(&mischief, &bytes);
        expectDefinedBehaviour(bytes);
    }
    EXPECT_GT(m_loaded, 0) << "some bits may be anything: a reader that loads none of these has not looked";
    EXPECT_LT(m_loaded, kFilesPerTest);
}

TEST_F(PnoHostileBytes, ExtendedFilesDoNoHarm)
{
    Mischief mischief(3);
    for (int i = 0; i < kFilesPerTest; ++i) {
        Bytes bytes = m_valid;
        mischief.extend(&bytes);
        expectDefinedBehaviour(bytes);
    }
}

TEST_F(PnoHostileBytes, PokedAndShuffledFilesDoNoHarm)
{
    Mischief mischief(4);
    for (int i = 0; i < kFilesPerTest; ++i) {
        Bytes bytes = m_valid;
        for (std::size_t count = 1 + mischief.below(3); count > 0; --count)
            mischief.below(2) ? mischief.poke(&bytes) : mischief.shuffle(&bytes);
        expectDefinedBehaviour(bytes);
    }
}

TEST_F(PnoHostileBytes, NoiseBehindTheMagicDoesNoHarm)
{
    Mischief mischief(5);
    for (int i = 0; i < kFilesPerTest; ++i) {
        Bytes bytes = {0xC0, 0x73};
        // Known markers in a row of noise, or the scan would end at the first segment.
        while (bytes.size() < 3000) {
            const auto length =
                static_cast<std::int32_t>(mischief.below(8) ? mischief.below(1200) : 0xFFFFFFF0u);
            bytes.push_back(static_cast<std::uint8_t>(0xD0 + mischief.below(10)));
            bytes.push_back(0xFF);
            for (int shift = 0; shift < 32; shift += 8)
                bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(length) >> shift));
            for (std::int32_t k = 0; k < std::min(length, 1200); ++k)
                bytes.push_back(static_cast<std::uint8_t>(mischief.below(256)));
        }
        expectDefinedBehaviour(bytes);
    }
    EXPECT_EQ(m_loaded, 0);
}
