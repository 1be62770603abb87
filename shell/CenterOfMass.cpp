#include "shell/CenterOfMass.h"

#include <algorithm>

namespace {

constexpr double background = 100.0; // voxel value

} // namespace

QString inPlaneCentersOfMass(MERV::ImageBase<unsigned short> &image)
{
    QString text = "#in-plane centers of mass\n#slice\tx\ty\n";
    for (int z = 0; z < image.getDepth(); ++z) {
        double sum = 0.0, sumX = 0.0, sumY = 0.0;
        for (int x = 0; x < image.getWidth(); ++x) {
            for (int y = 0; y < image.getHeight(); ++y) {
                const double value = static_cast<double>(image.getVoxel(x, y, z, 0, 0));
                const double weight = std::max(value - background, 0.0);
                sum += weight;
                sumX += weight * x;
                sumY += weight * y;
            }
        }
        text += QString("%1\t%2\t%3\n").arg(z).arg(sumX / sum).arg(sumY / sum);
    }
    return text;
}
