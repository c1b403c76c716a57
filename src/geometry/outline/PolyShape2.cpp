#include "geometry/outline/PolyShape2.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "geometry/outline/LoopGeometry.h"
#include "geometry/outline/OverlapPairs.h"

namespace orvin {

int PolyShape2::addLoop(std::span<const Vec2> points, std::span<const Vec2> loopNormals) {
    if (points.empty()) return -1;
    const int firstPrec = static_cast<int>(precs.size());
    const int firstVertex = static_cast<int>(vertices.size());
    vertices.insert(vertices.end(), points.begin(), points.end());
    normals.insert(normals.end(), loopNormals.begin(), loopNormals.end());
    const int count = static_cast<int>(points.size());
    for (int i = 0; i < count; ++i)
        precs.push_back({firstVertex + i, firstPrec + i + 1});
    precs.back().next = firstPrec;
    return firstPrec + count - 1;
}

void PolyShape2::clear() {
    precs.clear();
    vertices.clear();
    normals.clear();
}

Box2 PolyShape2::bounds() const {
    Box2 box;
    for (const Prec& p : precs)
        if (p.live()) box.add(vertices[index(p.vertexID)]);
    return box;
}

void PolyShape2::weld(double tolerance) {
    std::vector<Interval> intervals;
    intervals.reserve(precs.size());
    for (std::size_t i = 0; i < precs.size(); ++i) {
        if (!precs[i].live()) continue;
        const double x = vertices[index(precs[i].vertexID)].x;
        if (std::isfinite(x))
            intervals.push_back({x - tolerance, x + tolerance, static_cast<int>(i)});
    }
    int welded = 0;
    forEachOverlap(intervals, [&](int first, int second) {
        Prec& a = precs[index(first)];
        Prec& b = precs[index(second)];
        if (a.vertexID == b.vertexID) return;
        if (!(length(vertices[index(a.vertexID)] - vertices[index(b.vertexID)]) <= tolerance))
            return;
        Prec& larger = a.vertexID > b.vertexID ? a : b;
        larger.vertexID = std::min(a.vertexID, b.vertexID);
        ++welded;
    });
    std::printf("%d prec's welded.\n", welded);

    int removed = 0;
    do {
        removed = 0;
        for (std::size_t i = 0; i < precs.size(); ++i) {
            while (precs[i].live()) {
                Prec& next = precs[index(precs[i].next)];
                if (next.vertexID != precs[i].vertexID) break;
                const bool alone = &next == &precs[i] || next.next == static_cast<int>(i);
                precs[i].next = next.next;
                next.vertexID = -1;
                ++removed;
                if (alone) precs[i].vertexID = -1;
            }
        }
        std::printf("%d duplicate vertices.\n", removed);
    } while (removed > 0);
}

bool PolyShape2::loopContainsPoint(int head, int vertexID) const {
    const Vec2 p = vertices[index(vertexID)];
    int left = 0;
    int right = 0;
    int i = head;
    do {
        const Vec2 a = at(i);
        i = precs[index(i)].next;
        const Vec2 b = at(i);
        if (a.y == b.y) continue;
        if (!(p.y >= std::min(a.y, b.y) && p.y < std::max(a.y, b.y))) continue;
        const double u = (p.y - a.y) / (b.y - a.y);
        const double crossing = (1.0 - u) * a.x + u * b.x;
        ++(crossing <= p.x ? left : right);
    } while (i != head);
    if ((left + right) % 2 != 0) {
        std::printf("PolyShape2::loopContainsPoint exception:\n");
        std::printf("right_crossings %d left_crossings %d\n", right, left);
        return false;
    }
    return left % 2 == 1;
}

bool PolyShape2::loopIsClockwise(int head) const {
    double sum = 0.0;
    int i = head;
    do {
        const Vec2 p = at(i);
        i = precs[index(i)].next;
        sum += cross(at(i) - p, p);
    } while (i != head);
    return sum > 0.0;
}

void PolyShape2::reverseLoop(int head) {
    int previous = head;
    int i = precs[index(head)].next;
    while (i != head) {
        const int following = precs[index(i)].next;
        precs[index(i)].next = previous;
        previous = i;
        i = following;
    }
    precs[index(head)].next = previous;
}

std::vector<LoopInfo> PolyShape2::classifyLoops() {
    struct Loop {
        int head;
        Box2 box;
        double area;
    };
    std::vector<Loop> loops;
    std::vector<char> visited(precs.size(), 0);
    for (std::size_t start = 0; start < precs.size(); ++start) {
        if (visited[start] || !precs[start].live()) continue;
        Loop loop{static_cast<int>(start), {}, 0.0};
        for (int i = loop.head; !visited[index(i)]; i = precs[index(i)].next) {
            visited[index(i)] = 1;
            loop.box.add(at(i));
        }
        loop.area = loop.box.area();
        if (!std::isfinite(loop.area)) loop.area = std::numeric_limits<double>::max();
        loops.push_back(loop);
    }
    std::stable_sort(loops.begin(), loops.end(),
                     [](const Loop& a, const Loop& b) { return a.area < b.area; });
    std::vector<LoopInfo> infos;
    infos.reserve(loops.size());
    for (std::size_t a = 0; a < loops.size(); ++a) {
        LoopInfo info{loops[a].head, 0};
        const int vertex = precs[index(info.head)].vertexID;
        for (std::size_t b = a + 1; b < loops.size(); ++b)
            if (loops[b].box.contains(loops[a].box) && loopContainsPoint(loops[b].head, vertex))
                ++info.depth;
        infos.push_back(info);
    }
    for (const LoopInfo& info : infos)
        if (loopIsClockwise(info.head) == (info.depth % 2 == 0)) reverseLoop(info.head);
    return infos;
}

std::vector<Vec2> PolyShape2::loopPoints(int head) const {
    std::vector<Vec2> points;
    int i = head;
    do {
        points.push_back(at(i));
        i = precs[index(i)].next;
    } while (i != head);
    return points;
}

Result PolyShape2::collectLoops(std::vector<std::vector<Vec2>>& loops) const {
    std::vector<char> visited(precs.size(), 0);
    for (std::size_t start = 0; start < precs.size(); ++start) {
        if (visited[start] || !precs[start].live()) continue;
        std::vector<Vec2> points;
        for (int i = static_cast<int>(start); i >= 0 && !visited[index(i)];
             i = precs[index(i)].next) {
            if (precs[index(i)].vertexID < 0) return kFailure;
            visited[index(i)] = 1;
            points.push_back(at(i));
        }
        loops.push_back(std::move(points));
    }
    return kSuccess;
}

void PolyShape2::rebuildFromLoops(std::span<const std::vector<Vec2>> loops) {
    clear();
    for (const std::vector<Vec2>& loop : loops)
        addLoop(loop, cornerNormals(loop));
}

void PolyShape2::compact() {
    const bool keepNormals = normals.size() == vertices.size();
    std::vector<int> newPrec(precs.size(), -1);
    std::vector<int> newVertex(vertices.size(), -1);
    PolyShape2 packed;
    for (std::size_t i = 0; i < precs.size(); ++i) {
        if (!precs[i].live()) continue;
        newPrec[i] = static_cast<int>(packed.precs.size());
        const std::size_t v = index(precs[i].vertexID);
        if (newVertex[v] < 0) {
            newVertex[v] = static_cast<int>(packed.vertices.size());
            packed.vertices.push_back(vertices[v]);
            if (keepNormals) packed.normals.push_back(normals[v]);
        }
        packed.precs.push_back({newVertex[v], precs[i].next});
    }
    for (Prec& p : packed.precs)
        p.next = newPrec[index(p.next)];
    *this = std::move(packed);
}

}  // namespace orvin
