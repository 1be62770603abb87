#include "meshes/TriMeshAligner.h"

#include "meshes/DistinctPoints.h"
#include "meshes/RigidStep.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/geometry/ClosestPoint.h"
#include "platform/ParallelFor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace {

using MERV::Matrix4;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

constexpr int rounds = 50;

// A vertex that faces share is as heavy as the number of its faces.
class FreeCorners
{
public:
    explicit FreeCorners(std::span<const TriFace> faces)
    {
        std::vector<Vector3> corners;
        corners.reserve(3 * faces.size());
        for (const TriFace &face : faces) {
            valid.push_back(face.isValid());
            for (int i = 0; face.isValid() && i < 3; ++i) {
                const Point corner = euclidean(face.vertex(i));
                corners.push_back({corner.x, corner.y, corner.z});
            }
        }
        distinct = DistinctPoints(corners);
    }

    const std::vector<Vector3> &points() const { return distinct.points(); }
    // Which of points() the corners of the faces are, in the order of the faces.
    const std::vector<std::size_t> &order() const { return distinct.order(); }

    // Of all corners with finite coordinates.
    Vector3 mean() const
    {
        Vector3 sum;
        double count = 0.0;
        for (const std::size_t which : order()) {
            const Vector3 &point = points()[which];
            if (!isFinite(point))
                continue;
            sum = {sum.x + point.x, sum.y + point.y, sum.z + point.z};
            ++count;
        }
        return {sum.x / count, sum.y / count, sum.z / count};
    }

    std::vector<TriFace> movedFaces(const Matrix4 &transformation) const
    {
        std::vector<TriFace> faces;
        faces.reserve(valid.size());
        std::size_t next = 0;
        const auto corner = [&] {
            const Vector3 point = moved(transformation, points()[order()[next++]]);
            return Point(point.x, point.y, point.z);
        };
        for (const bool isFace : valid) {
            if (!isFace) {
                faces.emplace_back();
                continue;
            }
            const Point first = corner(), second = corner(), third = corner();
            faces.emplace_back(first, second, third);
        }
        return faces;
    }

private:
    DistinctPoints distinct;
    std::vector<bool> valid; // of each face
};

// A free point where it is now, with its closest point on the base.
struct Pair
{
    Vector3 freePoint, basePoint;
    bool valid = false;
};

Pair pairOf(const Vector3 &freePoint, const TriMeshFragment &base)
{
    if (!isFinite(freePoint))
        return {};
    const Point closest = base.closestPointTo({freePoint.x, freePoint.y, freePoint.z});
    const Point foot = euclidean(closest);
    return {freePoint, {foot.x, foot.y, foot.z}, closest.valid};
}

// Each point is searched once, several at a time; the sums go through all corners one after the other, so
// that they do not depend on either.
PairSums sumPairs(const FreeCorners &corners, const Matrix4 &transformation, const TriMeshFragment &base)
{
    constexpr std::size_t pointsPerTask = 128;
    const std::vector<Vector3> &points = corners.points();
    std::vector<Pair> pairs(points.size());
    parallelFor(static_cast<int>((points.size() + pointsPerTask - 1) / pointsPerTask), [&](int task) {
        const std::size_t begin = static_cast<std::size_t>(task) * pointsPerTask;
        for (std::size_t i = begin; i < std::min(begin + pointsPerTask, points.size()); ++i)
            pairs[i] = pairOf(moved(transformation, points[i]), base);
    });
    PairSums sums;
    for (const std::size_t which : corners.order())
        if (pairs[which].valid)
            sums.add(pairs[which].freePoint, pairs[which].basePoint);
    return sums;
}

// Without the sign that some of them carry.
double printable(double value)
{
    return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value;
}

void report(const std::optional<RigidStep> &step)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    const auto [q0, q1, q2, q3] = step ? step->quaternion : std::array<double, 4>{none, none, none, none};
    const Vector3 t = step ? step->translation : Vector3{none, none, none};
    const double norm = std::sqrt(q0 * q0 + q1 * q1 + q2 * q2 + q3 * q3);
    std::cout << "Eigenvector is " << q0 << ", " << q1 << ", " << q2 << ", " << q3 << ", having 2-norm of "
              << norm << std::endl;
    std::cout << "Translation is " << printable(t.x) << ", " << printable(t.y) << ", " << printable(t.z)
              << std::endl;
}

// One round. Without a pair, or with a result that is not finite, the transformation stays as it is.
void improve(Matrix4 &transformation, const FreeCorners &corners, const Vector3 &mean,
             const TriMeshFragment &base)
{
    const PairSums sums = sumPairs(corners, transformation, base);
    std::cout << "; rms distance of free to base fragment is " << printable(sums.rms()) << std::endl;
    std::optional<RigidStep> step = rigidStep(sums, moved(transformation, mean));
    report(step);
    if (!step)
        return;
    Matrix4 improved = transformation;
    multiply(step->matrix, improved, true);
    if (isFinite(improved))
        transformation = improved;
}

} // namespace

TriMeshAligner::TriMeshAligner(TriMeshFragment *newBase, TriMeshFragment *newFree, QObject *parent)
    : TriMeshObject(tr("%1 aligned to %2")
                        .arg(newFree != nullptr ? newFree->label() : QString(),
                             newBase != nullptr ? newBase->label() : QString()),
                    parent)
    , base(newBase)
    , free(newFree)
{
    // The wording of the message is on purpose. A change of the base starts no run, on purpose too.
    if (newFree == nullptr || !connect(newFree, qOverload<QObject *>(&TriMeshFragment::updated), this,
                                       qOverload<QObject *>(&TriMeshAligner::realign)))
        std::cerr << "Cound not establish connection indicating aligned fragment invalidation." << std::endl;
    realign();
}

QList<ImageObject *> TriMeshAligner::sources() const
{
    QList<ImageObject *> all = TriMeshObject::sources();
    ImageObject *ownerOfBase = rootImageObject(base);
    ImageObject *ownerOfFree = rootImageObject(free);
    if (ownerOfBase != nullptr)
        all.append(ownerOfBase);
    if (ownerOfFree != nullptr && ownerOfFree != ownerOfBase)
        all.append(ownerOfFree);
    return all;
}

void TriMeshAligner::detachFrom(ImageObject *closing)
{
    TriMeshObject::detachFrom(closing);
    if (base != nullptr && rootImageObject(base) == closing)
        base = nullptr;
    if (free != nullptr && rootImageObject(free) == closing)
        free = nullptr;
}

void TriMeshAligner::realign()
{
    realign(nullptr);
}

void TriMeshAligner::realign(QObject *)
{
    if (base == nullptr || free == nullptr)
        return;
    if (fragmentCount() == 0)
        addFragment(free->label());
    TriMeshFragment *output = fragment(0);
    const FreeCorners corners(free->all());
    Matrix4 transformation = Matrix4::identity();
    if (corners.order().empty()) {
        output->setFaces(corners.movedFaces(transformation));
        emit updated();
    } else {
        const Vector3 mean = corners.mean();
        const unsigned run = ++runs;
        // Whoever looks at a round may let go of a fragment or change the free one, which is a run of its
        // own.
        for (int i = 0; i < rounds && run == runs && base != nullptr && free != nullptr; ++i) {
            std::cout << "Iteration #" << i;
            improve(transformation, corners, mean, *base);
            output->setFaces(corners.movedFaces(transformation));
            emit updated();
        }
    }
    output->notifyFragmentUpdated();
    emit output->updated();
}
