#include "demo/PhantomVolume.h"

#include "Common/ParallelFor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <random>

namespace demo {
namespace {

constexpr double shellMm = 1.1;
constexpr double jointSpaceMm = 1.9;
constexpr double recessRadius = 0.97; // of the scaled place on the bone up to which the fluid reaches
constexpr double femoralCartilageMm = 2.4;
constexpr std::array<int, 3> samplesPerVoxel{6, 6, 8};

struct Ellipsoid
{
    Point centre, radii;

    // Below 1 inside.
    double at(const Point &point, double growMm = 0.0) const
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            const double scaled = (point[i] - centre[i]) / (radii[i] + growMm);
            sum += scaled * scaled;
        }
        return sum;
    }
};

// In mm relative to the middle of the volume across, its upper edge, and its middle along z, for a right
// knee.
const std::array<Ellipsoid, 3> femur{Ellipsoid{{-17.5, 58.0, 0.0}, {22.0, 24.0, 62.0}},
                                     Ellipsoid{{19.5, 59.0, 2.0}, {20.0, 22.5, 58.0}},
                                     Ellipsoid{{0.5, 75.0, 0.0}, {39.0, 33.0, 80.0}}};
const Ellipsoid jointCapsule{{1.0, 37.0, 0.0}, {28.0, 9.5, 24.0}};
const Ellipsoid leg{{0.0, 72.0, 0.0}, {51.0, 67.0, 400.0}};

bool isFemur(const Point &point, double growMm)
{
    return std::any_of(femur.begin(), femur.end(),
                       [&](const Ellipsoid &part) { return part.at(point, growMm) <= 1.0; });
}

double squaredDistance(const Point &p, const Point &q)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        sum += (p[i] - q[i]) * (p[i] - q[i]);
    return sum;
}

// Mean brightness of points spread evenly over one voxel.
double sampledVoxel(const PhantomAnatomy &anatomy, const Point &corner, const Point &spacing)
{
    double sum = 0.0;
    for (int k = 0; k < samplesPerVoxel[2]; ++k)
        for (int j = 0; j < samplesPerVoxel[1]; ++j)
            for (int i = 0; i < samplesPerVoxel[0]; ++i)
                sum +=
                    brightness(anatomy.tissueAt({corner[0] + (i + 0.5) / samplesPerVoxel[0] * spacing[0],
                                                 corner[1] + (j + 0.5) / samplesPerVoxel[1] * spacing[1],
                                                 corner[2] + (k + 0.5) / samplesPerVoxel[2] * spacing[2]}));
    return sum / (samplesPerVoxel[0] * samplesPerVoxel[1] * samplesPerVoxel[2]);
}

// Tissues at the corners of the voxels in one plane of constant z, (width + 1) * (height + 1).
std::vector<Tissue> cornerTissues(const PhantomAnatomy &anatomy, const PhantomParameters &p, double z)
{
    std::vector<Tissue> tissues;
    tissues.reserve(static_cast<std::size_t>(p.width + 1) * static_cast<std::size_t>(p.height + 1));
    for (int y = 0; y <= p.height; ++y)
        for (int x = 0; x <= p.width; ++x)
            tissues.push_back(anatomy.tissueAt({x * p.spacingMm[0], y * p.spacingMm[1], z}));
    return tissues;
}

// Brightness of one slice without noise. A voxel with the same tissue at all corners and in its middle is
// taken to be of that tissue.
void fillSlice(const PhantomAnatomy &anatomy, const PhantomParameters &p, int slice, double *values)
{
    const double z = slice * p.spacingMm[2];
    const std::array<std::vector<Tissue>, 2> planes{cornerTissues(anatomy, p, z),
                                                    cornerTissues(anatomy, p, z + p.spacingMm[2])};
    const std::size_t row = static_cast<std::size_t>(p.width) + 1;
    for (int y = 0; y < p.height; ++y) {
        for (int x = 0; x < p.width; ++x) {
            const Point corner{x * p.spacingMm[0], y * p.spacingMm[1], z};
            const Tissue middle =
                anatomy.tissueAt({corner[0] + 0.5 * p.spacingMm[0], corner[1] + 0.5 * p.spacingMm[1],
                                  z + 0.5 * p.spacingMm[2]});
            bool uniform = true;
            for (const std::vector<Tissue> &plane : planes)
                for (std::size_t j = 0; j < 2; ++j)
                    for (std::size_t i = 0; i < 2; ++i)
                        uniform = uniform && plane[(static_cast<std::size_t>(y) + j) * row +
                                                   static_cast<std::size_t>(x) + i] == middle;
            *values++ = uniform ? brightness(middle) : sampledVoxel(anatomy, corner, p.spacingMm);
        }
    }
}

// Normal deviates from the raw numbers of the generator, the same with every standard library.
class NormalDeviates
{
public:
    explicit NormalDeviates(std::uint32_t seed)
        : generator(seed)
    {}

    // Two independent ones.
    std::array<double, 2> next()
    {
        const double radius = std::sqrt(-2.0 * std::log(unit())), angle = 2.0 * std::numbers::pi * unit();
        return {radius * std::cos(angle), radius * std::sin(angle)};
    }

private:
    // Above 0, at most 1.
    double unit() { return (static_cast<double>(generator()) + 1.0) / 4294967296.0; }

    std::mt19937 generator;
};

} // namespace

double brightness(Tissue tissue)
{
    switch (tissue) {
    case Tissue::Air:
        return 0.0;
    case Tissue::Skin:
        return 330.0;
    case Tissue::Fat:
        return 120.0;
    case Tissue::Muscle:
        return 260.0;
    case Tissue::Fluid:
        return 190.0;
    case Tissue::CorticalBone:
        return 30.0;
    case Tissue::Bone:
        return 95.0;
    case Tissue::Cartilage:
    case Tissue::FemoralCartilage:
        return 620.0;
    }
    return 0.0;
}

PhantomAnatomy::PhantomAnatomy(const PhantomParameters &parameters)
    : body(parameters)
    , extent{parameters.width * parameters.spacingMm[0], parameters.height * parameters.spacingMm[1],
             parameters.slices * parameters.spacingMm[2]}
    , mirrored(parameters.mirrored)
{}

Tissue PhantomAnatomy::tissueAt(const Point &point) const
{
    if (squaredDistance(point, mirrored
                                   ? Point{extent[0] - body.centre()[0], body.centre()[1], body.centre()[2]}
                                   : body.centre()) <=
        (body.radiusMm() + jointSpaceMm) * (body.radiusMm() + jointSpaceMm)) {
        if (body.isBone(point))
            return body.isShell(point, shellMm) ? Tissue::CorticalBone : Tissue::Bone;
        if (const auto foot = body.footBehind(point)) {
            const double thickness = body.thicknessMm(foot->place);
            if (body.isCovered(foot->place) && foot->distanceMm <= thickness)
                return Tissue::Cartilage;
            if (std::hypot(foot->place.across, foot->place.up) <= recessRadius &&
                foot->distanceMm <= thickness + jointSpaceMm)
                return Tissue::Fluid;
        }
    }
    return femurAndSoftTissue(point);
}

Tissue PhantomAnatomy::femurAndSoftTissue(const Point &point) const
{
    const double x = mirrored ? extent[0] - point[0] : point[0];
    const Point p{x - 0.5 * extent[0], point[1], point[2] - 0.5 * extent[2]};
    const bool inJoint = jointCapsule.at(p) <= 1.0;
    if (isFemur(p, -femoralCartilageMm))
        return isFemur(p, -femoralCartilageMm - shellMm) ? Tissue::Bone : Tissue::CorticalBone;
    if (isFemur(p, 0.0))
        return jointCapsule.at(p, 6.0) <= 1.0 ? Tissue::FemoralCartilage : Tissue::CorticalBone;
    if (inJoint)
        return Tissue::Fluid;
    if (leg.at(p) > 1.0)
        return Tissue::Air;
    if (leg.at(p, -1.4) > 1.0)
        return Tissue::Skin;
    return leg.at(p, -5.0) > 1.0 ? Tissue::Fat : Tissue::Muscle;
}

std::vector<std::int16_t> phantomVoxels(const PhantomParameters &parameters)
{
    const PhantomAnatomy anatomy(parameters);
    const std::size_t sliceSize =
        static_cast<std::size_t>(parameters.width) * static_cast<std::size_t>(parameters.height);
    std::vector<double> values(sliceSize * static_cast<std::size_t>(parameters.slices));
    MERV::parallelFor(parameters.slices, [&](int slice) {
        fillSlice(anatomy, parameters, slice, values.data() + static_cast<std::size_t>(slice) * sliceSize);
    });
    NormalDeviates noise(parameters.seed);
    std::vector<std::int16_t> voxels(values.size());
    std::transform(values.begin(), values.end(), voxels.begin(), [&](double value) {
        const auto [real, imaginary] = noise.next();
        const double magnitude =
            std::hypot(value + parameters.noiseSigma * real, parameters.noiseSigma * imaginary);
        return static_cast<std::int16_t>(
            std::min(std::round(magnitude), static_cast<double>(std::numeric_limits<std::int16_t>::max())));
    });
    return voxels;
}

std::unique_ptr<MERV::Image> phantomImage(const PhantomParameters &parameters)
{
    const std::vector<std::int16_t> voxels = phantomVoxels(parameters);
    std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeShort));
    image->setDimensions(parameters.width, parameters.height, parameters.slices, 1, 1);
    image->setSpacing(static_cast<float>(parameters.spacingMm[0]),
                      static_cast<float>(parameters.spacingMm[1]),
                      static_cast<float>(parameters.spacingMm[2]), 1.0f);
    const auto width = static_cast<std::size_t>(parameters.width);
    const auto height = static_cast<std::size_t>(parameters.height);
    const auto slices = static_cast<std::size_t>(parameters.slices);
    auto *row = static_cast<short *>(image->getData());
    for (std::size_t z = 0; z < slices; ++z)
        for (std::size_t y = height; y-- > 0; row += width)
            std::copy_n(voxels.data() + (z * height + y) * width, width, row);
    image->computeMinMax();
    return image;
}

} // namespace demo
