#include "meshes/AlignmentRun.h"

#include "Common/ParallelFor.h"
#include "meshes/TriMeshFragment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <limits>

using MERV::BRep::ClosestPointIndex;
using MERV::BRep::FacePoint;
using MERV::BRep::Point;

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

// Without the sign that some of them carry.
double printable(double value)
{
    return std::isnan(value) ? noNumber : value;
}

void report(const std::optional<RigidStep> &step)
{
    const auto q = step ? step->quaternion : std::array{noNumber, noNumber, noNumber, noNumber};
    const Vector3 t = step ? step->translation : Vector3{noNumber, noNumber, noNumber};
    const double norm = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    std::cout << "Eigenvector is " << q[0] << ", " << q[1] << ", " << q[2] << ", " << q[3]
              << ", having 2-norm of " << norm << std::endl;
    std::cout << "Translation is " << printable(t.x) << ", " << printable(t.y) << ", " << printable(t.z)
              << std::endl;
}

} // namespace

AlignmentRun::AlignmentRun(std::span<const MERV::BRep::TriFace> freeFaces)
    : corners(freeFaces)
    , mean(corners.mean())
    , pairs(corners.points().size())
{}

void AlignmentRun::round(int number, const TriMeshFragment &base)
{
    std::cout << "Iteration #" << number;
    follow(base);
    findPairs();
    const PairSums all = sums();
    std::cout << "; rms distance of free to base fragment is " << printable(all.rms()) << std::endl;
    const std::optional<RigidStep> step = rigidStep(all, moved(transformation, mean));
    report(step);
    if (step)
        apply(*step);
}

void AlignmentRun::follow(const TriMeshFragment &base)
{
    if (index && base.revision() == baseRevision)
        return;
    index.emplace(base.all());
    baseRevision = base.revision();
}

void AlignmentRun::findPairs()
{
    constexpr std::size_t pointsPerTask = 128;
    const std::size_t tasks = (pairs.size() + pointsPerTask - 1) / pointsPerTask;
    MERV::parallelFor(static_cast<int>(tasks), [&](int task) {
        const std::size_t begin = static_cast<std::size_t>(task) * pointsPerTask;
        for (std::size_t i = begin; i < std::min(begin + pointsPerTask, pairs.size()); ++i) {
            if (i > begin && pairs[i].face == ClosestPointIndex::noHint)
                pairs[i].face = pairs[i - 1].face; // corners follow each other along the mesh
            findPair(i);
        }
    });
}

void AlignmentRun::findPair(std::size_t point)
{
    Pair &pair = pairs[point];
    pair.freePoint = moved(transformation, corners.points()[point]);
    pair.valid = false;
    if (!isFinite(pair.freePoint))
        return;
    const FacePoint closest =
        index->closestPoint({pair.freePoint.x, pair.freePoint.y, pair.freePoint.z}, pair.face);
    const Point foot = euclidean(closest.point);
    pair = {pair.freePoint, {foot.x, foot.y, foot.z}, closest.face, closest.point.valid};
}

PairSums AlignmentRun::sums() const
{
    PairSums all;
    for (const std::size_t which : corners.order())
        if (pairs[which].valid)
            all.add(pairs[which].freePoint, pairs[which].basePoint);
    return all;
}

void AlignmentRun::apply(RigidStep step)
{
    MERV::Matrix4 result = transformation;
    multiply(step.matrix, result, true);
    if (isFinite(result))
        transformation = result;
}
