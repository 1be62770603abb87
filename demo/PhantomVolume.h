#pragma once

#include "Common/Image.h"
#include "demo/PhantomBody.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace demo {

enum class Tissue : std::uint8_t
{
    Air,
    Skin,
    Fat,
    Muscle,
    Fluid,
    CorticalBone,
    Bone,
    Cartilage,        // of the patella
    FemoralCartilage, // as bright as the patella's, across the joint space
};

// Grey value of a tissue before noise.
double brightness(Tissue tissue);

// A section of a knee around the patella: skin, fat, muscle, the joint with its fluid and the front of the
// femur. Fluid lies all along the surface of the patella's cartilage, so that its outline is a strong edge
// everywhere.
class PhantomAnatomy
{
public:
    explicit PhantomAnatomy(const PhantomParameters &parameters);

    // At a point in the frame of the volume.
    Tissue tissueAt(const Point &point) const;

    const PhantomBody &patella() const { return body; }

private:
    Tissue femurAndSoftTissue(const Point &point) const;

    PhantomBody body;
    Point extent;
    bool mirrored;
};

// Grey values of all voxels in the order of the DICOM files, x fastest, then y (downwards), then the slices.
// Edges are soft by the share of each tissue in a voxel; the noise is Rician and the same for equal seeds.
std::vector<std::int16_t> phantomVoxels(const PhantomParameters &parameters);

// The same as an image of signed 16 bit voxels, as the program has the series after opening it
// without an input filter: y runs against the order of the files.
std::unique_ptr<MERV::Image> phantomImage(const PhantomParameters &parameters);

} // namespace demo
