#include "meshes/ColouredTriangles.h"

#include "meshes/BandedStrip.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

using Floats = std::array<float, 3>;
using Corners = std::array<Vector3, 3>;

constexpr Floats red{1.0f, 0.0f, 0.0f};

Floats single(const Vector3 &v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

bool isFinite(const Floats &floats)
{
    return std::all_of(floats.begin(), floats.end(), [](float f) { return std::isfinite(f); });
}

Vector3 euclideanPlace(const MERV::BRep::Point &point)
{
    const MERV::BRep::Point place = euclidean(point);
    return {place.x, place.y, place.z};
}

double largestOf(const SampleMap &samples)
{
    double largest = 0.0;
    for (const auto &[position, value] : samples) {
        if (value > largest)
            largest = value;
    }
    return largest;
}

class Builder
{
public:
    Builder(const SampleMap &newSamples, const ColourScale &newScale)
        : samples(newSamples)
        , scale(newScale)
        , largest(largestOf(newSamples))
    {}

    void add(const MERV::BRep::TriFace &face)
    {
        if (!face.isValid())
            return;
        const Corners corners{euclideanPlace(face.vertex(0)), euclideanPlace(face.vertex(1)),
                              euclideanPlace(face.vertex(2))};
        const MERV::BRep::Point upright = face.normal();
        const Floats normal = single({upright.x, upright.y, upright.z});
        if (!isFinite(normal) || !isFinite(single(corners[0])) || !isFinite(single(corners[1])) ||
            !isFinite(single(corners[2])))
            return;
        if (const auto fractions = fractionsAt(corners))
            addBanded(corners, *fractions, normal);
        else
            addHatched(corners, normal);
    }

    ColouredTriangles take() { return std::move(result); }

private:
    std::optional<std::array<double, 3>> fractionsAt(const Corners &corners) const
    {
        std::array<double, 3> fractions{};
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const auto found = samples.find(corners[i]);
            if (found == samples.end())
                return {};
            fractions[i] = found->second / largest;
        }
        return fractions;
    }

    void addBanded(const Corners &corners, const std::array<double, 3> &fractions, const Floats &normal)
    {
        const BandedStrip strip = bandedStrip(corners, fractions, scale);
        const float turn = strip.isReversed ? -1.0f : 1.0f;
        const auto first = static_cast<std::uint32_t>(result.vertices.size());
        for (const auto &[position, colour] : strip.vertices())
            result.vertices.push_back({single(position),
                                       {turn * normal[0], turn * normal[1], turn * normal[2]},
                                       {colour[0], colour[1], colour[2]}});
        // The triangles of a strip: the first two vertices of every second one change places.
        const auto triangles = static_cast<std::uint32_t>(strip.count - 2);
        for (std::uint32_t i = 0; i < triangles; ++i)
            addTriangle(false, first + i + i % 2, first + i + 1 - i % 2, first + i + 2);
    }

    void addHatched(const Corners &corners, const Floats &normal)
    {
        const auto first = static_cast<std::uint32_t>(result.vertices.size());
        for (const Vector3 &corner : corners)
            result.vertices.push_back({single(corner), normal, red});
        addTriangle(true, first, first + 1, first + 2);
    }

    void addTriangle(bool isHatched, std::uint32_t a, std::uint32_t b, std::uint32_t c)
    {
        if (result.runs.empty() || result.runs.back().isHatched != isHatched)
            result.runs.push_back({isHatched, result.indices.size(), 0});
        result.indices.insert(result.indices.end(), {a, b, c});
        result.runs.back().count += 3;
    }

    const SampleMap &samples;
    const ColourScale &scale;
    const double largest;
    ColouredTriangles result;
};

} // namespace

std::size_t ColouredTriangles::memory() const
{
    return vertices.capacity() * sizeof(Vertex) + indices.capacity() * sizeof(std::uint32_t) +
           runs.capacity() * sizeof(Run);
}

ColouredTriangles colouredTriangles(std::span<const MERV::BRep::TriFace> faces, const SampleMap &samples,
                                    const ColourScale &scale)
{
    Builder builder(samples, scale);
    for (const MERV::BRep::TriFace &face : faces)
        builder.add(face);
    ColouredTriangles triangles = builder.take();
    triangles.vertices.shrink_to_fit();
    triangles.indices.shrink_to_fit();
    return triangles;
}
