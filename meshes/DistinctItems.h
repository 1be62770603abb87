#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

// Equal numbers, -0.0 and 0.0 among them, have equal hashes.
inline std::size_t hashOfNumbers(std::initializer_list<double> numbers)
{
    std::uint64_t hash = 0;
    for (const double number : numbers) {
        hash ^= std::bit_cast<std::uint64_t>(number == 0.0 ? 0.0 : number);
        hash *= 0x9E3779B97F4A7C15U; // 2^64 / golden ratio: spreads each bit upwards
        hash ^= hash >> 32U;
    }
    return hash;
}

// The items met so far, each once, in the order in which they come first; found again through a hash table of
// open addresses. Equality has the functions hash(item) and same(item, item). An item that is not the same as
// itself, as a NaN, is taken each time.
template <class Item, class Equality>
class DistinctItems
{
public:
    explicit DistinctItems(std::size_t maximalCount)
        : places(std::bit_ceil(2 * maximalCount + 1), none)
    {}

    // The index of the item, or of the same one that came before.
    std::size_t add(const Item &item)
    {
        if (!Equality::same(item, item))
            return append(item);
        std::size_t place = Equality::hash(item) & (places.size() - 1);
        for (; places[place] != none; place = (place + 1) & (places.size() - 1))
            if (Equality::same(items[places[place]], item))
                return places[place];
        return places[place] = append(item);
    }

    std::vector<Item> take() { return std::move(items); }

private:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    std::size_t append(const Item &item)
    {
        items.push_back(item);
        return items.size() - 1;
    }

    std::vector<Item> items;
    std::vector<std::size_t> places; // indexes of items
};
