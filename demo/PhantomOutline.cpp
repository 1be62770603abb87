#include "demo/PhantomOutline.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace demo {
namespace {

constexpr double pi = std::numbers::pi;
constexpr int rimPieces = 24;

// Root of a function that rises from low to high.
template <class Function>
double risingRoot(Function &&f, double low, double high)
{
    for (int step = 0; step < 60; ++step) {
        const double middle = 0.5 * (low + high);
        (f(middle) < 0.0 ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

// Place of the maximum of a function with a single one, by golden sections.
template <class Function>
double maximumPlace(Function &&f, double low, double high)
{
    const double part = 0.5 * (std::sqrt(5.0) - 1.0);
    for (int step = 0; step < 80; ++step) {
        const double first = high - part * (high - low), second = low + part * (high - low);
        if (f(first) < f(second))
            low = first;
        else
            high = second;
    }
    return 0.5 * (low + high);
}

// Works out the lines of one plane. Heights rise with `up` on every layer above the bone, and along both
// halves of the rim from its lowest to its highest place; the phantom's tilts are small enough for that.
class PlaneCut
{
public:
    PlaneCut(const PhantomBody &cutBody, double planeZ, int linePieces)
        : body(cutBody)
        , z(planeZ)
        , pieces(linePieces)
    {}

    SliceOutline outline() const
    {
        const double top = body.thicknessMm(rim(0.0));
        const std::optional<Ends> bone = rimEnds(0.0), surface = rimEnds(top);
        SliceOutline result;
        if (!bone && !surface)
            return result;
        if (bone)
            result.boneSide = line(*bone, false);
        if (surface)
            result.surfaceSide = line(*surface, true);
        if (bone && surface)
            joinBySides(result, top);
        else
            closeAcross(bone ? *bone : *surface, bone ? result.boneSide : result.surfaceSide);
        if (!surface)
            std::swap(result.boneSide, result.surfaceSide);
        return result;
    }

private:
    // Angles of the two places of the rim in the plane, on the outer and on the inner side.
    struct Ends
    {
        double outer, inner;
    };

    BonePlace rim(double angle) const
    {
        // A little less than the radius, so that the place counts as covered.
        const double radius = body.coveredRadius() * (1.0 - 1e-14);
        return {radius * std::cos(angle), radius * std::sin(angle)};
    }
    double above(const BonePlace &place, double height) const
    {
        return body.pointAbove(place, height)[2] - z;
    }
    double rimAbove(double angle, double height) const { return above(rim(angle), height); }

    std::optional<Ends> rimEnds(double height) const
    {
        const auto f = [&](double angle) { return rimAbove(angle, height); };
        const double highest = maximumPlace(f, 0.0, pi);
        const double lowest = maximumPlace([&](double angle) { return -f(angle); }, -pi, 0.0);
        if (f(highest) <= 0.0 || f(lowest) >= 0.0)
            return std::nullopt;
        const double inner = risingRoot(f, lowest, highest);
        // The outer half of the rim, run through backwards: there the height falls with the angle.
        const double outer =
            -risingRoot([&](double angle) { return f(-angle); }, -lowest - 2.0 * pi, -highest);
        return Ends{outer, inner};
    }

    std::vector<Point> line(const Ends &ends, bool surface) const
    {
        const auto height = [&](const BonePlace &place) { return surface ? body.thicknessMm(place) : 0.0; };
        const double from = rim(ends.outer).across, to = rim(ends.inner).across;
        std::vector<Point> points;
        for (int i = 0; i <= pieces; ++i) {
            if (i == 0 || i == pieces) {
                const BonePlace place = rim(i == 0 ? ends.outer : ends.inner);
                points.push_back(inPlane(place, height(place)));
                continue;
            }
            // Closer together near the ends, where the line may be steep.
            const double across = from + (to - from) * 0.5 * (1.0 - std::cos(pi * i / pieces));
            const double limit =
                std::sqrt(std::max(0.0, body.coveredRadius() * body.coveredRadius() - across * across));
            const double up = risingRoot(
                [&](double value) {
                    const BonePlace place{across, value};
                    return above(place, height(place));
                },
                -limit, limit);
            points.push_back(inPlane({across, up}, height({across, up})));
        }
        return points;
    }

    // The rim's sides between the ends of the bone line and those of the surface line.
    void joinBySides(SliceOutline &outline, double top) const
    {
        std::vector<Point> outer, inner;
        for (int i = 0; i < rimPieces; ++i) {
            const double height = top * i / rimPieces;
            if (const std::optional<Ends> ends = rimEnds(height)) {
                outer.push_back(inPlane(rim(ends->outer), height));
                inner.push_back(inPlane(rim(ends->inner), height));
            }
        }
        outline.surfaceSide.insert(outline.surfaceSide.begin(), outer.begin(), outer.end());
        outline.surfaceSide.insert(outline.surfaceSide.end(), inner.rbegin(), inner.rend());
    }

    // The rim's side between both ends of the one line there is, over its highest or lowest place.
    void closeAcross(const Ends &ends, std::vector<Point> &points) const
    {
        const double top = body.thicknessMm(rim(0.0));
        // Above the middle of the body the way leads over the highest place, at a quarter turn, else below.
        const bool over = z > body.centre()[2];
        const double outer = over ? ends.outer : ends.outer - 2.0 * pi;
        const int steps = std::max(pieces / 2, 1);
        for (int i = 1; i <= steps; ++i) {
            const double angle = ends.inner + (outer - ends.inner) * i / steps;
            const double foot = rimAbove(angle, 0.0), peak = rimAbove(angle, top);
            const double part = foot == peak ? 0.0 : std::clamp(foot / (foot - peak), 0.0, 1.0);
            points.push_back(inPlane(rim(angle), part * top));
        }
    }

    // What bisection leaves is rounding; the points belong to the plane.
    Point inPlane(const BonePlace &place, double height) const
    {
        Point point = body.pointAbove(place, height);
        point[2] = z;
        return point;
    }

    const PhantomBody &body;
    double z;
    int pieces;
};

} // namespace

SliceOutline cartilageOutline(const PhantomBody &body, double zMm, int pieces)
{
    return PlaneCut(body, zMm, pieces).outline();
}

double enclosedArea(const SliceOutline &outline)
{
    std::vector<Point> loop = outline.boneSide;
    loop.insert(loop.end(), outline.surfaceSide.rbegin(), outline.surfaceSide.rend());
    double twice = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const Point &p = loop[i], &q = loop[(i + 1) % loop.size()];
        twice += p[0] * q[1] - q[0] * p[1];
    }
    return 0.5 * std::abs(twice);
}

} // namespace demo
