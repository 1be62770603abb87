#pragma once

#include "Common/ParallelFor.h"
#include "meshes/geometry/TriFace.h"

#include <functional>
#include <optional>
#include <span>
#include <vector>

// The thickness between two surfaces, as a measurer publishes it. No state, any thread; all lengths in mm.

enum class ThicknessDirection
{
    AlongNormal, // to the nearest hit on the line along the normal of the base's face, on either side
    Closest      // to the closest point
};

// The distance at one vertex of the base.
struct ThicknessSample
{
    MERV::BRep::Point vertex; // in its stored coordinates
    double distance = 0.0;
};

// The distance to the remote faces from each vertex of the base faces that has one, in the order in which the
// base faces reach their vertices. Vertices whose four coordinates are equal count once, for the first face
// that reaches them: its normal is not averaged with others. A vertex without a hit has no sample, as every
// vertex whose first face has no area and is measured along the normal. Works on at most this many threads,
// with the same result on any number; one core is left to the main thread, which edits and draws meanwhile.
// stopped is asked often and from several threads; once it says yes there is no result.
std::optional<std::vector<ThicknessSample>> measureThickness(std::span<const MERV::BRep::TriFace> base,
                                                             std::span<const MERV::BRep::TriFace> remote,
                                                             ThicknessDirection direction,
                                                             const std::function<bool()> &stopped,
                                                             int threads = MERV::coreCount() - 1);

struct ThicknessSummary
{
    double maximum = 0.0;
    double meanOfMaxima = 0.0; // of runningRecords()
    double mean = 0.0;
    double standardDeviation = 0.0; // of the whole population
};

// At most ten values in rising order: starting with the first distance, each further one that exceeds all
// retained ones or falls below all of them is retained; an eleventh drops the smallest. These are not the ten
// largest, and they depend on the order of the distances: on purpose, published numbers rest on it. The last
// one is the maximum. Empty without distances.
std::vector<double> runningRecords(std::span<const ThicknessSample> samples);

// Nothing without samples.
std::optional<ThicknessSummary> summarizeThickness(std::span<const ThicknessSample> samples);
