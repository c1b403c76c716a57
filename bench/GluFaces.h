// GluFaces: the peer of the face mesher, GLU's tessellator.
#pragma once

#include <GL/glu.h>

#include <array>
#include <memory>
#include <vector>

#include "bench/OutlineShapes.h"

namespace orvin::benches {

/// Fills loops with triangles, as indices, which is what a mesh is made from.
class GluFaces {
  public:
    GluFaces() : tess_(gluNewTess()) {
        using Callback = void (*)();
        gluTessCallback(tess_, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(&vertex));
        gluTessCallback(tess_, GLU_TESS_EDGE_FLAG, reinterpret_cast<Callback>(&edgeFlag));
        gluTessCallback(tess_, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(&combine));
        gluTessNormal(tess_, 0.0, 0.0, 1.0);
    }
    ~GluFaces() { gluDeleteTess(tess_); }
    GluFaces(const GluFaces&) = delete;
    GluFaces& operator=(const GluFaces&) = delete;

    const std::vector<std::size_t>& fill(const Loops& loops) {
        corners_.clear();
        combined_.clear();
        coordinates_.clear();
        coordinates_.reserve(pointCount(loops));
        gluTessBeginPolygon(tess_, this);
        for (const Loop& loop : loops) {
            gluTessBeginContour(tess_);
            for (const Vec2 p : loop) {
                coordinates_.push_back({p.x, p.y, 0.0});
                gluTessVertex(tess_, coordinates_.back().data(),
                              reinterpret_cast<void*>(coordinates_.size()));
            }
            gluTessEndContour(tess_);
        }
        gluTessEndPolygon(tess_);
        return corners_;
    }

  private:
    static void vertex(void* data, void* self) {
        static_cast<GluFaces*>(self)->corners_.push_back(reinterpret_cast<std::size_t>(data));
    }
    static void edgeFlag(GLboolean) {}  // asks for single triangles
    static void combine(GLdouble* at, void**, GLfloat*, void** out, void* self) {
        auto& list = static_cast<GluFaces*>(self)->combined_;
        list.push_back({at[0], at[1], at[2]});
        *out = reinterpret_cast<void*>(std::size_t{1} << 40 | list.size());
    }

    GLUtesselator* tess_;
    std::vector<std::size_t> corners_;
    std::vector<std::array<double, 3>> coordinates_;
    std::vector<std::array<double, 3>> combined_;
};

}  // namespace orvin::benches
