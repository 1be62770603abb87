#include "meshes/ColourScale.h"

#include <cstddef>

namespace {

constexpr std::size_t breakCount = 11;

constexpr RgbaColour blue{0, 0, 1, 1}, cyan{0, 1, 1, 1}, green{0, 1, 0, 1}, yellow{1, 1, 0, 1},
    red{1, 0, 0, 1}, black{0, 0, 0, 1};

constexpr std::array<double, breakCount> breaks{0.0,  0.24, 0.25, 0.26, 0.49, 0.5,
                                                0.51, 0.74, 0.75, 0.76, 1.0};
constexpr std::array<RgbaColour, breakCount> colours{blue,  cyan,   black, cyan,   green, black,
                                                     green, yellow, black, yellow, red};

// From levels of 0 to 255.
RgbaColour opaque(double red255, double green255, double blue255)
{
    return {static_cast<float>(red255 / 255.0), static_cast<float>(green255 / 255.0),
            static_cast<float>(blue255 / 255.0), 1.0f};
}

} // namespace

int ColourScale::breakAbove(double fraction) const
{
    std::size_t k = 0;
    while (k < breaks.size() && fraction >= breaks[k])
        ++k;
    return static_cast<int>(k);
}

RgbaColour ColourScale::colour(int k, double fraction) const
{
    if (k <= 0)
        return colours.front();
    const auto above = static_cast<std::size_t>(k);
    if (above >= breaks.size())
        return colours.back();
    const double t = (fraction - breaks[above - 1]) / (breaks[above] - breaks[above - 1]);
    RgbaColour blended{};
    for (std::size_t channel = 0; channel < blended.size(); ++channel)
        blended[channel] = static_cast<float>((1.0 - t) * static_cast<double>(colours[above - 1][channel]) +
                                              t * static_cast<double>(colours[above][channel]));
    return blended;
}

const ColourScale &bandedColourScale()
{
    static constexpr ColourScale scale{breaks, colours, continuousThicknessColour};
    return scale;
}

RgbaColour continuousThicknessColour(double v)
{
    if (v <= 0.0)
        return opaque(216.0, 186.0, 158.0);
    if (v <= 0.1)
        return opaque(216.0 - 320.0 * v, 186.0 - 1350.0 * v, 158.0 - 1220.0 * v);
    if (v <= 0.5) {
        const double u = v - 0.1;
        return opaque(184.0 + 15.0 * u, 51.0 + 262.5 * u, 36.0 + 295.0 * u);
    }
    if (v <= 1.0) {
        const double u = v - 0.5;
        return opaque(190.0 + 70.0 * u, 156.0 + 178.0 * u, 154.0 + 200.0 * u);
    }
    return opaque(225.0, 245.0, 254.0);
}
