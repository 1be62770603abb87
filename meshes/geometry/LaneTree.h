#pragma once

#include "meshes/geometry/Float4.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MERV::BRep {

// The answer of a comparison: all bits are set in the lanes where it holds.
using Mask4 = std::int32_t __attribute__((vector_size(16)));

inline bool anyLane(Mask4 mask)
{
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(mask);
    return (halves[0] | halves[1]) != 0;
}

// What the tree's order is made from: a place in a space of K dimensions, and what lies there.
template <std::size_t K>
struct Placed
{
    std::array<float, K> place;
    std::uint32_t item;
};

// Brings neighbours together: every aligned run of 2^n elements is one half of a run of 2^(n + 1), which is
// cut at its median across its longest side.
template <std::size_t K>
void arrangeByPlace(std::span<Placed<K>> items)
{
    if (items.size() <= lanes)
        return;
    std::array<float, K> low = items.front().place, high = low;
    for (const Placed<K> &each : items) {
        for (std::size_t k = 0; k < K; ++k) {
            low[k] = std::min(low[k], each.place[k]);
            high[k] = std::max(high[k], each.place[k]);
        }
    }
    std::size_t longest = 0;
    for (std::size_t k = 1; k < K; ++k) {
        if (high[k] - low[k] > high[longest] - low[longest])
            longest = k;
    }
    const std::size_t cut = std::bit_floor(items.size() - 1);
    std::nth_element(
        items.begin(), items.begin() + static_cast<std::ptrdiff_t>(cut), items.end(),
        [longest](const Placed<K> &a, const Placed<K> &b) { return a.place[longest] < b.place[longest]; });
    arrangeByPlace(items.first(cut));
    arrangeByPlace(items.subspan(cut));
}

// A tree without links: each leaf holds four items, each node bounds four leaves or nodes of the level below,
// in the order of arrangeByPlace(). Both answer mayMatter(query), by lane; a leaf hands the items of a lane
// to consider(lane, query, consider).
template <class Leaf, class Node>
class LaneTree
{
public:
    // fillLeaf(leaf, first, count) and fillNode(node, lane, first, count) get the items, by place in the
    // order, that the leaf or the lane of the node is to hold or bound.
    template <class FillLeaf, class FillNode>
    void build(std::size_t itemCount, const FillLeaf &fillLeaf, const FillNode &fillNode)
    {
        leaves.resize((itemCount + lanes - 1) / lanes);
        for (std::size_t i = 0; i < leaves.size(); ++i)
            fillLeaf(leaves[i], i * lanes, std::min(lanes, itemCount - i * lanes));
        std::size_t below = leaves.size();
        for (std::size_t span = lanes; below > lanes; span *= lanes) {
            auto &level = levels.emplace_back((below + lanes - 1) / lanes);
            for (std::size_t child = 0; child < below; ++child)
                fillNode(level[child / lanes], child % lanes, child * span,
                         std::min(span, itemCount - child * span));
            below = level.size();
        }
    }

    template <class Query, class Consider>
    void visit(Query &query, const Consider &consider) const
    {
        if (levels.empty())
            visitLeaves(0, leaves.size(), query, consider);
        else
            visitNodes(levels.size() - 1, 0, levels.back().size(), query, consider);
    }

    std::size_t bytes() const
    {
        std::size_t sum = leaves.capacity() * sizeof(Leaf);
        for (const auto &level : levels)
            sum += level.capacity() * sizeof(Node);
        return sum;
    }

private:
    std::vector<Leaf> leaves;
    std::vector<std::vector<Node>> levels; // the first one is above the leaves

    template <class Query, class Consider>
    void visitNodes(std::size_t level, std::size_t first, std::size_t last, Query &query,
                    const Consider &consider) const
    {
        const std::size_t below = level == 0 ? leaves.size() : levels[level - 1].size();
        for (std::size_t i = first; i < last; ++i) {
            const Mask4 mask = levels[level][i].mayMatter(query);
            if (!anyLane(mask))
                continue;
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                const std::size_t child = i * lanes + lane;
                if (mask[lane] == 0 || child >= below)
                    continue;
                if (level == 0)
                    visitLeaves(child, child + 1, query, consider);
                else
                    visitNodes(level - 1, child, child + 1, query, consider);
            }
        }
    }

    template <class Query, class Consider>
    void visitLeaves(std::size_t first, std::size_t last, Query &query, const Consider &consider) const
    {
        for (std::size_t i = first; i < last; ++i) {
            const Mask4 mask = leaves[i].mayMatter(query);
            if (!anyLane(mask))
                continue;
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                if (mask[lane] != 0)
                    leaves[i].consider(lane, consider);
            }
        }
    }
};

} // namespace MERV::BRep
