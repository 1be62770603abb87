#include "demo/PhantomTruth.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <locale>
#include <map>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

using demo::PhantomBody;
using demo::PhantomParameters;
using demo::PhantomTruth;
using demo::Point;

namespace {

constexpr double pi = std::numbers::pi;

// Ends of the intervals of [low, high] where inside() holds, from steps and bisection.
std::vector<double> changes(const std::function<bool(double)> &inside, double low, double high, double step)
{
    std::vector<double> result;
    bool before = inside(low);
    for (int i = 0; low + i * step < high; ++i) {
        const double at = low + i * step;
        const bool now = inside(at + step);
        if (now != before) {
            double from = at, to = at + step;
            for (int halving = 0; halving < 40; ++halving) {
                const double middle = 0.5 * (from + to);
                (inside(middle) == before ? from : to) = middle;
            }
            result.push_back(0.5 * (from + to));
        }
        before = now;
    }
    return result;
}

// Area of the cartilage in a plane, by lines along y.
double areaByLines(const PhantomBody &body, double z)
{
    const double step = 0.04;
    double area = 0.0;
    for (int line = 0; line < 1250; ++line) { // 25 mm to either side
        const double x = body.centre()[0] - 25.0 + line * step;
        const std::vector<double> ends = changes(
            [&](double y) {
                return body.isCartilage({x, y, z});
            },
            body.centre()[1] - 8.0, body.centre()[1] + 16.0, 0.08);
        for (std::size_t i = 0; i + 1 < ends.size(); i += 2)
            area += (ends[i + 1] - ends[i]) * step;
    }
    return area;
}

// From the middle of the bone, in spherical angles about the axis to the back.
Point along(const Point &centre, double polar, double azimuth, double radius)
{
    return {centre[0] + radius * std::sin(polar) * std::cos(azimuth), centre[1] + radius * std::cos(polar),
            centre[2] + radius * std::sin(polar) * std::sin(azimuth)};
}

double volumeByRays(const PhantomBody &body)
{
    const int polarSteps = 160, azimuthSteps = 200;
    const double dPolar = 0.7 * pi / polarSteps, dAzimuth = 2.0 * pi / azimuthSteps;
    double volume = 0.0;
    for (int i = 0; i < polarSteps; ++i)
        for (int j = 0; j < azimuthSteps; ++j) {
            const double polar = (i + 0.5) * dPolar, azimuth = (j + 0.5) * dAzimuth;
            const std::vector<double> ends = changes(
                [&](double radius) { return body.isCartilage(along(body.centre(), polar, azimuth, radius)); },
                5.0, 27.0, 0.15);
            for (std::size_t k = 0; k + 1 < ends.size(); k += 2)
                volume += (std::pow(ends[k + 1], 3) - std::pow(ends[k], 3)) / 3.0 * std::sin(polar) * dPolar *
                          dAzimuth;
        }
    return volume;
}

struct Thickness
{
    double area = 0.0, sum = 0.0, least = 1e9, most = 0.0;
};

// Triangles of points on the bone that rays from its middle find; thickness by steps along the triangle's
// normal.
class MeshedInterface
{
public:
    explicit MeshedInterface(const PhantomBody &interfaceBody)
        : body(interfaceBody)
    {}

    Thickness measure()
    {
        const int polarSteps = 130, azimuthSteps = 260;
        std::vector<std::vector<Point>> points;
        for (int i = 0; i <= polarSteps; ++i) {
            points.emplace_back();
            for (int j = 0; j <= azimuthSteps; ++j)
                points.back().push_back(bonePoint(0.47 * pi * i / polarSteps, 2.0 * pi * j / azimuthSteps));
        }
        for (std::size_t i = 0; i < polarSteps; ++i)
            for (std::size_t j = 0; j < azimuthSteps; ++j) {
                add(points[i][j], points[i + 1][j], points[i + 1][j + 1]);
                add(points[i][j], points[i + 1][j + 1], points[i][j + 1]);
            }
        return result;
    }

private:
    Point bonePoint(double polar, double azimuth) const
    {
        double in = 0.0, out = 40.0;
        for (int step = 0; step < 50; ++step) {
            const double middle = 0.5 * (in + out);
            (body.isBone(along(body.centre(), polar, azimuth, middle)) ? in : out) = middle;
        }
        return along(body.centre(), polar, azimuth, in);
    }

    void add(const Point &p, const Point &q, const Point &r)
    {
        Point u{}, v{}, middle{};
        for (std::size_t i = 0; i < 3; ++i) {
            u[i] = q[i] - p[i];
            v[i] = r[i] - p[i];
            middle[i] = (p[i] + q[i] + r[i]) / 3.0;
        }
        Point normal{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
        const double twice = std::hypot(normal[0], normal[1], normal[2]);
        if (twice < 1e-12)
            return;
        double outward = 0.0;
        for (std::size_t i = 0; i < 3; ++i)
            outward += normal[i] * (middle[i] - body.centre()[i]);
        const double scale = (outward < 0.0 ? -1.0 : 1.0) / twice;
        const auto above = [&](double height) {
            return Point{middle[0] + height * scale * normal[0], middle[1] + height * scale * normal[1],
                         middle[2] + height * scale * normal[2]};
        };
        // The flat triangle lies up to about 0.02 mm under the bone.
        const std::vector<double> ends =
            changes([&](double height) { return body.isCartilage(above(height)); }, -0.05, 5.0, 0.05);
        if (ends.size() < 2)
            return;
        const double thickness = ends[1] - ends[0];
        result.area += 0.5 * twice;
        result.sum += 0.5 * twice * thickness;
        // Beside the rim the flat triangle's normal may leave through the rim's side.
        if (isAwayFromRim(above(0.1)))
            result.least = std::min(result.least, thickness);
        result.most = std::max(result.most, thickness);
    }

    bool isAwayFromRim(const Point &point) const
    {
        for (int i = 0; i < 26; ++i) {
            const int k = i < 13 ? i : i + 1;
            const int dx = k % 3 - 1, dy = k / 3 % 3 - 1, dz = k / 9 - 1;
            const Point beside{point[0] + 0.09 * dx, point[1] + 0.09 * dy, point[2] + 0.09 * dz};
            if (!body.isCartilage(beside) && !body.isBone(beside))
                return false;
        }
        return true;
    }

    const PhantomBody &body;
    Thickness result;
};

std::vector<std::string> columns(const std::string &line)
{
    std::vector<std::string> result;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');)
        result.push_back(cell);
    return result;
}

std::string outlinesText(const PhantomParameters &parameters)
{
    std::ostringstream stream;
    demo::writeOutlines(stream, parameters, 0.2);
    return stream.str();
}

std::string truthText(const PhantomParameters &parameters)
{
    std::ostringstream stream;
    demo::writeTruth(stream, parameters);
    return stream.str();
}

struct CommaPoint : std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

TEST(PhantomTruth, areasAgreeWithLinesThroughThePlanes)
{
    const PhantomParameters parameters;
    const PhantomBody body(parameters);
    const PhantomTruth truth = demo::phantomTruth(parameters);
    ASSERT_EQ(truth.areaMm2.size(), 24u);
    for (int slice = 0; slice < 24; ++slice)
        EXPECT_NEAR(truth.areaMm2[static_cast<std::size_t>(slice)],
                    areaByLines(body, demo::slicePlaneMm(parameters, slice)), 0.05)
            << slice;
    EXPECT_GT(*std::max_element(truth.areaMm2.begin(), truth.areaMm2.end()), 100.0);
}

TEST(PhantomTruth, volumeAgreesWithRaysFromTheMiddle)
{
    for (double ridgeAcross : {0.18, -0.3}) {
        PhantomParameters parameters;
        parameters.ridgeAcross = ridgeAcross;
        const double expected = volumeByRays(PhantomBody(parameters));
        EXPECT_GT(expected, 1000.0);
        EXPECT_NEAR(demo::phantomTruth(parameters).volumeMm3, expected, 0.003 * expected);
    }
}

TEST(PhantomTruth, volumeIsTheIntegralOfTheAreas)
{
    PhantomParameters fine;
    fine.slices = 180;
    fine.spacingMm[2] = 0.2;
    const PhantomTruth truth = demo::phantomTruth(fine);
    double sum = 0.0;
    for (double area : truth.areaMm2)
        sum += 0.2 * area;
    EXPECT_NEAR(truth.volumeMm3, sum, 5e-4 * sum);
}

TEST(PhantomTruth, thicknessAgreesWithNormalsOfAMesh)
{
    const PhantomParameters parameters;
    const PhantomBody body(parameters);
    const PhantomTruth truth = demo::phantomTruth(parameters);
    const Thickness measured = MeshedInterface(body).measure();
    EXPECT_NEAR(truth.interfaceAreaMm2, measured.area, 0.005 * measured.area);
    EXPECT_NEAR(truth.meanThicknessMm, measured.sum / measured.area, 0.01);
    EXPECT_NEAR(truth.maximumThicknessMm, measured.most, 0.01);
    EXPECT_NEAR(truth.minimumThicknessMm, measured.least, 0.08); // that of places 0.1 mm from the rim
    EXPECT_DOUBLE_EQ(truth.minimumThicknessMm, 1.0);
    EXPECT_DOUBLE_EQ(truth.maximumThicknessMm, 4.0);
}

// A shell of thickness d over a cap of a sphere: volume and area by solid angle 2 pi (1 - cos).
TEST(PhantomTruth, equalShellOverASphereByHand)
{
    PhantomParameters p;
    p.halfWidthMm = p.halfHeightMm = p.frontDepthMm = p.backDepthMm = 10.0;
    p.ridgeThicknessMm = p.rimThicknessMm = 2.0;
    const double solidAngle = 2.0 * pi * (1.0 - std::sqrt(1.0 - 0.86 * 0.86));
    const PhantomTruth truth = demo::phantomTruth(p);
    EXPECT_NEAR(truth.interfaceAreaMm2, 100.0 * solidAngle, 1e-4);
    EXPECT_NEAR(truth.volumeMm3, (1728.0 - 1000.0) / 3.0 * solidAngle, 1e-4);
    EXPECT_NEAR(truth.meanThicknessMm, 2.0, 1e-12);
}

TEST(PhantomTruth, mirroringChangesNoMeasure)
{
    PhantomParameters p;
    const PhantomTruth right = demo::phantomTruth(p);
    p.mirrored = true;
    const PhantomTruth left = demo::phantomTruth(p);
    EXPECT_EQ(left.volumeMm3, right.volumeMm3);
    for (std::size_t i = 0; i < right.areaMm2.size(); ++i)
        EXPECT_NEAR(left.areaMm2[i], right.areaMm2[i], 1e-9);
}

TEST(PhantomTruth, programWorldReversesYAndIsItsOwnInverse)
{
    const PhantomParameters p; // 80 mm x 80 mm x 36 mm
    EXPECT_EQ(demo::programWorld(p, {1.0, 2.0, 3.0}), (Point{1.0, 78.0, 3.0}));
    EXPECT_EQ(demo::programWorld(p, demo::programWorld(p, {1.0, 2.0, 3.0})), (Point{1.0, 2.0, 3.0}));
}

TEST(PhantomTruth, tableListsTheSlicesAsTheProgramHasThem)
{
    const PhantomParameters p;
    const PhantomTruth truth = demo::phantomTruth(p);
    std::istringstream stream(truthText(p));
    std::map<int, double> areas;
    std::map<std::string, double> quantities;
    for (std::string line; std::getline(stream, line);) {
        const std::vector<std::string> cells = columns(line);
        if (cells.size() == 4 && cells[0] != "slice") {
            const int slice = std::stoi(cells[0]);
            areas[slice] = std::stod(cells[3]);
            EXPECT_EQ(std::stoi(cells[1]), slice + 1); // instance number
            EXPECT_NEAR(std::stod(cells[2]), (slice + 0.5) * 1.5, 1e-9);
        } else if (cells.size() == 2 && cells[0] != "quantity") {
            quantities[cells[0]] = std::stod(cells[1]);
        }
    }
    ASSERT_EQ(areas.size(), 24u);
    for (int slice = 0; slice < 24; ++slice)
        EXPECT_NEAR(areas[slice], truth.areaMm2[static_cast<std::size_t>(slice)], 1e-4);
    EXPECT_NEAR(quantities["volume_mm3"], truth.volumeMm3, 1e-4);
    EXPECT_NEAR(quantities["thickness_mean_mm"], truth.meanThicknessMm, 1e-4);
    EXPECT_EQ(quantities["thickness_minimum_mm"], 1.0);
    EXPECT_EQ(quantities["thickness_maximum_mm"], 4.0);
}

// The polygons of the file enclose the true areas.
TEST(PhantomTruth, outlineTableEnclosesTheAreas)
{
    const PhantomParameters p;
    const PhantomTruth truth = demo::phantomTruth(p);
    std::istringstream stream(outlinesText(p));
    std::map<int, demo::SliceOutline> outlines;
    for (std::string line; std::getline(stream, line);) {
        const std::vector<std::string> cells = columns(line);
        if (cells.size() != 6 || cells[0] == "slice")
            continue;
        demo::SliceOutline &outline = outlines[std::stoi(cells[0])];
        ASSERT_TRUE(cells[1] == "bone" || cells[1] == "surface");
        auto &points = cells[1] == "bone" ? outline.boneSide : outline.surfaceSide;
        EXPECT_EQ(std::stoul(cells[2]), points.size());
        points.push_back({std::stod(cells[3]), std::stod(cells[4]), std::stod(cells[5])});
        EXPECT_NEAR(points.back()[2], (std::stoi(cells[0]) + 0.5) * 1.5, 1e-9);
        if (points.size() > 1) {
            const Point &q = points[points.size() - 2];
            EXPECT_LT(std::hypot(points.back()[0] - q[0], points.back()[1] - q[1]), 0.4);
        }
    }
    for (int slice = 0; slice < 24; ++slice) {
        const double area = truth.areaMm2[static_cast<std::size_t>(slice)];
        EXPECT_EQ(outlines.count(slice), area > 0.0 ? 1u : 0u);
        EXPECT_NEAR(demo::enclosedArea(outlines[slice]), area, 0.005 * area + 0.02);
    }
}

TEST(PhantomTruth, tablesDoNotFollowTheLocale)
{
    const std::string truth = truthText(PhantomParameters()), outlines = outlinesText(PhantomParameters());
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    EXPECT_EQ(truthText(PhantomParameters()), truth);
    EXPECT_EQ(outlinesText(PhantomParameters()), outlines);
    std::locale::global(before);
}

namespace {

// The shortest way from a place on the bone out of the cartilage, by rays; exits beyond the planes do not
// count.
double wayOut(const PhantomBody &body, const Point &start, double fromZ, double toZ)
{
    const int rays = 700;
    double shortest = 10.0;
    for (int ray = 0; ray < rays; ++ray) {
        const double height = 1.0 - 2.0 * (ray + 0.5) / rays, turn = pi * (3.0 - std::sqrt(5.0)) * ray;
        const double flat = std::sqrt(1.0 - height * height);
        const Point direction{flat * std::cos(turn), flat * std::sin(turn), height};
        const auto at = [&](double way) {
            return Point{start[0] + way * direction[0], start[1] + way * direction[1],
                         start[2] + way * direction[2]};
        };
        if (!body.isCartilage(at(0.02)) || body.isBone(at(0.02)))
            continue;
        const std::vector<double> ends =
            changes([&](double way) { return body.isCartilage(at(way)); }, 0.02, shortest, 0.15);
        if (ends.empty() || body.isBone(at(ends[0] + 1e-6)))
            continue;
        if (const double z = at(ends[0])[2]; z >= fromZ && z <= toZ)
            shortest = std::min(shortest, ends[0]);
    }
    return shortest;
}

} // namespace

TEST(PhantomTruth, tracedVolumeIsThatOfItsSlices)
{
    const PhantomParameters p;
    const PhantomTruth whole = demo::phantomTruth(p);
    const demo::TracedTruth traced = demo::tracedTruth(p, 9, 3);
    EXPECT_NEAR(traced.volumeMm3, 1.5 * (whole.areaMm2[9] + whole.areaMm2[10] + whole.areaMm2[11]), 1e-9);
    // All slices with an interface: the whole one.
    EXPECT_NEAR(demo::tracedTruth(p, 0, 24).meanThicknessMm, whole.meanThicknessMm, 1e-9);
    EXPECT_LT(traced.meanMinimalThicknessMm, traced.meanThicknessMm);
}

TEST(PhantomTruth, minimalThicknessAgreesWithRays)
{
    const PhantomParameters p;
    const PhantomBody body(p);
    const double fromZ = demo::slicePlaneMm(p, 10), toZ = demo::slicePlaneMm(p, 12);
    double sum = 0.0, length = 0.0;
    for (int slice = 10; slice <= 12; ++slice) {
        const std::vector<Point> bone =
            demo::cartilageOutline(body, demo::slicePlaneMm(p, slice), 40).boneSide;
        for (std::size_t i = 0; i + 1 < bone.size(); ++i) {
            const double piece = std::hypot(bone[i + 1][0] - bone[i][0], bone[i + 1][1] - bone[i][1]);
            Point middle{(bone[i][0] + bone[i + 1][0]) / 2.0, (bone[i][1] + bone[i + 1][1]) / 2.0,
                         bone[i][2]};
            sum += piece * wayOut(body, middle, fromZ, toZ);
            length += piece;
        }
    }
    EXPECT_NEAR(demo::tracedTruth(p, 10, 3).meanMinimalThicknessMm, sum / length, 0.04);
}
