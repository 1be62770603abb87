#pragma once

#include "meshes/geometry/TriFace.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <istream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// A triangle mesh with a shared table of points, and one number per point if the file has them.
struct VtkMesh
{
    std::vector<MERV::BRep::Point> points; // mm
    std::vector<std::array<std::size_t, 3>> triangles;
    std::vector<double> scalars;

    MERV::BRep::TriFace face(std::size_t index) const
    {
        const auto &corners = triangles[index];
        return {points[corners[0]], points[corners[1]], points[corners[2]]};
    }
    std::vector<MERV::BRep::TriFace> faces() const
    {
        std::vector<MERV::BRep::TriFace> all;
        all.reserve(triangles.size());
        for (std::size_t i = 0; i < triangles.size(); ++i)
            all.push_back(face(i));
        return all;
    }
};

// The sections that a legacy VTK file of triangles has, one after the other.
class VtkMeshReader
{
public:
    explicit VtkMeshReader(std::istream &newStream)
        : stream(newStream)
    {}

    // Nothing if the file is not ASCII POLYDATA of triangles.
    std::optional<VtkMesh> read()
    {
        std::string line, word;
        for (int i = 0; i < 3; ++i)
            std::getline(stream, line);
        if (line != "ASCII" || !(stream >> word >> word) || word != "POLYDATA")
            return std::nullopt;
        VtkMesh mesh;
        while (stream >> word) {
            if ((word == "POINTS" && !readPoints(mesh)) || (word == "POLYGONS" && !readTriangles(mesh)))
                return std::nullopt;
            if (word == "SCALARS")
                return readScalars(mesh) ? std::optional(mesh) : std::nullopt;
        }
        return mesh;
    }

private:
    bool readPoints(VtkMesh &mesh)
    {
        std::size_t count = 0;
        std::string type;
        stream >> count >> type;
        double x = 0.0, y = 0.0, z = 0.0;
        while (mesh.points.size() < count && stream >> x >> y >> z)
            mesh.points.emplace_back(x, y, z);
        return mesh.points.size() == count;
    }

    bool readTriangles(VtkMesh &mesh)
    {
        std::size_t count = 0, numbers = 0, corners = 0;
        stream >> count >> numbers;
        std::array<std::size_t, 3> triangle{};
        while (mesh.triangles.size() < count && stream >> corners && corners == triangle.size()) {
            for (std::size_t &corner : triangle)
                if (!(stream >> corner) || corner >= mesh.points.size())
                    return false;
            mesh.triangles.push_back(triangle);
        }
        return mesh.triangles.size() == count;
    }

    bool readScalars(VtkMesh &mesh)
    {
        std::string line, word;
        std::getline(stream, line); // name and type
        std::getline(stream, line); // LOOKUP_TABLE
        double value = 0.0;
        while (mesh.scalars.size() < mesh.points.size() && stream >> value)
            mesh.scalars.push_back(value);
        return mesh.scalars.size() == mesh.points.size();
    }

    std::istream &stream;
};

inline std::optional<VtkMesh> readVtkMesh(const std::string &path)
{
    std::ifstream stream(path);
    return VtkMeshReader(stream).read();
}
