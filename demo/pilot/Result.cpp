#include "demo/pilot/Result.h"

#include "Common/MetaImage.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "serialization/formats/SlicUnserializer.h"

#include <QFile>

#include <cmath>
#include <fstream>
#include <iomanip>
#include <memory>
#include <optional>
#include <string>

namespace {

constexpr double sliceTolerance = 0.04, sumTolerance = 0.02; // parts of the true area
constexpr double volumeTolerance = 0.02;                     // part of the true volume
constexpr double thicknessToleranceMm = 0.15;
constexpr float maskValue = 127.0f;

// All points of the fragment's segments at this z, one segment after the other, walked from near `start` on.
Polyline lineAt(const SlicedContoursFragment &fragment, double zMm, const QPointF &start)
{
    Polyline line;
    for (int i = 0; i < fragment.segmentCount(); ++i) {
        const SlicedContoursSegment &segment = *fragment.segment(i);
        if (std::abs(double(segment.z()) - zMm) > 0.01 || segment.pointCount() < 2)
            continue;
        Polyline piece;
        for (int point = 0; point < segment.pointCount(); ++point)
            piece.push_back(segment.point(point));
        const QPointF from = line.empty() ? start : line.back();
        const auto distance = [&](const QPointF &to) {
            return std::hypot(to.x() - from.x(), to.y() - from.y());
        };
        if (distance(piece.back()) < distance(piece.front()))
            line.insert(line.end(), piece.rbegin(), piece.rend());
        else
            line.insert(line.end(), piece.begin(), piece.end());
    }
    return line;
}

std::unique_ptr<ImageObject> readContours(const QString &path)
{
    std::ifstream stream(QFile::encodeName(path).toStdString(), std::ios::binary);
    SlicUnserializer reader;
    return std::unique_ptr<ImageObject>(stream ? reader.unserialize(stream) : nullptr);
}

double part(double difference, double whole)
{
    return whole > 0.0 ? difference / whole : 1.0;
}

double loopVolume(const SlicedContoursObject &contours, double sliceDistanceMm)
{
    double volume = 0.0;
    float before = -1.0f, z = contours.firstSignificantZ();
    while (z > before) {
        volume += double(contours.contour(0)->areaAt(z)) * sliceDistanceMm;
        before = z;
        z = contours.nextSignificantZ(z);
    }
    return volume;
}

std::optional<double> maskVolume(const QString &path)
{
    const std::unique_ptr<MERV::Image> mask(MERV::loadMetaImage(QFile::encodeName(path).constData()));
    if (!mask)
        return {};
    std::size_t voxels = 0;
    for (int z = 0; z < mask->getDepth(); ++z)
        for (int y = 0; y < mask->getHeight(); ++y)
            for (int x = 0; x < mask->getWidth(); ++x)
                voxels += mask->getVoxel(x, y, z, 0, 0) == maskValue ? 1 : 0;
    return double(voxels) * double(mask->getSpacing(0)) * double(mask->getSpacing(1)) *
           double(mask->getSpacing(2));
}

// The mean of a saved measurement, which stands at the reserved position (0, 0, 2).
std::optional<double> savedMean(const QString &path)
{
    std::ifstream stream(QFile::encodeName(path).toStdString());
    std::string header;
    std::getline(stream, header);
    for (double x = 0, y = 0, z = 0, value = 0; stream >> x >> y >> z >> value;)
        if (x == 0.0 && y == 0.0 && z == 2.0)
            return value;
    return {};
}

} // namespace

bool judgeContours(std::ostream &table, const QString &folder, const DemoScript &script,
                   const std::vector<TrueSlice> &slices)
{
    const auto object = readContours(folder + '/' + DemoScript::contoursName);
    const auto *contours = dynamic_cast<SlicedContoursObject *>(object.get());
    if (contours == nullptr || contours->fragmentCount() != 2)
        return false;
    table << std::fixed << std::setprecision(2)
          << "z [mm]\ttrue [mm^2]\thand [mm^2]\thand [%]\tsaved [mm^2]\tsaved [%]\n";
    double trueSum = 0.0, savedSum = 0.0;
    bool good = true;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const TrueSlice &slice = slices[i];
        const Polyline bone = lineAt(*contours->fragment(0), slice.zMm, slice.bone.front());
        const Polyline surface = lineAt(*contours->fragment(1), slice.zMm, slice.surface.front());
        const double saved = bone.empty() || surface.empty() ? 0.0 : enclosedArea(bone, surface);
        const double miss = part(saved - slice.areaMm2, slice.areaMm2);
        const double hand = script.handArea(i);
        table << slice.zMm << '\t' << slice.areaMm2 << '\t';
        if (hand > 0.0)
            table << hand << '\t' << 100.0 * part(hand - slice.areaMm2, slice.areaMm2) << '\t';
        else
            table << "guessed\t\t";
        table << saved << '\t' << 100.0 * miss << '\n';
        good = good && std::abs(miss) <= sliceTolerance;
        // A hand that is near the truth by itself would prove nothing.
        good = good && (hand == 0.0 || hand > slice.areaMm2 * (1.0 + sliceTolerance));
        trueSum += slice.areaMm2;
        savedSum += saved;
    }
    const double miss = part(savedSum - trueSum, trueSum);
    table << "sum\t" << trueSum << "\t\t\t" << savedSum << '\t' << 100.0 * miss << '\n';
    return good && std::abs(miss) <= sumTolerance;
}

bool judgeMeasures(std::ostream &table, const QString &folder, const demo::TracedTruth &truth,
                   double sliceDistanceMm)
{
    const auto inFolder = [&folder](const char *name) { return folder + '/' + name; };
    const auto object = readContours(inFolder(DemoScript::contoursName));
    const auto *contours = dynamic_cast<SlicedContoursObject *>(object.get());
    const std::optional<double> mask = maskVolume(inFolder(DemoScript::maskName)),
                                thickness = savedMean(inFolder(DemoScript::thicknessName)),
                                minimal = savedMean(inFolder(DemoScript::minimalThicknessName));
    if (contours == nullptr || contours->contourCount() != 1 || !mask || !thickness || !minimal)
        return false;
    const double traced = loopVolume(*contours, sliceDistanceMm);
    const auto line = [&table](const char *name, double value, double wanted) {
        table << name << '\t' << wanted << '\t' << value << '\t' << 100.0 * part(value - wanted, wanted)
              << '\n';
    };
    table << std::fixed << std::setprecision(3) << "measure\ttrue\tsaved\t[%]\n";
    line("traced volume [mm^3]", traced, truth.volumeMm3);
    line("mask volume [mm^3]", *mask, truth.volumeMm3);
    line("mean thickness along the normal [mm]", *thickness, truth.meanThicknessMm);
    line("mean minimal thickness [mm]", *minimal, truth.meanMinimalThicknessMm);
    return std::abs(part(traced - truth.volumeMm3, truth.volumeMm3)) <= volumeTolerance &&
           std::abs(part(*mask - truth.volumeMm3, truth.volumeMm3)) <= volumeTolerance &&
           std::abs(*minimal - truth.meanMinimalThicknessMm) <= thicknessToleranceMm;
}
