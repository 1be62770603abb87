#include "meshes/RigidStep.h"

#include <jama_eig.h>

#include <algorithm>
#include <cmath>

namespace {

using Matrix3 = std::array<std::array<double, 3>, 3>;
using Matrix = TNT::Array2D<double>;

// The symmetric matrix whose eigenvector of the largest eigenvalue is the rotation sought.
Matrix quaternionMatrix(const Matrix3 &s)
{
    const double trace = s[0][0] + s[1][1] + s[2][2];
    Matrix q(4, 4);
    q[0][0] = trace;
    q[0][1] = q[1][0] = s[1][2] - s[2][1];
    q[0][2] = q[2][0] = s[2][0] - s[0][2];
    q[0][3] = q[3][0] = s[0][1] - s[1][0];
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) {
            const double sum = s[i][j] + s[j][i];
            q[static_cast<int>(i) + 1][static_cast<int>(j) + 1] = i == j ? sum - trace : sum;
        }
    return q;
}

// Brings the largest element to [0.5, 1) by a power of two, which changes no eigenvector and no sign: the
// library's iteration need not end on elements near the limits of double precision, and never does on one
// that is not finite. False for these.
bool normalise(Matrix &q)
{
    double largest = 0.0;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            if (!std::isfinite(q[i][j]))
                return false;
            largest = std::max(largest, std::abs(q[i][j]));
        }
    int exponent = 0;
    std::frexp(largest, &exponent);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            q[i][j] = std::ldexp(q[i][j], -exponent);
    return true;
}

// The column of the largest eigenvalue above 0, of the first one if there is none.
std::array<double, 4> leadingEigenvector(const Matrix &q)
{
    JAMA::Eigenvalue<double> decomposition(q);
    TNT::Array1D<double> values;
    Matrix vectors;
    decomposition.getRealEigenvalues(values);
    decomposition.getV(vectors);
    int index = 0;
    double best = 0.0;
    for (int i = 0; i < 4; ++i)
        if (values[i] > best) {
            best = values[i];
            index = i;
        }
    return {vectors[0][index], vectors[1][index], vectors[2][index], vectors[3][index]};
}

MERV::Matrix4 rotation(const std::array<double, 4> &q)
{
    const auto [q0, q1, q2, q3] = q;
    MERV::Matrix4 r = MERV::Matrix4::identity();
    r.m[0][0] = q0 * q0 + q1 * q1 - q2 * q2 - q3 * q3;
    r.m[0][1] = 2 * (q1 * q2 - q0 * q3);
    r.m[0][2] = 2 * (q1 * q3 + q0 * q2);
    r.m[1][0] = 2 * (q1 * q2 + q0 * q3);
    r.m[1][1] = q0 * q0 + q2 * q2 - q1 * q1 - q3 * q3;
    r.m[1][2] = 2 * (q2 * q3 - q0 * q1);
    r.m[2][0] = 2 * (q1 * q3 - q0 * q2);
    r.m[2][1] = 2 * (q2 * q3 + q0 * q1);
    r.m[2][2] = q0 * q0 + q3 * q3 - q1 * q1 - q2 * q2;
    return r;
}

} // namespace

Vector3 moved(const MERV::Matrix4 &matrix, const Vector3 &point)
{
    const auto row = [&](int i) {
        return matrix.m[i][0] * point.x + matrix.m[i][1] * point.y + matrix.m[i][2] * point.z +
               matrix.m[i][3];
    };
    return {row(0), row(1), row(2)};
}

bool isFinite(const Vector3 &point)
{
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

bool isFinite(const MERV::Matrix4 &matrix)
{
    return std::all_of(&matrix.m[0][0], &matrix.m[0][0] + 16, [](double e) { return std::isfinite(e); });
}

void PairSums::add(const Vector3 &freePoint, const Vector3 &basePoint)
{
    const double x = freePoint.x - basePoint.x, y = freePoint.y - basePoint.y, z = freePoint.z - basePoint.z;
    squares += x * x + y * y + z * z;
    base.x += basePoint.x;
    base.y += basePoint.y;
    base.z += basePoint.z;
    const std::array<double, 3> f{freePoint.x, freePoint.y, freePoint.z};
    const std::array<double, 3> b{basePoint.x, basePoint.y, basePoint.z};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            products[i][j] += f[i] * b[j];
    ++count;
}

double PairSums::rms() const
{
    return std::sqrt(squares / count);
}

Vector3 PairSums::baseMean() const
{
    return {base.x / count, base.y / count, base.z / count};
}

Matrix3 PairSums::covariance(const Vector3 &centre) const
{
    const Vector3 mean = baseMean();
    const std::array<double, 3> m{centre.x, centre.y, centre.z}, y{mean.x, mean.y, mean.z};
    Matrix3 s{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            s[i][j] = products[i][j] / count - m[i] * y[j];
    return s;
}

std::optional<RigidStep> rigidStep(const PairSums &sums, const Vector3 &freeCentre)
{
    if (sums.pairs() == 0)
        return {};
    Matrix q = quaternionMatrix(sums.covariance(freeCentre));
    if (!normalise(q))
        return {};
    RigidStep step{leadingEigenvector(q), {}, {}};
    step.matrix = rotation(step.quaternion); // the quaternion as it stands, not normalised
    const Vector3 turned = moved(step.matrix, freeCentre), y = sums.baseMean();
    step.translation = {y.x - turned.x, y.y - turned.y, y.z - turned.z};
    step.matrix.m[0][3] = step.translation.x;
    step.matrix.m[1][3] = step.translation.y;
    step.matrix.m[2][3] = step.translation.z;
    return step;
}
