// PolyShape2: the working form of a flat outline: closed loops over one shared vertex table, held
// as linked records, so that loops can be cut, merged and re-routed without moving vertices.
//
// Not for storage: building a mesh makes copies, since most operations change the shape for good.
// Degenerate input: repeated points, zero-area and self-crossing loops are kept as they are until
// an operation below says what becomes of them; coordinates that aren't finite never match
// anything.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "geometry/outline/Line2.h"
#include "toolkit/Result.h"

namespace orvin {

/// One record of a loop. A loop is a cycle of `next`; several records may name the same vertex.
struct Prec {
    int vertexID = -1;  // index into vertices, -1 for a deleted record
    int next = -1;      // index of the record that follows, or -1

    bool live() const { return vertexID >= 0 && next >= 0; }
};

/// One loop as classifyLoops found it.
struct LoopInfo {
    int head = -1;  // its first record
    int depth = 0;  // how many loops are around it; even depths are filled
};

class PolyShape2 {
  public:
    std::vector<Prec> precs;
    std::vector<Vec2> vertices;
    std::vector<Vec2> normals;  // one per vertex, or empty

    /// Appends one loop in the order given (no repeated last point). `loopNormals` has the same
    /// length as `points`. Returns the last record's index, -1 for no points.
    int addLoop(std::span<const Vec2> points, std::span<const Vec2> loopNormals);
    void clear();

    /// Gives records whose vertices are within `tolerance` the smaller vertex id; no vertex moves.
    /// Records that repeat their successor's vertex go.
    void weld(double tolerance);

    /// Loops by box area, smallest first (stable), after turning those at even depth
    /// counter-clockwise and those at odd depth clockwise (y up).
    std::vector<LoopInfo> classifyLoops();
    void normalizeOrientation() { classifyLoops(); }

    bool loopContainsPoint(int head, int vertexID) const;
    bool loopIsClockwise(int head) const;  // a loop without area is not
    void reverseLoop(int head);            // touches neither vertices nor normals

    /// Cuts every loop along the infinite line; the pieces share vertices on the cut. -1 when the
    /// crossings don't pair up (the records inserted so far stay).
    Result cutByLine(const Line2& line);
    /// Inserts vertices where edges cross the line; loops stay whole.
    void splitEdgesAtLine(const Line2& line);
    /// Cuts (or only splits) along a grid of dx by dy through (ox, oy); a step of 0 or less means
    /// no lines in that direction. More than 4096 lines one way or 250000 tiles in all: a logged
    /// line, and the shape stays whole.
    Result tile(double dx, double dy, double ox, double oy, bool splitOnly);

    /// Makes clean outlines of loops that cross themselves or each other: what remains is the
    /// border of the places with positive winding. Loops that cross millions of times are told and
    /// stay as they are.
    void resolveOverlaps();

    /// One loop as its records follow each other.
    std::vector<Vec2> loopPoints(int head) const;

    /// All loops as lists of points; -1 if a loop runs into a deleted record.
    Result collectLoops(std::vector<std::vector<Vec2>>& loops) const;

    /// Replaces everything by these loops, with normals from their corners.
    void rebuildFromLoops(std::span<const std::vector<Vec2>> loops);

    /// Drops dead records and unused vertices; order is kept.
    void compact();

    Box2 bounds() const;  // of the vertices that live records use
    Vec2 at(int prec) const { return vertices[index(precs[index(prec)].vertexID)]; }

  private:
    static std::size_t index(int i) { return static_cast<std::size_t>(i); }
    void removeCollinear(double tolerance);
};

}  // namespace orvin
