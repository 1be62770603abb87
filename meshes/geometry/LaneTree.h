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
// in the order of arrangeByPlace(). Both answer mayMatter(query) by lane, for nodes never yes in a lane that
// was not filled; a leaf hands the items of a lane to consider(lane, consider).
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

    // consider may change the query, if only to narrow what matters.
    template <class Query, class Consider>
    void visit(Query &query, const Consider &consider) const
    {
        constexpr std::array<std::uint32_t, lanes> roots{0, 1, 2, 3};
        const std::size_t count = levels.empty() ? leaves.size() : levels.back().size();
        visit(levels.size(), std::span(roots).first(count), query, consider);
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

    // Nodes are asked some at a time, without a branch on the answer: neither a wrong guess of the processor
    // nor its wait for memory then holds up the next ones.
    static constexpr std::size_t atATime = 16;

    // Those with these numbers, of the leaves (height 0) or of the nodes above them.
    template <class Query, class Consider>
    void visit(std::size_t height, std::span<const std::uint32_t> some, Query &query,
               const Consider &consider) const
    {
        if (height == 0)
            return visitLeaves(some, query, consider);
        std::array<std::uint32_t, atATime * lanes> children;
        std::size_t count = 0;
        for (const std::uint32_t i : some) {
            const Mask4 matters = levels[height - 1][i].mayMatter(query);
            const auto [low, high] = std::bit_cast<std::array<std::uint64_t, 2>>(matters);
            std::uint32_t child = i * static_cast<std::uint32_t>(lanes);
            for (const std::uint64_t bit : {low & 1, low >> 63, high & 1, high >> 63}) {
                children[count] = child++; // overwritten by the next one if it does not matter
                count += bit;
            }
        }
        for (std::size_t first = 0; first < count; first += atATime)
            visit(height - 1, std::span(children).subspan(first, std::min(atATime, count - first)), query,
                  consider);
    }

    template <class Query, class Consider>
    void visitLeaves(std::span<const std::uint32_t> some, Query &query, const Consider &consider) const
    {
        for (const std::uint32_t i : some) {
            const Mask4 matters = leaves[i].mayMatter(query);
            if (!anyLane(matters))
                continue;
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                if (matters[lane] != 0)
                    leaves[i].consider(lane, consider);
            }
        }
    }
};

} // namespace MERV::BRep
