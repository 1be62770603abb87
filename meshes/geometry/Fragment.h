#pragma once

#include "meshes/geometry/TriFace.h"

#include <cstddef>
#include <span>
#include <vector>

namespace MERV::BRep {

// A flat list of faces by value.
template <class Face>
class Fragment
{
public:
    void append(const Face &face) { faces.push_back(face); }
    void clear() { faces.clear(); }
    std::size_t size() const { return faces.size(); }
    const Face &operator[](std::size_t index) const { return faces[index]; }
    std::span<const Face> all() const { return faces; }

protected:
    std::vector<Face> faces;
};

// The container of a whole mesh.
template <class Face>
class Surface
{
public:
    void append(const Face &face) { faces.push_back(face); }
    void clear() { faces.clear(); }
    std::size_t size() const { return faces.size(); }
    const Face &operator[](std::size_t index) const { return faces[index]; }

private:
    std::vector<Face> faces;
};

} // namespace MERV::BRep

using TriFragment = MERV::BRep::Fragment<MERV::BRep::TriFace>;
using TriSurface = MERV::BRep::Surface<MERV::BRep::TriFace>;
