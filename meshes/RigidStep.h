#pragma once

#include "Common/Matrix4.h"
#include "objects/Vector3.h"

#include <array>
#include <optional>

// Matrices here are row-major and act on column vectors: the translation is the last column.

// The place to which the matrix moves a point.
Vector3 moved(const MERV::Matrix4 &matrix, const Vector3 &point);

bool isFinite(const Vector3 &point);
bool isFinite(const MERV::Matrix4 &matrix);

// Sums over pairs of a free point and its closest point on the base, in the order in which they are added.
class PairSums
{
public:
    void add(const Vector3 &freePoint, const Vector3 &basePoint);

    int pairs() const { return count; }
    // The root of the mean squared distance of the pairs; not a number without pairs.
    double rms() const;
    Vector3 baseMean() const;
    // Mean of the products f b^T minus centre * baseMean()^T.
    std::array<std::array<double, 3>, 3> covariance(const Vector3 &centre) const;

private:
    int count = 0;
    double squares = 0.0;
    Vector3 base;
    std::array<std::array<double, 3>, 3> products{};
};

// The rotation and translation that bring the free points of the pairs closest to the base points.
struct RigidStep
{
    std::array<double, 4> quaternion; // of either sign
    Vector3 translation;
    MERV::Matrix4 matrix;
};

// In closed form: B. K. P. Horn, doi:10.1364/JOSAA.4.000629. freeCentre is the mean of the free points.
// Nothing without pairs and for sums that are not finite.
std::optional<RigidStep> rigidStep(const PairSums &sums, const Vector3 &freeCentre);
