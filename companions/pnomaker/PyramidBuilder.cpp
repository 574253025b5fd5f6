// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "companions/pnomaker/PyramidBuilder.h"

#include "companions/pnomaker/ContentHash.h"
#include "companions/pnomaker/PnoMaker.h"
#include "companions/pnomaker/PnoWriter.h"
#include "companions/pnomaker/PoleFill.h"
#include "companions/pnomaker/Pyramid.h"
#include "companions/pnomaker/Resampler.h"
#include "companions/pnomaker/Stripe.h"
#include "companions/pnomaker/TileEncoder.h"
#include "companions/pnomaker/WorkerPool.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <future>
#include <stdexcept>

namespace pnomaker {
namespace {

constexpr int kTile = static_cast<int>(pno::kTilePixels);
constexpr int kTilesPerJob = 16;
constexpr int kRowsPerShare = 16;

struct EncodedTiles
{
    int firstIndex = 0;
    std::vector<std::size_t> sizes;
    std::vector<std::uint8_t> bytes;
};

/// One picture on the way down: the source, or a level.
struct Node
{
    int width = 0;
    int height = 0;
    int padLeft = 0;
    int firstValid = 0; ///< rows that the source covers; the others are filled from the nearest of them
    int lastValid = 0;
    int nextRow = 0;
    StripeWindow window;
    std::unique_ptr<Resampler> resampler; ///< from the parent
    std::vector<int> children;
};

/// Where the levels come from. The top level is made from the source; below it, every second level is an
/// exact 2 x 2 mean of the level two above, and each level between is the area average of the level one
/// above, 1.41 times its width. So a level's pixels have passed at most one division that is not whole since
/// the top level, rounding does not pile up, and nothing but the last few stripes is ever held.
class Builder
{
public:
    Builder(RowSource& source, const PyramidJob& job, WorkerPool& pool, PnoWriter& writer);
    std::string run();

private:
    int sourceNode() const { return m_job.pyramid.topLevel + 1; }
    void link(int child, int parent, double rowOrigin, double rowStep);
    bool ready(const Node& child, const Node& parent) const;
    StripePtr makeStripe(Node& node, const Node& parent);
    void makeRow(const Node& node, const Node& parent, Stripe& stripe, int index,
                 std::vector<std::int16_t>& scratch) const;
    bool accept(int index, const StripePtr& stripe);
    void encode(int level, const StripePtr& stripe);
    bool writeUntil(std::size_t pending);

    RowSource& m_source;
    const PyramidJob& m_job;
    WorkerPool& m_pool;
    PnoWriter& m_writer;
    std::vector<Node> m_nodes; ///< by level; the last is the source
    std::deque<std::future<EncodedTiles>> m_pending;
    std::size_t m_maxPending;
};

Builder::Builder(RowSource& source, const PyramidJob& job, WorkerPool& pool, PnoWriter& writer)
    : m_source(source)
    , m_job(job)
    , m_pool(pool)
    , m_writer(writer)
    , m_nodes(static_cast<std::size_t>(job.pyramid.topLevel) + 2)
    , m_maxPending(8 + 2 * static_cast<std::size_t>(pool.size()))
{
    const int top = job.pyramid.topLevel;
    for (int i = 0; i <= top; ++i) {
        const LevelSize& level = job.pyramid.levels[static_cast<std::size_t>(i)];
        m_nodes[i].width = level.width;
        m_nodes[i].height = level.height;
        m_nodes[i].padLeft = level.columns * kTile - level.width;
        m_nodes[i].lastValid = level.height - 1;
    }
    Node& whole = m_nodes[sourceNode()];
    whole.width = source.width();
    whole.height = source.height();
    for (int i = top; i >= 0; --i) {
        if (i == top) {
            const double height = m_nodes[i].height;
            const double rowsPerRadian = source.height() / (job.polar_max - job.polar_min);
            const bool full = job.polar_min == 0 && job.polar_max == pno::kPi;
            const double step = full ? source.height() / height : pno::kPi / height * rowsPerRadian;
            link(i, sourceNode(), -job.polar_min * rowsPerRadian, step);
            m_nodes[i].firstValid =
                std::max(0, static_cast<int>(std::ceil(job.polar_min / pno::kPi * height - 0.5 - 1e-6)));
            m_nodes[i].lastValid = std::min(m_nodes[i].lastValid,
                                            static_cast<int>(job.polar_max / pno::kPi * height - 0.5 + 1e-6));
        } else {
            const int parent = i % 2 == 0 && i + 2 <= top ? i + 2 : i + 1;
            link(i, parent, 0, static_cast<double>(m_nodes[parent].height) / m_nodes[i].height);
        }
    }
}

void Builder::link(int child, int parent, double rowOrigin, double rowStep)
{
    m_nodes[child].resampler =
        std::make_unique<Resampler>(m_nodes[parent].width, m_nodes[parent].height, m_nodes[child].width,
                                    m_nodes[child].height, rowOrigin, rowStep);
    m_nodes[parent].children.push_back(child);
}

std::string Builder::run()
{
    const int width = m_source.width();
    const int height = m_source.height();
    const int top = m_job.pyramid.topLevel;
    // A source of the top level's very size is cut into tiles where it was read to.
    const bool direct = m_nodes[top].resampler->copies() && m_nodes[top].padLeft == 0;
    for (int y = 0; y < height; y += kStripeRows) {
        const int rows = std::min(kStripeRows, height - y);
        auto stripe = std::make_shared<Stripe>(y, rows, width, 0, kStripeRows);
        if (!m_source.readRows(stripe->row(0), rows))
            return m_source.error().empty() ? "the picture cannot be read" : m_source.error();
        if (m_job.hash) m_job.hash->add(stripe->row(0), stripe->pitch * static_cast<std::size_t>(rows));
        if (!accept(direct ? top : sourceNode(), stripe)) return m_writer.error();
        if (m_job.progress) m_job.progress(static_cast<double>(y + rows) / height);
    }
    return writeUntil(0) ? std::string() : m_writer.error();
}

bool Builder::ready(const Node& child, const Node& parent) const
{
    if (child.nextRow >= child.height) return false;
    const int last = std::min(child.nextRow + kStripeRows, child.height) - 1;
    return child.resampler->endInputRow(std::clamp(last, child.firstValid, child.lastValid)) <=
           parent.window.endRow();
}

/// Takes a finished stripe: hands its tiles out, makes what can be made below it, lets go of what nobody
/// needs.
bool Builder::accept(int index, const StripePtr& stripe)
{
    Node& node = m_nodes[index];
    if (index != sourceNode()) {
        encode(index, stripe);
        if (m_job.keptPicture && index == m_job.keptLevel)
            for (int y = 0; y < stripe->rows; ++y)
                m_job.keptPicture->insert(m_job.keptPicture->end(), stripe->row(y),
                                          stripe->row(y) + static_cast<std::ptrdiff_t>(node.width) * 3);
    }
    if (!writeUntil(m_maxPending)) return false;
    node.window.stripes.push_back(stripe);
    int needed = node.window.endRow();
    for (const int childIndex : node.children) {
        Node& child = m_nodes[childIndex];
        while (ready(child, node))
            if (!accept(childIndex, makeStripe(child, node))) return false;
        if (child.nextRow < child.height)
            needed = std::min(needed, child.resampler->firstInputRow(
                                          std::clamp(child.nextRow, child.firstValid, child.lastValid)));
    }
    node.window.dropBefore(needed);
    return true;
}

StripePtr Builder::makeStripe(Node& node, const Node& parent)
{
    const int rows = std::min(kStripeRows, node.height - node.nextRow);
    auto stripe = std::make_shared<Stripe>(node.nextRow, rows, node.width, node.padLeft, kStripeRows);
    const int shares = (kStripeRows + kRowsPerShare - 1) / kRowsPerShare;
    m_pool.forEach(shares, [&](int share) {
        std::vector<std::int16_t> scratch;
        for (int y = share * kRowsPerShare; y < (share + 1) * kRowsPerShare; ++y)
            makeRow(node, parent, *stripe, y, scratch);
    });
    node.nextRow += rows;
    return stripe;
}

void Builder::makeRow(const Node& node, const Node& parent, Stripe& stripe, int index,
                      std::vector<std::int16_t>& scratch) const
{
    // Rows below the picture repeat its last one, to complete the lowest tiles.
    const int y = stripe.firstRow + std::min(index, stripe.rows - 1);
    const int nearest = std::clamp(y, node.firstValid, node.lastValid);
    std::uint8_t* row = stripe.row(index);
    node.resampler->makeRow(parent.window, nearest, row, scratch);
    if (y < nearest)
        blurTowardPole(row, node.width, static_cast<double>(nearest - y) / nearest);
    else if (y > nearest)
        blurTowardPole(row, node.width, static_cast<double>(y - nearest) / (node.height - 1 - nearest));
    for (int i = 1; i <= node.padLeft; ++i)
        std::memcpy(row - static_cast<std::ptrdiff_t>(i) * 3, row, 3);
}

void Builder::encode(int level, const StripePtr& stripe)
{
    const LevelSize& size = m_job.pyramid.levels[static_cast<std::size_t>(level)];
    const int rowStart = size.firstTile + stripe->firstRow / kTile * size.columns;
    for (int first = 0; first < size.columns; first += kTilesPerJob) {
        const int end = std::min(first + kTilesPerJob, size.columns);
        const auto task = std::make_shared<std::packaged_task<EncodedTiles()>>(
            [=, quality = m_job.quality, columns = size.columns] {
                thread_local TileEncoder encoder;
                EncodedTiles tiles;
                for (int column = first; column < end; ++column) {
                    const int x = (columns - 1 - column) * kTile;
                    const std::uint8_t* corner = stripe->row(0) + (x - stripe->padLeft) * 3;
                    tiles.sizes.push_back(encoder.encode(corner, stripe->pitch, quality, tiles.bytes));
                }
                tiles.firstIndex = rowStart + first;
                return tiles;
            });
        m_pending.push_back(task->get_future());
        m_pool.submit([task] { (*task)(); });
    }
}

bool Builder::writeUntil(std::size_t pending)
{
    for (; m_pending.size() > pending; m_pending.pop_front()) {
        const EncodedTiles tiles = m_pending.front().get();
        std::size_t at = 0;
        int index = tiles.firstIndex;
        for (const std::size_t size : tiles.sizes) {
            if (size == 0) throw std::runtime_error("a tile cannot be encoded");
            if (!m_writer.addTile(index++, tiles.bytes.data() + at, size)) return false;
            at += size;
        }
    }
    return true;
}

} // namespace

std::string buildPyramid(RowSource& source, const PyramidJob& job, WorkerPool& pool, PnoWriter& writer)
{
    return Builder(source, job, pool, writer).run();
}

} // namespace pnomaker
