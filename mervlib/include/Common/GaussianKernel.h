#pragma once

namespace MERV {

// A Gaussian around the middle of width * height values, x fastest, whose sum is 1; sigma in values. The
// caller delete[]s it. Empty when width or height is below 1.
float *gaussianKernel(int width, int height, float sigma);

} // namespace MERV
