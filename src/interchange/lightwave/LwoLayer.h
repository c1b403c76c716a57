// One layer of a LightWave object while it is read.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "geometry/FaceSplit.h"
#include "interchange/ByteReader.h"
#include "interchange/ImportedGroups.h"
#include "interchange/lightwave/LwoSurfaces.h"

namespace orvin::lwo {

class Layer {
  public:
    Layer(ImportedGroups& model, Surfaces& surfaces) : model_(model), surfaces_(surfaces) {}

    void setName(std::string_view name) { name_ = name; }

    /// Adds points and returns the index of the first in the mesh.
    int addPoints(ByteReader points);

    Mesh3& mesh() { return mesh_; }

    /// What a layer is going to get.
    struct Counts {
        std::size_t points = 0;
        std::size_t texture = 0;  // at most
        std::size_t faces = 0;
        std::size_t corners = 0;
    };
    void reserve(const Counts& counts);

    /// Adds a polygon as the file has it (clockwise). One of two corners is a line, one-point
    /// polygons that follow one another are one list of points. `surface` is a number of the
    /// surfaces or kNone; `texture` has one texture vertex per corner, or none at all.
    void addPolygon(std::span<const int> corners, std::span<const int> texture,
                    std::uint32_t surface);
    void addCurve(std::span<const int> corners, std::uint32_t surface);

    /// Gives the model what was gathered, concave faces split, and starts anew. A layer of more
    /// than six surfaces makes several groups of its name; an empty one makes none.
    void finish();

  private:
    int localSurface(std::uint32_t surface);
    void finishPoints();
    void give(Mesh3 mesh, std::span<const int> materials);

    ImportedGroups& model_;
    Surfaces& surfaces_;
    std::string name_;
    Mesh3 mesh_;                  // material of a face: number of its surface in this layer
    std::vector<int> materials_;  // of those numbers
    std::unordered_map<std::uint32_t, int> numbers_;
    std::uint32_t lastSurface_ = 0;  // asked for, and its number: most polygons follow their like
    int lastNumber_ = -1;
    std::vector<int> points_;  // a run of one-point polygons
    int pointSurface_ = 0;
    ConvexFaces convexFaces_;
    std::size_t room_ = 0;      // corners that the mesh has room for
    std::vector<int> corners_;  // of the polygon that is being added
    std::vector<int> texture_;
};

}  // namespace orvin::lwo
