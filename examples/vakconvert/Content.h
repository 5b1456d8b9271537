#pragma once

#include "examples/sdk/Image.h"
#include "examples/sdk/Mesh.h"

/// What a file of either family holds.
struct Content
{
    Mesh mesh;
    Image image;
    bool isMesh = false;
};
