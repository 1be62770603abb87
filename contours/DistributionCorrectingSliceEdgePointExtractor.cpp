#include "contours/DistributionCorrectingSliceEdgePointExtractor.h"

#include "contours/EdgePointDistribution.h"
#include "objects/MervImageObject.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace {

void report(const MeasuredDistribution &measured, const SimulatedDistribution &simulated)
{
    std::ostream &out = std::cout;
    const int scale = histogramScale(measured.x, measured.y, simulated.x);
    const std::string bars = "Measured (***) and simulated (---) edge point ";
    printHistograms(out, bars + "x positions", measured.x, simulated.x, scale);
    printHistograms(out, bars + "y positions", measured.y, simulated.x, scale);
    printHistograms(out, bars + "t positions", measured.t, simulated.t, scale);
    const std::string distribution = "distribution of edge point ";
    printJoint(out, "Measured " + distribution + "x and y positions", measured.xy, 1.0);
    printJoint(out, "Measured " + distribution + "alpha and t positions", measured.alphaT, 1.0);
    printJoint(out, "Measured " + distribution + "theta and t positions", measured.thetaT, 1.0);
    printJointPerRow(out, "Per-angle normalized measured " + distribution + "alpha and t positions",
                     measured.alphaT);
    const double factor =
        static_cast<double>(measured.count) / static_cast<double>(std::max<std::int64_t>(simulated.count, 1));
    printJoint(out, "Simulated " + distribution + "alpha and t positions", simulated.alphaT, factor);
    printJointPerRow(out, "Per-angle normalized simulated " + distribution + "alpha and t positions",
                     simulated.alphaT);
}

// Moves a coordinate (mm) inside its pixel; it stays where the function has no finite answer.
void correct(float &coordinate, float spacing, const CorrectionFunction &function)
{
    const double pixel = std::trunc(static_cast<double>(coordinate) / static_cast<double>(spacing));
    const double corrected =
        (pixel + function(positionInPixel(coordinate, spacing))) * static_cast<double>(spacing);
    if (std::isfinite(corrected))
        coordinate = static_cast<float>(corrected);
}

void reportCorrected(const MeasuredDistribution &corrected)
{
    const Histogram disc = simulateDisc(static_cast<int>(corrected.count));
    const int scale = histogramScale(corrected.x, corrected.y, disc);
    const std::string bars = "Measured corrected (***) and simulated (---) edge point ";
    printHistograms(std::cout, bars + "x positions", corrected.x, disc, scale);
    printHistograms(std::cout, bars + "y positions", corrected.y, disc, scale);
    std::cout << std::flush;
}

} // namespace

DistributionCorrectingSliceEdgePointExtractor::DistributionCorrectingSliceEdgePointExtractor(
    MervImageObject *analysedImage, QObject *parent)
    : BasicSliceEdgePointExtractor(analysedImage, parent)
{
    setLabel(tr("distribution corrected edge points in %1")
                 .arg(analysedImage != nullptr ? analysedImage->label() : QString()));
    extract();
}

DistributionCorrectingSliceEdgePointExtractor::~DistributionCorrectingSliceEdgePointExtractor() = default;

void DistributionCorrectingSliceEdgePointExtractor::postProcess()
{
    const float strongest = largestStrength(points);
    const MeasuredDistribution measured = measureDistribution(points, spacingX, spacingY, strongest / 4 * 2);
    const SimulatedDistribution simulated = simulateDistribution();
    report(measured, simulated);
    // The simulated positions along x serve for both axes.
    const CorrectionFunction alongX = makeCorrection(measured.x, simulated.x);
    const CorrectionFunction alongY = makeCorrection(measured.y, simulated.x);
    const std::string heading = "edge point position correction function ";
    printCorrection(std::cout, heading + "(x): measured, corrected, slope till next data point", alongX);
    printCorrection(std::cout, heading + "(y): measured, corrected, slope till next data point", alongY);
    for (std::vector<EdgePoint> &slice : points)
        for (EdgePoint &point : slice) {
            correct(point.x, spacingX, alongX);
            correct(point.y, spacingY, alongY);
        }
    reportCorrected(measureDistribution(points, spacingX, spacingY, strongest / 4 * 3));
}
