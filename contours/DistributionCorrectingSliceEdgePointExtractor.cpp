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
    const int scale = histogramScale(measured.measuredX, measured.measuredY, simulated.simulatedX);
    const std::string bars = "Measured (***) and simulated (---) edge point ";
    printHistograms(out, bars + "x positions", measured.measuredX, simulated.simulatedX, scale);
    printHistograms(out, bars + "y positions", measured.measuredY, simulated.simulatedX, scale);
    printHistograms(out, bars + "t positions", measured.measuredT, simulated.simulatedT, scale);
    const std::string distribution = "distribution of edge point ";
    printJoint(out, "Measured " + distribution + "x and y positions", measured.jointXY);
    printJoint(out, "Measured " + distribution + "alpha and t positions", measured.jointAlphaT);
    printJoint(out, "Measured " + distribution + "theta and t positions", measured.jointThetaT);
    printJointPerRow(out, "Per-angle normalized measured " + distribution + "alpha and t positions",
                     measured.jointAlphaT);
    const double factor =
        static_cast<double>(measured.measuredCount) / static_cast<double>(simulated.simulatedCount);
    printJointScaled(out, "Simulated " + distribution + "alpha and t positions",
                     simulated.simulatedJointAlphaT, factor);
    printJointPerRow(out, "Per-angle normalized simulated " + distribution + "alpha and t positions",
                     simulated.simulatedJointAlphaT);
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
    const Histogram disc = simulateDisc(static_cast<int>(corrected.measuredCount));
    const int scale = histogramScale(corrected.measuredX, corrected.measuredY, disc);
    const std::string bars = "Measured corrected (***) and simulated (---) edge point ";
    printHistograms(std::cout, bars + "x positions", corrected.measuredX, disc, scale);
    printHistograms(std::cout, bars + "y positions", corrected.measuredY, disc, scale);
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
    const CorrectionFunction alongX = makeCorrection(measured.measuredX, simulated.simulatedX);
    const CorrectionFunction alongY = makeCorrection(measured.measuredY, simulated.simulatedX);
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
