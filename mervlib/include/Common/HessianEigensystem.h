#pragma once

#include "Common/Image.h"

namespace MERV {

// Eigenvalues (2 channels, larger first) and unit eigenvectors (2 channels: u, v) of the symmetric 2 x 2
// matrices (a b; b c) that a three-channel image from Image::computeHessian holds. The outputs belong to the
// caller, are written from their first value on and end where they end; the vector images may be null, and
// secondVectors is written only together with firstVectors. Where the first vector is undefined both are 0.
// Nothing happens unless hessian has three channels.
void computeHessianEigensystem(Image *hessian, Image *eigenvalues, Image *firstVectors, Image *secondVectors);

} // namespace MERV
