#pragma once

#include "framework/base/String.h"

#include <array>
#include <cstddef>
#include <vector>

/// What a 3-D file holds, as the host and the mesh plug-ins pass it: polygons over shared attribute arrays.
///
/// Faces are polygons of three or more corners, stored back to back in `corners`; `faceSizes` tells how many
/// belong to each. A corner names its attributes by index, -1 where it has none. Groups cover the faces from
/// first to last without gaps; a mesh without groups is one unnamed group without a material. Everything is
/// owned by value; host and plug-ins share one C++ run-time, so it may be filled in one module and freed in
/// another.

struct MeshCorner
{
    int position = -1;
    int texcoord = -1;
    int normal = -1;
};

struct MeshMaterial
{
    CString name;
    std::array<float, 3> ambient{0.0f, 0.0f, 0.0f}; ///< linear red, green, blue, 0 to 1
    std::array<float, 3> diffuse{0.8f, 0.8f, 0.8f};
    std::array<float, 3> specular{0.0f, 0.0f, 0.0f};
    float shininess = 0.0f; ///< specular exponent
    float opacity = 1.0f;   ///< 1 is opaque
    CString diffuseMap;     ///< path of a picture, relative to the mesh's file; empty for none
};

struct MeshGroup
{
    CString name;
    int material = -1; ///< index into Mesh::materials, -1 for none
    std::size_t firstFace = 0;
    std::size_t faceCount = 0;
};

struct Mesh
{
    std::vector<std::array<float, 3>> positions;
    std::vector<std::array<float, 2>> texcoords;
    std::vector<std::array<float, 3>> normals;
    std::vector<MeshCorner> corners;
    std::vector<unsigned int> faceSizes;
    std::vector<MeshGroup> groups;
    std::vector<MeshMaterial> materials;

    /// True when every face has at least three corners and every index names an existing element.
    bool IsConsistent() const
    {
        std::size_t used = 0;
        for (const unsigned int size : faceSizes) {
            if (size < 3)
                return false;
            used += size;
        }
        if (used != corners.size())
            return false;
        for (const MeshCorner& corner : corners) {
            if (corner.position < 0 || !InRange(corner.position, positions.size()) ||
                !InRange(corner.texcoord, texcoords.size()) || !InRange(corner.normal, normals.size()))
                return false;
        }
        return GroupsCoverFaces();
    }

private:
    static bool InRange(int index, std::size_t count)
    {
        return index == -1 || (index >= 0 && static_cast<std::size_t>(index) < count);
    }

    bool GroupsCoverFaces() const
    {
        std::size_t next = 0;
        for (const MeshGroup& group : groups) {
            if (group.firstFace != next || !InRange(group.material, materials.size()))
                return false;
            next += group.faceCount;
        }
        return groups.empty() || next == faceSizes.size();
    }
};
