#include "demo/PhantomTruth.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <numbers>
#include <ostream>
#include <string>

namespace demo {
namespace {

constexpr int areaPieces = 2000; // of each line of an outline
constexpr int waySteps = 400;    // from the ridge to the rim; even
constexpr int rimSteps = 400;    // around the rim
constexpr double longestLineMm = 60.0;
constexpr int searchedPieces =
    300; // of each line, and the distance of the planes, when distances are searched
constexpr double searchedStepMm = 0.2;

// Calls use(place, weight) on a grid of the covered places; the sum of weight * f is the integral of f over
// across * up. The grid runs on rays from the ridge to the rim (Simpson's rule) and around the rim, where the
// midpoint rule is exact for periodic functions up to rounding.
template <class Use>
void integrateCovered(const PhantomBody &body, Use &&use)
{
    const double radius = body.coveredRadius(), ridge = body.ridgeAcross();
    for (int j = 0; j < rimSteps; ++j) {
        const double angle = 2.0 * std::numbers::pi * (j + 0.5) / rimSteps;
        const double rayAcross = radius * std::cos(angle) - ridge, rayUp = radius * std::sin(angle);
        // Area swept by the ray per angle and per square of the way.
        const double sweep = radius * radius - ridge * radius * std::cos(angle);
        for (int i = 0; i <= waySteps; ++i) {
            const double way = static_cast<double>(i) / waySteps;
            const double simpson = i == 0 || i == waySteps ? 1.0 : i % 2 == 1 ? 4.0 : 2.0;
            const double weight =
                simpson / (3.0 * waySteps) * way * sweep * 2.0 * std::numbers::pi / rimSteps;
            use(BonePlace{ridge + way * rayAcross, way * rayUp}, weight);
        }
    }
}

double distanceToPiece(const Point &p, const Point &a, const Point &b)
{
    const Point edge{b[0] - a[0], b[1] - a[1], b[2] - a[2]}, way{p[0] - a[0], p[1] - a[1], p[2] - a[2]};
    const double square = edge[0] * edge[0] + edge[1] * edge[1] + edge[2] * edge[2];
    const double along = edge[0] * way[0] + edge[1] * way[1] + edge[2] * way[2];
    const double part = square > 0.0 ? std::clamp(along / square, 0.0, 1.0) : 0.0;
    return std::hypot(way[0] - part * edge[0], way[1] - part * edge[1], way[2] - part * edge[2]);
}

double distanceToLines(const Point &point, const std::vector<std::vector<Point>> &lines)
{
    double nearest = std::numeric_limits<double>::infinity();
    for (const std::vector<Point> &line : lines)
        for (std::size_t i = 0; i + 1 < line.size(); ++i)
            nearest = std::min(nearest, distanceToPiece(point, line[i], line[i + 1]));
    return nearest;
}

// Lines on the cartilage's surface in planes close together, between two planes.
std::vector<std::vector<Point>> surfaceLines(const PhantomBody &body, double fromZ, double toZ)
{
    const int steps = static_cast<int>(std::ceil((toZ - fromZ) / searchedStepMm));
    std::vector<std::vector<Point>> lines;
    for (int i = 0; i <= steps; ++i)
        lines.push_back(
            cartilageOutline(body, fromZ + (toZ - fromZ) * i / steps, searchedPieces).surfaceSide);
    return lines;
}

double meanDistance(const PhantomBody &body, const std::vector<double> &planes)
{
    const std::vector<std::vector<Point>> surface = surfaceLines(body, planes.front(), planes.back());
    double sum = 0.0, length = 0.0;
    for (const double z : planes) {
        const std::vector<Point> bone = cartilageOutline(body, z, searchedPieces).boneSide;
        for (std::size_t i = 0; i + 1 < bone.size(); ++i) {
            const double piece = std::hypot(bone[i + 1][0] - bone[i][0], bone[i + 1][1] - bone[i][1]);
            const Point middle{(bone[i][0] + bone[i + 1][0]) / 2.0, (bone[i][1] + bone[i + 1][1]) / 2.0, z};
            sum += piece * distanceToLines(middle, surface);
            length += piece;
        }
    }
    return sum / length;
}

std::ostream &plain(std::ostream &stream, int decimals)
{
    stream.imbue(std::locale::classic());
    stream.setf(std::ios::fixed, std::ios::floatfield);
    stream.precision(decimals);
    return stream;
}

void writeLine(std::ostream &stream, const PhantomParameters &parameters, int programSlice, const char *side,
               const std::vector<Point> &points, double stepMm)
{
    double since = stepMm;
    int number = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i > 0)
            since += std::hypot(points[i][0] - points[i - 1][0], points[i][1] - points[i - 1][1]);
        if (since < stepMm && i + 1 != points.size())
            continue;
        since = 0.0;
        const Point world = programWorld(parameters, points[i]);
        stream << programSlice << '\t' << side << '\t' << number++ << '\t' << world[0] << '\t' << world[1]
               << '\t' << world[2] << '\n';
    }
}

} // namespace

double slicePlaneMm(const PhantomParameters &parameters, int slice)
{
    return (slice + 0.5) * parameters.spacingMm[2];
}

Point programWorld(const PhantomParameters &parameters, const Point &point)
{
    return {point[0], parameters.height * parameters.spacingMm[1] - point[1], point[2]};
}

PhantomTruth phantomTruth(const PhantomParameters &parameters)
{
    const PhantomBody body(parameters);
    PhantomTruth truth;
    for (int slice = 0; slice < parameters.slices; ++slice)
        truth.areaMm2.push_back(
            enclosedArea(cartilageOutline(body, slicePlaneMm(parameters, slice), areaPieces)));

    double thicknessSum = 0.0;
    truth.minimumThicknessMm = truth.maximumThicknessMm = parameters.ridgeThicknessMm;
    // A layer of thickness T over a surface of mean curvature H and Gaussian curvature K has T + H T^2 + K
    // T^3 / 3 of volume per area.
    integrateCovered(body, [&](const BonePlace &place, double weight) {
        const double area = weight * body.areaDensity(place);
        const double t = body.thicknessMm(place);
        truth.interfaceAreaMm2 += area;
        thicknessSum += area * t;
        truth.volumeMm3 +=
            area * (t + body.meanCurvature(place) * t * t + body.gaussianCurvature(place) * t * t * t / 3.0);
        truth.minimumThicknessMm = std::min(truth.minimumThicknessMm, t);
        truth.maximumThicknessMm = std::max(truth.maximumThicknessMm, t);
    });
    truth.meanThicknessMm = thicknessSum / truth.interfaceAreaMm2;
    return truth;
}

TracedTruth tracedTruth(const PhantomParameters &parameters, int firstSlice, int count)
{
    const PhantomBody body(parameters);
    TracedTruth truth;
    std::vector<double> planes;
    for (int slice = firstSlice; slice < firstSlice + count; ++slice) {
        planes.push_back(slicePlaneMm(parameters, slice));
        truth.volumeMm3 +=
            enclosedArea(cartilageOutline(body, planes.back(), areaPieces)) * parameters.spacingMm[2];
    }
    double area = 0.0, thicknessSum = 0.0;
    integrateCovered(body, [&](const BonePlace &place, double weight) {
        const double z = body.pointAbove(place, 0.0)[2];
        if (z < planes.front() || z > planes.back())
            return;
        area += weight * body.areaDensity(place);
        thicknessSum += weight * body.areaDensity(place) * body.thicknessMm(place);
    });
    truth.meanThicknessMm = thicknessSum / area;
    truth.meanMinimalThicknessMm = meanDistance(body, planes);
    return truth;
}

void writeTruth(std::ostream &stream, const PhantomParameters &parameters)
{
    const PhantomTruth truth = phantomTruth(parameters);
    plain(stream, 4);
    stream << "# True measures of the phantom's patellar cartilage, from its formulas\n"
              "# slice: from 0, as the program counts them in a series opened without an input filter;\n"
              "# z: centre plane\n"
              "# area: section of the cartilage in that plane\n"
              "slice\tinstance\tz_mm\tarea_mm2\n";
    const int count = parameters.slices;
    for (int slice = 0; slice < count; ++slice)
        stream << slice << '\t' << slice + 1 << '\t' << slicePlaneMm(parameters, slice) << '\t'
               << truth.areaMm2[static_cast<std::size_t>(slice)] << '\n';
    stream << "\n# thickness: length of the bone surface's outward normal inside the cartilage, over the "
              "interface of\n"
              "# bone and cartilage; its mean is weighted by area\n"
              "quantity\tvalue\n"
           << "volume_mm3\t" << truth.volumeMm3 << '\n'
           << "interface_area_mm2\t" << truth.interfaceAreaMm2 << '\n'
           << "thickness_minimum_mm\t" << truth.minimumThicknessMm << '\n'
           << "thickness_mean_mm\t" << truth.meanThicknessMm << '\n'
           << "thickness_maximum_mm\t" << truth.maximumThicknessMm << '\n';
}

void writeOutlines(std::ostream &stream, const PhantomParameters &parameters, double stepMm)
{
    const PhantomBody body(parameters);
    plain(stream, 5);
    stream << "# True outlines of the phantom's patellar cartilage, in the program's world: voxel index "
              "times spacing,\n"
              "# centre of voxel (i, j, k) at ((i + 0.5) sx, (j + 0.5) sy, (k + 0.5) sz), series opened "
              "without an input filter\n"
              "# side: bone or surface; both lines run in order between the same two points and close the "
              "outline\n"
              "slice\tside\tpoint\tx_mm\ty_mm\tz_mm\n";
    const int pieces = std::max(4, static_cast<int>(std::ceil(4.0 * longestLineMm / stepMm)));
    for (int slice = 0; slice < parameters.slices; ++slice) {
        const SliceOutline outline = cartilageOutline(body, slicePlaneMm(parameters, slice), pieces);
        writeLine(stream, parameters, slice, "bone", outline.boneSide, stepMm);
        writeLine(stream, parameters, slice, "surface", outline.surfaceSide, stepMm);
    }
}

} // namespace demo
