// FaceTable: what each face of a mesh is, and where its corners begin in the mesh's pools.
//
// Faces that follow one another with the same shape are one run, so a mesh of few kinds of faces
// takes next to nothing for them. A mesh of more than kMaxRuns runs has 8 bytes for each face.
//
// Faces are numbered from 0 to size() - 1, corners from 0 to cornerEnd() - 1 in the order of their
// faces; nothing here checks them, nor that there are at most 2^32 - 1 corners: MeshRecord does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvin {

/// What a face's vertices mean. The numbers are those of files and of imported data.
enum class ElementKind : std::int32_t {
    kPolygon = 0,    // in Mesh2: a closed loop
    kLine = 1,       // an open polyline
    kPointList = 2,  // in Mesh2: an open path
};

class FaceTable {
  public:
    struct Shape {
        std::uint32_t count = 0;  // of corners, at least one
        std::int32_t material = 0;
        ElementKind kind = ElementKind::kPolygon;
        bool texture = false;  // it has texture vertices
        bool normals = false;

        friend bool operator==(const Shape&, const Shape&) = default;
    };
    struct Place {
        std::uint32_t start = 0;  // of the corners in the pools
        Shape shape;
    };

    std::size_t size() const { return size_; }
    std::size_t cornerEnd() const { return end_; }  // where the corners of the next face begin

    /// Adds a face whose corners begin where those of the last one end.
    void add(const Shape& shape);

    Place at(std::size_t face) const { return isRuns_ ? inRuns(face) : inRecords(face); }

    /// The face that a corner of the pools belongs to.
    std::size_t faceOfCorner(std::uint32_t corner) const;

    void setMaterial(std::size_t face, std::int32_t material);
    void setHasNormals();  // all of them

    /// Tells how many faces there are going to be.
    void reserve(std::size_t faces);

  private:
    struct Run {
        std::uint32_t face = 0;  // the first
        std::uint32_t start = 0;
        Shape shape;
    };
    struct Record {
        std::uint32_t start = 0;
        std::uint32_t bits = 0;  // material, kind, lists
    };
    static constexpr std::size_t kMaxRuns = 32;

    Place inRuns(std::size_t face) const {
        const Run* run = runs_.data();
        for (std::size_t n = runs_.size(); n > 1;) {  // the last one that begins before `face`
            const std::size_t half = n / 2;
            if (run[half].face <= face) run += half;
            n -= half;
        }
        const auto before = static_cast<std::uint32_t>(face) - run->face;
        return {run->start + before * run->shape.count, run->shape};
    }
    Place inRecords(std::size_t face) const;
    std::int32_t storedMaterial(std::size_t face, std::int32_t material);
    std::size_t farMaterial(std::size_t face) const;
    void addRecord(const Shape& shape, std::uint32_t start);
    void dissolveRuns();
    std::uint32_t endOf(std::size_t face) const {
        return face + 1 < records_.size() ? records_[face + 1].start : end_;
    }

    std::size_t size_ = 0;
    std::size_t expected_ = 0;
    std::uint32_t end_ = 0;  // of the last face's corners
    bool isRuns_ = true;     // else records
    std::vector<Run> runs_;
    std::vector<Record> records_;
    struct FarMaterial {
        std::size_t face = 0;
        std::int32_t material = 0;
    };
    std::vector<FarMaterial> farMaterials_;  // that have no room in records, by face
};

}  // namespace orvin
