#include "Common/GaussianKernel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace MERV {

float *gaussianKernel(int width, int height, float sigma)
{
    if (width < 1 || height < 1)
        return new float[0];
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const double spread = 2.0 * static_cast<double>(sigma) * static_cast<double>(sigma);
    double sum = 0.0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double dx = x - (width - 1) * 0.5;
            const double dy = y - (height - 1) * 0.5;
            values.push_back(std::exp(-(dx * dx + dy * dy) / spread));
            sum += values.back();
        }
    }
    auto *kernel = new float[values.size()];
    std::transform(values.begin(), values.end(), kernel,
                   [sum](double value) { return static_cast<float>(value / sum); });
    return kernel;
}

} // namespace MERV
