#include "meshes/BandedStrip.h"

#include <algorithm>
#include <cmath>

namespace {

Vector3 blend(const Vector3 &to, double t, const Vector3 &from)
{
    return {to.x * t + from.x * (1.0 - t), to.y * t + from.y * (1.0 - t), to.z * t + from.z * (1.0 - t)};
}

// A corner, or the place that has moved from a corner towards a higher one.
struct Place
{
    Vector3 position;
    double value = 0.0;

    // Goes on towards the end, to where the value is b.
    void moveTo(double b, const Place &end)
    {
        position = blend(end.position, (b - value) / (end.value - value), position);
        value = b;
    }
};

// The vertices that a strip is made of, one after the other.
class StripMaker
{
public:
    StripMaker(BandedStrip &newStrip, const ColourScale &newScale)
        : strip(newStrip)
        , scale(newScale)
    {}

    // The whole strip between three corners of rising value.
    void make(const Place &lo, const Place &mid, const Place &hi)
    {
        k = scale.breakAbove(lo.value);
        Place onLongSide = lo, onShortSide = lo;
        add(lo);
        cross(mid.value, onShortSide, mid, onLongSide, hi);
        add(mid);
        onShortSide = mid;
        cross(hi.value, onLongSide, hi, onShortSide, hi);
        add(hi);
    }

private:
    // Two vertices at each break below the limit: first on one side, then on the other one.
    void cross(double limit, Place &first, const Place &firstEnd, Place &second, const Place &secondEnd)
    {
        for (; k < static_cast<int>(scale.breaks.size()); ++k) {
            const double b = scale.breaks[static_cast<std::size_t>(k)];
            if (!(limit > b))
                return;
            first.moveTo(b, firstEnd);
            add(first);
            second.moveTo(b, secondEnd);
            add(second);
        }
    }

    void add(const Place &place)
    {
        strip.storage[strip.count++] = {place.position, scale.colour(k, place.value)};
    }

    BandedStrip &strip;
    const ColourScale &scale;
    int k = 0;
};

} // namespace

RisingOrder risingOrder(const std::array<double, 3> &fractions)
{
    const auto [f0, f1, f2] = fractions;
    if (f0 == f1 && f1 < f2) // the tests below would take the largest value for the lowest
        return {0, 1, 2, false};
    if (f1 > f0 && f2 > f0)
        return f2 > f1 ? RisingOrder{0, 1, 2, false} : RisingOrder{0, 2, 1, true};
    if (f0 > f1 && f2 > f1)
        return f2 > f0 ? RisingOrder{1, 0, 2, true} : RisingOrder{1, 2, 0, false};
    return f1 > f0 ? RisingOrder{2, 0, 1, false} : RisingOrder{2, 1, 0, true};
}

BandedStrip bandedStrip(const std::array<Vector3, 3> &corners, const std::array<double, 3> &fractions,
                        const ColourScale &scale)
{
    BandedStrip strip;
    const RisingOrder order = risingOrder(fractions);
    strip.isReversed = order.isReversed;
    const auto corner = [&](int index) {
        const auto i = static_cast<std::size_t>(index);
        return Place{corners[i], fractions[i]};
    };
    if (std::all_of(fractions.begin(), fractions.end(), [](double f) { return std::isfinite(f); })) {
        StripMaker(strip, scale).make(corner(order.lo), corner(order.mid), corner(order.hi));
        return strip;
    }
    for (const int index : {order.lo, order.mid, order.hi})
        strip.storage[strip.count++] = {corner(index).position, scale.colours.front()};
    return strip;
}
