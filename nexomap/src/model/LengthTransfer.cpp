// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Lengths that only a search in third panoramas can tell.
#include "nexomap/src/model/LengthTransfer.h"

#include "nexomap/src/graph/DepthTransfer.h"
#include "nexomap/src/graph/LengthTies.h"
#include "nexomap/src/graph/NamedGraph.h"
#include "nexomap/src/model/ParallelFor.h"
#include "nexomap/src/model/Relocation.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace nexomap {
namespace {

constexpr int kRounds = 3;                // what one round joins lends its features to the next
constexpr std::size_t kMostMeetings = 12; // between two sets, those with the most inliers
constexpr std::size_t kMostFarNodes = 8;  // of the other set, the nearest ones
constexpr double kTieSpread = 0.06;
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
    int meeting = 0, edge = 0; ///< the edge that the inlier would join; -1: no edge goes there
    double x = 0.0;            ///< log of set b's scale over set a's
    double sigma = 0.0;
};

/// What an edge is to gain: inliers, or, where no edge leads to the panorama that told the length, a tie.
struct Found
{
    int edge = 0, node = 0;
    std::vector<PairInlier> inliers; ///< bearing 0 at the node
    std::vector<LengthTie> ties;
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
        : m_workplace(workplace)
        , m_named(model.names(), graphOf(model))
        , m_graph(m_named.edges())
    {
        for (int n = 0; n < int(model.nodes.size()); ++n)
            m_nodes.push_back(&model.nodes[std::size_t(m_named.node(n))]);
        for (int e = 0; e < int(m_graph.size()); ++e) {
            const Edge& edge = model.edges[std::size_t(m_named.edge(e))];
            const bool usable = edge.origin == Origin::Matched && !edge.pose->metric &&
                                !edge.pose->rotation_only && !edge.pose->inliers.empty();
            m_kept.push_back(usable);
        }
    }

    std::vector<Found> find()
    {
        const int nodes = int(m_nodes.size());
        const std::vector<Tie> ties = featureTies(nodes, m_graph, m_kept);
        int sets = 0;
        m_set = tiedSets(nodes, m_graph, m_kept, ties, &sets);
        m_members.resize(std::size_t(sets));
        m_floor.assign(std::size_t(sets), 0);
        for (const Tie& tie : floorTies(nodes, m_graph, m_kept))
            if (tie.a < int(m_graph.size())) m_floor[std::size_t(m_set[std::size_t(tie.a)])] = 1;
        const std::map<NodePair, std::vector<Meeting>> all = meetings();
        if (all.empty()) return {};
        m_lengths = solveTies({int(m_graph.size()), nodes}, ties);
        placeSets();
        std::vector<std::vector<Meeting>> work;
        for (const auto& [between, here] : all) {
            work.push_back(here);
            for (const int n : m_members[std::size_t(between.first)])
                m_nodes[std::size_t(n)]->source->look(m_workplace.front_end);
            for (const int n : m_members[std::size_t(between.second)])
                m_nodes[std::size_t(n)]->source->look(m_workplace.front_end);
        }
        std::vector<std::vector<Found>> found(work.size());
        parallelFor(int(work.size()), [&](int k) { found[std::size_t(k)] = between(work[std::size_t(k)]); });
        std::vector<Found> result;
        for (const std::vector<Found>& some : found)
            result.insert(result.end(), some.begin(), some.end());
        for (Found& some : result) {
            some.edge = m_named.edge(some.edge);
            some.node = m_named.node(some.node);
        }
        return result;
    }

private:
    static std::vector<GraphEdge> graphOf(const Model& model)
    {
        std::vector<GraphEdge> graph;
        for (const Edge& edge : model.edges)
            graph.push_back({edge.node_0, edge.node_1, edge.pose.get(), false, tiesOf(model, *edge.pose)});
        return graph;
    }

    /// Where edges of different sets meet, the meetings with the most inliers of each two sets.
    std::map<NodePair, std::vector<Meeting>> meetings() const
    {
        std::vector<std::vector<int>> at(m_nodes.size());
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
        return m_nodes[std::size_t(node)]->source->loaded()->features;
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
        // Further on stand the rooms that are alike: no doubt is cast on what the floor says.
        if (!m_floor[std::size_t(m_set[std::size_t(meetings.front().a)])] ||
            !m_floor[std::size_t(m_set[std::size_t(meetings.front().b)])])
            collectFar(meetings, &votes, &chance);
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
        bool far = false;
        double sum = 0.0, weights = 0.0;
        for (const PooledVote* v : agreeing) {
            far = far || v->edge < 0;
            sum += v->x / (v->sigma * v->sigma);
            weights += 1.0 / (v->sigma * v->sigma);
            if (v->vote.fresh && v->edge >= 0)
                found.push_back({v->edge, meetings[std::size_t(v->meeting)].node, {v->vote.inlier}, {}});
        }
        if (!far) return found;
        const Meeting& first = meetings.front();
        const GraphEdge& other = m_graph[std::size_t(first.b)];
        // sum / weights = log of b's set over a's.
        found.push_back({first.a,
                         first.node,
                         {},
                         {{m_nodes[std::size_t(other.i)]->name, m_nodes[std::size_t(other.j)]->name,
                           m_lengths[first.a] - m_lengths[first.b] - sum / weights,
                           kTieSpread / std::sqrt(double(agreeing.size()))}}});
        return found;
    }

    /// The nodes of each set, and its size in the poses as they stand: within a set the lengths are right, so
    /// that its panoramas stand rightly to each other but for one factor.
    void placeSets()
    {
        std::vector<std::vector<double>> sizes(m_members.size());
        std::vector<std::set<int>> members(m_members.size());
        for (std::size_t e = 0; e < m_graph.size(); ++e) {
            if (!m_kept[e] || m_set[e] < 0) continue;
            const GraphEdge& edge = m_graph[e];
            const double length = relative(edge.i, edge.j).t.norm();
            if (length > 1e-6) sizes[std::size_t(m_set[e])].push_back(std::log(length) - m_lengths[int(e)]);
            members[std::size_t(m_set[e])].insert({edge.i, edge.j});
        }
        for (std::size_t s = 0; s < members.size(); ++s) {
            m_members[s].assign(members[s].begin(), members[s].end());
            m_size.push_back(sizes[s].empty() ? 0.0 : median(sizes[s]));
        }
    }
    Pose relative(int a, int b) const
    {
        return m_nodes[std::size_t(a)]->pose.inverse() * m_nodes[std::size_t(b)]->pose;
    }

    /// The nearest panoramas of a set that no edge of it joins to the node.
    std::vector<int> farNodes(int set, int node, int except) const
    {
        std::set<int> joined{node, except};
        for (std::size_t e = 0; e < m_graph.size(); ++e)
            if (m_kept[e] && m_set[e] == set && (m_graph[e].i == node || m_graph[e].j == node))
                joined.insert({m_graph[e].i, m_graph[e].j});
        std::vector<std::pair<double, int>> others;
        for (const int n : m_members[std::size_t(set)])
            if (joined.count(n) == 0) others.emplace_back(relative(node, n).t.norm(), n);
        std::sort(others.begin(), others.end());
        std::vector<int> nearest;
        for (std::size_t k = 0; k < std::min(kMostFarNodes, others.size()); ++k)
            if (others[k].first > 1e-6) nearest.push_back(others[k].second);
        return nearest;
    }

    /// The votes of panoramas that stand in one of the sets without an edge to where the sets meet.
    void collectFar(const std::vector<Meeting>& meetings, std::vector<PooledVote>* votes,
                    std::vector<std::vector<PooledVote>>* chance) const
    {
        std::set<std::pair<int, int>> done;
        int number = int(meetings.size()); // planes of different searches are different
        for (const Meeting& m : meetings)
            for (const bool forward : {true, false}) {
                const int edge = forward ? m.a : m.b, set = m_set[std::size_t(forward ? m.b : m.a)];
                if (!done.insert({edge, m.node}).second) continue;
                const PairEnd known = end(edge, m.node);
                const GraphEdge& e = m_graph[std::size_t(edge)];
                for (const int n : farNodes(set, m.node, e.i == m.node ? e.j : e.i)) {
                    const Pose there = relative(m.node, n);
                    PairEnd other;
                    other.here = known.here;
                    other.far = &features(n);
                    other.here_from_far = {there.R, there.t.normalized()};
                    other.far_taken.assign(other.far->size(), 0);
                    const double length = std::log(there.t.norm()) - m_size[std::size_t(set)];
                    const auto add = [&](double turn, std::vector<PooledVote>* to) {
                        for (const TransferVote& vote : transferVotes(known, other, turn)) {
                            const double x = vote.log_ratio + m_lengths[edge] - length;
                            to->push_back(
                                {vote, number, -1, forward ? x : -x, std::max(kNarrowest, vote.sigma)});
                        }
                    };
                    add(0.0, votes);
                    for (std::size_t t = 0; t < std::size(kTurns); ++t)
                        add(kTurns[t] * kDegree, &(*chance)[t]);
                    ++number;
                }
            }
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

    const Workplace& m_workplace;
    const NamedGraph m_named; ///< all below by names, until it is handed out
    const std::vector<GraphEdge>& m_graph;
    std::vector<const Node*> m_nodes;
    std::vector<char> m_kept;
    std::vector<int> m_set;
    Eigen::VectorXd m_lengths;
    std::vector<std::vector<int>> m_members; ///< per set: nodes
    std::vector<char> m_floor;               ///< per set: an edge of it sees the floor
    std::vector<double> m_size;              ///< per set: log of its size in the poses as they stand
};

/// Adds what was found to an edge; a match only where neither of its features has a partner there.
bool join(Edge& edge, const Found& found)
{
    auto pose = std::make_shared<PairPose>(*edge.pose);
    pose->ties.insert(pose->ties.end(), found.ties.begin(), found.ties.end());
    bool joined = !found.ties.empty();
    for (PairInlier inlier : found.inliers) {
        if (edge.node_0 != found.node) std::swap(inlier.bearing_0, inlier.bearing_1);
        const bool taken =
            std::any_of(pose->inliers.begin(), pose->inliers.end(), [&](const PairInlier& other) {
                return other.bearing_0 == inlier.bearing_0 || other.bearing_1 == inlier.bearing_1;
            });
        if (taken) continue;
        pose->inliers.push_back(inlier);
        joined = true;
    }
    edge.pose = std::move(pose);
    return joined;
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
