#pragma once

#include "contours/EdgePoint.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

// How the shifts of edge points are spread inside their pixels, as measured in a volume and as they would be
// if straight edges crossed the grid at random, and the map from the one to the other. Positions inside a
// pixel run from 0 to 1. Plain data and functions: any thread.

constexpr int histogramBins = 50;
constexpr int jointNumBins = 20;

using Histogram = std::array<std::int32_t, histogramBins>;
using JointHistogram = std::array<std::array<std::int32_t, jointNumBins>, jointNumBins>;
using EdgePointSlices = std::vector<std::vector<EdgePoint>>;

// Counts of edge points by position and shift, each alone and in pairs, also with the angles of the gradient.
// gradient.
struct MeasuredDistribution
{
    Histogram measuredX{}; // positions inside the pixel
    Histogram measuredY{};
    Histogram measuredT{}; // shift along the gradient, scaled to -0.5 .. 0.5
    JointHistogram jointXY{};
    JointHistogram jointAlphaT{};
    JointHistogram jointThetaT{};
    std::int64_t measuredCount = 0;
};

// The same counts for points of straight lines through the grid of pixels.
struct SimulatedDistribution
{
    Histogram simulatedX{};
    Histogram simulatedT{};
    JointHistogram simulatedJointAlphaT{};
    std::int64_t simulatedCount = 0;
};

// A piecewise linear map of positions: three lists of the same length, from low positions to high ones.
struct CorrectionFunction
{
    std::vector<double> measured;
    std::vector<double> corrected;
    std::vector<double> slope; // of the piece behind the entry, measured over corrected

    // The corrected position; not finite where the map has a piece without points.
    double operator()(double position) const;
};

// The position inside its pixel of a coordinate (mm), from 0 to 1.
double positionInPixel(float coordinate, float spacing);

float largestStrength(const EdgePointSlices &slices);

// All points stronger than the limit.
MeasuredDistribution measureDistribution(const EdgePointSlices &slices, float spacingX, float spacingY,
                                         float limit);

// 10,000 walks of straight lines through the grid, with numbers of LegacyRandom. Takes about a second.
SimulatedDistribution simulateDistribution();

// The positions of as many random points in a disc as the measured ones, for comparison. Seeds LegacyRandom
// with count.
Histogram simulateDisc(int count);

// The map that turns the measured distribution into the simulated one.
CorrectionFunction makeCorrection(const Histogram &measured, const Histogram &simulated);

// Writes a heading and one row per bin: the bar of each histogram, a bin of scale points having the full 58
// characters, then the bin's position and both counts.
void printHistograms(std::ostream &stream, const std::string &heading, const Histogram &measured,
                     const Histogram &simulated, int scale);
// The largest bin of the three, the first bin of each left out, at least 1. Beside millions of simulated
// points the bars of measured ones vanish; their counts stay readable.
int histogramScale(const Histogram &a, const Histogram &b, const Histogram &c);
void printJoint(std::ostream &stream, const std::string &heading, const JointHistogram &joint);
// Each count times factor.
void printJointScaled(std::ostream &stream, const std::string &heading, const JointHistogram &joint,
                      double factor);
// Each row divided by its sum.
void printJointPerRow(std::ostream &stream, const std::string &heading, const JointHistogram &joint);
void printCorrection(std::ostream &stream, const std::string &heading, const CorrectionFunction &function);
