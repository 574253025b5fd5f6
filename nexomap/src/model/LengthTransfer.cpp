// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths that only a search in third panoramas can tell.
#include "nexomap/src/model/LengthTransfer.h"

#include "nexomap/src/graph/DepthTransfer.h"
#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/model/ParallelFor.h"

#include <algorithm>
#include <cmath>

namespace nexomap {
namespace {

constexpr int kRounds = 3;                // what one round joins lends its features to the next
constexpr std::size_t kMostMeetings = 12; // between two sets, those with the most inliers
constexpr double kTurns[] = {-12.0, -9.0, -6.0, -3.0, 3.0, 6.0, 9.0, 12.0}; // degrees
constexpr std::size_t kFewestVotes = 3;
// Three of a few votes agree within 3 % by chance once in some hundred searches, and then on like things
// only.
constexpr double kLeastHeight = 2.4; // of the mode, in votes that agree exactly
constexpr double kAboveChance = 2.0;
constexpr int kFewestPlanes = 3;
constexpr double kPlaneStep = 1.5 * kDegree;
constexpr double kNarrowest = 0.03; // a vote's deviation at least: a pose is no better known

/// Two edges that meet at a panorama.
struct Meeting
{
    int a = 0, b = 0; ///< edges, the first one of the lower set
    int node = 0;
};

struct PooledVote
{
    TransferVote vote;
    int meeting = 0, edge = 0; ///< the edge that the inlier would join
    double x = 0.0;            ///< log of set b's scale over set a's
    double sigma = 0.0;
};

struct Found
{
    int edge = 0, node = 0;
    PairInlier inlier; ///< bearing 0 at the node
};

double density(const std::vector<PooledVote>& votes, double x)
{
    double sum = 0.0;
    for (const PooledVote& v : votes)
        sum += kNarrowest / v.sigma * std::exp(-0.5 * std::pow((v.x - x) / v.sigma, 2));
    return sum;
}

/// Where the votes stand closest.
double modeOf(const std::vector<PooledVote>& votes, double* height)
{
    double mode = 0.0;
    *height = 0.0;
    for (const PooledVote& v : votes)
        for (const double step : {-0.02, 0.0, 0.02})
            if (const double here = density(votes, v.x + step); here > *height) {
                *height = here;
                mode = v.x + step;
            }
    return mode;
}

/// Epipolar planes that the votes stand on: along one plane everything fits, so one plane is one opinion.
int planesOf(const std::vector<const PooledVote*>& votes)
{
    std::vector<std::pair<std::pair<int, int>, double>> planes;
    for (const PooledVote* v : votes)
        planes.push_back({{v->meeting, v->edge}, v->vote.plane});
    std::sort(planes.begin(), planes.end());
    int count = 0;
    for (std::size_t k = 0, last = 0; k < planes.size(); ++k) {
        if (k > 0 && planes[k].first == planes[last].first &&
            planes[k].second - planes[last].second < kPlaneStep)
            continue;
        ++count;
        last = k;
    }
    return count;
}

class Transfer
{
public:
    Transfer(const Model& model, const Workplace& workplace)
        : m_model(model)
        , m_workplace(workplace)
    {
        for (std::size_t e = 0; e < model.edges.size(); ++e) {
            const Edge& edge = model.edges[e];
            const bool usable = edge.origin == Origin::Matched && !edge.pose->metric &&
                                !edge.pose->rotation_only && !edge.pose->inliers.empty();
            m_graph.push_back({edge.node_0, edge.node_1, edge.pose.get(), false});
            m_kept.push_back(usable);
        }
    }

    std::vector<Found> find()
    {
        const int nodes = int(m_model.nodes.size());
        const std::vector<Tie> ties = featureTies(nodes, m_graph, m_kept);
        int sets = 0;
        m_set = tiedSets(nodes, m_graph, m_kept, ties, &sets);
        const std::map<NodePair, std::vector<Meeting>> all = meetings();
        if (all.empty()) return {};
        m_lengths = solveTies({int(m_graph.size()), nodes}, ties);
        std::vector<std::vector<Meeting>> work;
        for (const auto& [between, here] : all) {
            work.push_back(here);
            for (const Meeting& meeting : here)
                for (const int e : {meeting.a, meeting.b})
                    for (const int n : {m_graph[std::size_t(e)].i, m_graph[std::size_t(e)].j})
                        m_model.nodes[std::size_t(n)].source->look(m_workplace.front_end);
        }
        std::vector<std::vector<Found>> found(work.size());
        parallelFor(int(work.size()), [&](int k) { found[std::size_t(k)] = between(work[std::size_t(k)]); });
        std::vector<Found> result;
        for (const std::vector<Found>& some : found)
            result.insert(result.end(), some.begin(), some.end());
        return result;
    }

private:
    /// Where edges of different sets meet, the meetings with the most inliers of each two sets.
    std::map<NodePair, std::vector<Meeting>> meetings() const
    {
        std::vector<std::vector<int>> at(m_model.nodes.size());
        for (std::size_t e = 0; e < m_graph.size(); ++e) {
            if (!m_kept[e]) continue;
            at[std::size_t(m_graph[e].i)].push_back(int(e));
            at[std::size_t(m_graph[e].j)].push_back(int(e));
        }
        std::map<NodePair, std::vector<Meeting>> all;
        for (std::size_t n = 0; n < at.size(); ++n)
            for (const int a : at[n])
                for (const int b : at[n])
                    if (m_set[std::size_t(a)] < m_set[std::size_t(b)])
                        all[{m_set[std::size_t(a)], m_set[std::size_t(b)]}].push_back({a, b, int(n)});
        const auto worth = [&](const Meeting& m) {
            return std::min(m_graph[std::size_t(m.a)].pose->inliers.size(),
                            m_graph[std::size_t(m.b)].pose->inliers.size());
        };
        for (auto& [sets, here] : all) {
            std::stable_sort(here.begin(), here.end(),
                             [&](const Meeting& p, const Meeting& q) { return worth(p) > worth(q); });
            if (here.size() > kMostMeetings) here.resize(kMostMeetings);
        }
        return all;
    }

    PairEnd end(int e, int node) const
    {
        const GraphEdge& edge = m_graph[std::size_t(e)];
        const bool at_0 = edge.i == node;
        return pairEnd(features(node), features(at_0 ? edge.j : edge.i), *edge.pose, at_0);
    }
    const Features& features(int node) const
    {
        return m_model.nodes[std::size_t(node)].source->loaded()->features;
    }

    /// What ties two sets, by all places where they meet.
    std::vector<Found> between(const std::vector<Meeting>& meetings) const
    {
        std::vector<PooledVote> votes;
        std::vector<std::vector<PooledVote>> chance(std::size(kTurns));
        for (int k = 0; k < int(meetings.size()); ++k) {
            const Meeting& m = meetings[std::size_t(k)];
            const PairEnd a = end(m.a, m.node), b = end(m.b, m.node);
            collect(meetings, k, a, b, 0.0, &votes);
            for (std::size_t t = 0; t < std::size(kTurns); ++t)
                collect(meetings, k, a, b, kTurns[t] * kDegree, &chance[t]);
        }
        double height = 0.0, by_chance = 0.0;
        const double mode = modeOf(votes, &height);
        for (const std::vector<PooledVote>& turned : chance) {
            double here = 0.0;
            modeOf(turned, &here);
            by_chance = std::max(by_chance, here);
        }
        std::vector<const PooledVote*> agreeing;
        std::vector<PooledVote> others;
        for (const PooledVote& v : votes) {
            if (std::abs(v.x - mode) < 3.0 * v.sigma)
                agreeing.push_back(&v);
            else
                others.push_back(v);
        }
        double rival = 0.0;
        modeOf(others, &rival);
        if (height < kLeastHeight || agreeing.size() < kFewestVotes ||
            height < kAboveChance * std::max(by_chance, rival) || planesOf(agreeing) < kFewestPlanes)
            return {};
        std::vector<Found> found;
        for (const PooledVote* v : agreeing)
            if (v->vote.fresh)
                found.push_back({v->edge, meetings[std::size_t(v->meeting)].node, v->vote.inlier});
        return found;
    }

    /// The votes of one meeting, both ways; features that both edges have already count once.
    void collect(const std::vector<Meeting>& meetings, int k, const PairEnd& a, const PairEnd& b, double turn,
                 std::vector<PooledVote>* votes) const
    {
        const Meeting& m = meetings[std::size_t(k)];
        const double within = m_lengths[m.a] - m_lengths[m.b];
        for (const bool forward : {true, false})
            for (const TransferVote& vote : forward ? transferVotes(a, b, turn) : transferVotes(b, a, turn)) {
                if (!forward && !vote.fresh) continue;
                PooledVote pooled;
                pooled.vote = vote;
                pooled.meeting = k;
                pooled.edge = forward ? m.b : m.a;
                pooled.x = (forward ? vote.log_ratio : -vote.log_ratio) + within;
                pooled.sigma = std::max(kNarrowest, vote.sigma);
                votes->push_back(pooled);
            }
    }

    const Model& m_model;
    const Workplace& m_workplace;
    std::vector<GraphEdge> m_graph;
    std::vector<char> m_kept;
    std::vector<int> m_set;
    Eigen::VectorXd m_lengths;
};

/// Adds one match to an edge unless one of its two features has a partner there.
bool join(Edge& edge, const Found& found)
{
    PairInlier inlier = found.inlier;
    if (edge.node_0 != found.node) std::swap(inlier.bearing_0, inlier.bearing_1);
    for (const PairInlier& other : edge.pose->inliers)
        if (other.bearing_0 == inlier.bearing_0 || other.bearing_1 == inlier.bearing_1) return false;
    auto pose = std::make_shared<PairPose>(*edge.pose);
    pose->inliers.push_back(inlier);
    edge.pose = std::move(pose);
    return true;
}

} // namespace

bool transferLengths(Model& model, const Workplace& workplace)
{
    bool any = false;
    for (int round = 0; round < kRounds; ++round) {
        bool joined = false;
        for (const Found& found : Transfer(model, workplace).find())
            joined = join(model.edges[std::size_t(found.edge)], found) || joined;
        if (!joined) break;
        any = true;
    }
    return any;
}

} // namespace nexomap
