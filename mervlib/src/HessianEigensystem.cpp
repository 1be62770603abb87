#include "Common/HessianEigensystem.h"

#include <array>
#include <cmath>

namespace MERV {
namespace {

// The eigenvector of the larger eigenvalue, not defined for b = 0 and a <= c: both components are 0 there.
std::array<float, 2> firstVector(float b, float d, float e)
{
    const float u = (-d - e) / 2.0f;
    const float v = -b;
    const float length = std::sqrt(u * u + v * v);
    if (length <= 1e-16f)
        return {0.0f, 0.0f};
    return {u / length, v / length};
}

} // namespace

void computeHessianEigensystem(Image *hessian, Image *eigenvalues, Image *firstVectors, Image *secondVectors)
{
    if (!hessian || !eigenvalues || hessian->getChannels() != 3)
        return;
    for (Image *image : {hessian, eigenvalues, firstVectors, secondVectors})
        if (image)
            image->resetCursor();

    float a = 0.0f, b = 0.0f, c = 0.0f;
    while (hessian->getNextValue(a) && hessian->getNextValue(b) && hessian->getNextValue(c)) {
        const float d = a - c;
        const float s = a + c;
        const float e = std::sqrt(4.0f * b * b + d * d);
        eigenvalues->setNextValue((e + s) / 2.0f);
        eigenvalues->setNextValue((s - e) / 2.0f);
        if (!firstVectors)
            continue;
        const auto [u, v] = firstVector(b, d, e);
        firstVectors->setNextValue(u);
        firstVectors->setNextValue(v);
        if (secondVectors) {
            secondVectors->setNextValue(v);
            secondVectors->setNextValue(-u);
        }
    }
    eigenvalues->computeMinMax();
    if (firstVectors)
        firstVectors->computeMinMax();
    if (firstVectors && secondVectors)
        secondVectors->computeMinMax();
}

} // namespace MERV
