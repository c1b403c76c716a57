#include "geometry/outline/Curve2.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/outline/Line2.h"
#include "scene/SceneStream.h"

namespace orvin {

namespace {

constexpr double kShort = 0.1;        // nearer than this is one point
constexpr double kClosingGap = 0.01;  // a closed curve with a wider gap gets its first point again
constexpr double kLengthTolerance = 0.1;
// Of a curve's extent: nobody sees less, and curves of huge extent would take thousands of points.
constexpr double kFinest = 1e-6;
constexpr std::size_t kMaxSamples = 4096;

double distance(Vec2 a, Vec2 b) {
    return length(a - b);
}

bool wantsClosingPoint(bool closed, std::span<const Vec2> points) {
    return closed && !points.empty() && distance(points.front(), points.back()) > kClosingGap;
}

/// de Casteljau on a list of the caller's; the control points stay as they are.
Vec2 evaluateBezier(std::span<const Vec2> control, double t, std::vector<Vec2>& work,
                    Vec2* normal) {
    if (control.empty()) return {};
    work.assign(control.begin(), control.end());
    const double rest = 1.0 - t;
    std::size_t left = work.size();
    for (Vec2* const w = work.data(); left > 2; --left)
        for (std::size_t i = 0; i + 1 < left; ++i)
            w[i] = w[i] * rest + w[i + 1] * t;
    if (left == 1) return work[0];
    if (normal != nullptr) *normal = leftNormal(normalize(work[1] - work[0]));
    return work[0] * rest + work[1] * t;
}

double extentOf(std::span<const Vec2> points) {
    Box2 box;
    for (const Vec2 p : points)
        box.add(p);
    return points.empty() ? 0.0 : std::max(box.width(), box.height());
}

struct Sample {
    Vec2 point;
    Vec2 normal;
    double t = 0.0;
};

double offLine(const Sample& from, const Sample& to, const Sample& middle) {
    return std::abs(Line2(from.point, to.point).signedDistance(middle.point));
}

Curve2& curve(Persistent& self) {
    return static_cast<Curve2&>(self);
}

Result readFlag(SceneStream& stream, bool& flag) {
    int value = 0;
    if (stream.readInt(value) != kSuccess) return kFailure;
    if (value != 0) flag = true;
    return kSuccess;
}

}  // namespace

Curve2::Curve2(Type type, std::vector<Vec2> points) : type_(type), points_(std::move(points)) {
    computeLength();
}

Result Curve2::writeBody(SceneStream& stream) {
    if (type_ == Type::kEmpty) return stream.putWord("type", "Empty");
    Result result = stream.putWord("type", type_ == Type::kBezier ? "Bezier" : "Linear");
    for (const Vec2& p : points_) {
        if (result != kSuccess) return result;
        const double values[] = {p.x, p.y};
        result = stream.putDoubles("p", values);
    }
    if (result == kSuccess) result = stream.putInt("attachedHead", attachedHead);
    if (result == kSuccess) result = stream.putInt("attachedTail", attachedTail);
    if (result == kSuccess) result = stream.putInt("closed", closed);
    return result;
}

const CommandRegistry& Curve2::commandRegistry() const {
    static const CommandRegistry& registry = []() -> const CommandRegistry& {
        static CommandRegistry r;
        r.lookupOrInsert("type", [](SceneStream& stream, Persistent& self) {
            std::string_view word;
            if (stream.nextToken(word) != kSuccess) return kFailure;
            if (word == "Bezier")
                curve(self).setType(Type::kBezier);
            else if (word == "Linear")
                curve(self).setType(Type::kLinear);
            else if (word == "Empty")
                curve(self).setType(Type::kEmpty);
            else
                return kFailure;
            return kSuccess;
        });
        r.lookupOrInsert("p", [](SceneStream& stream, Persistent& self) {
            Vec2 p;
            if (stream.readVector2(p) != kSuccess) return kFailure;
            curve(self).addPoint(p);
            return kSuccess;
        });
        r.lookupOrInsert("attachedHead", [](SceneStream& stream, Persistent& self) {
            return readFlag(stream, curve(self).attachedHead);
        });
        r.lookupOrInsert("attachedTail", [](SceneStream& stream, Persistent& self) {
            return readFlag(stream, curve(self).attachedTail);
        });
        r.lookupOrInsert("closed", [](SceneStream& stream, Persistent& self) {
            return readFlag(stream, curve(self).closed);
        });
        r.lookupOrInsert("end", [](SceneStream& stream, Persistent& self) {
            curve(self).computeLength();
            return endCommand(stream, self);
        });
        return r;
    }();
    return registry;
}

void Curve2::makeEmpty() {
    attachedHead = attachedTail = closed = false;
    points_.clear();
    type_ = Type::kEmpty;
}

void Curve2::startFrame(Vec2& point, Vec2& direction) const {
    point = direction = {};
    if (type_ == Type::kEmpty || points_.empty()) return;
    point = points_.front();
    if (points_.size() > 1) direction = normalize(points_[0] - points_[1]);
}

void Curve2::endFrame(Vec2& point, Vec2& direction) const {
    point = direction = {};
    if (type_ == Type::kEmpty || points_.empty()) return;
    point = points_.back();
    if (points_.size() > 1) direction = normalize(points_.back() - points_[points_.size() - 2]);
}

Vec2 Curve2::evaluate(double t, Vec2* normal) const {
    if (type_ == Type::kBezier) {
        std::vector<Vec2> work;
        return evaluateBezier(points_, t, work, normal);
    }
    if (type_ != Type::kLinear) return {};
    const double s = t * length_;
    double running = 0.0;
    for (std::size_t i = 1; i < points_.size(); ++i) {
        const Vec2 step = points_[i] - points_[i - 1];
        const double segment = orvin::length(step);
        if (segment == 0.0) continue;
        if (running + segment >= s) {
            const double u = (s - running) / segment;
            if (normal != nullptr) *normal = leftNormal(normalize(step));
            return points_[i] * u + points_[i - 1] * (1.0 - u);
        }
        running += segment;
    }
    return {};
}

Result Curve2::flatten(double tolerance, std::vector<Vec2>& points,
                       std::vector<Vec2>& normals) const {
    points.clear();
    normals.clear();
    switch (type_) {
        case Type::kLinear:
            flattenLinear(points, normals);
            return kSuccess;
        case Type::kBezier:
            return flattenBezier(tolerance, points, normals);
        case Type::kEmpty:
            return kSuccess;
    }
    return kFailure;
}

Result Curve2::flattenBezier(double tolerance, std::vector<Vec2>& points,
                             std::vector<Vec2>& normals) const {
    const std::size_t n = points_.size();
    if (n > kMaxControlPoints) return kFailure;
    tolerance = std::max(tolerance, kFinest * extentOf(points_));
    std::vector<Vec2> work;
    const auto sampleAt = [&](double t) {
        Sample s;
        s.t = t;
        s.point = evaluateBezier(points_, t, work, &s.normal);
        return s;
    };
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < n; ++i) {
        samples.push_back(
            sampleAt(n > 1 ? static_cast<double>(i) / static_cast<double>(n - 1) : 0.0));
        const std::size_t count = samples.size();
        if (count > 2 &&
            offLine(samples[count - 3], samples[count - 1], samples[count - 2]) < tolerance)
            samples.erase(samples.end() - 2);
    }
    std::vector<char> marked;
    std::vector<Sample> refined;
    while (samples.size() > 2 && samples.size() < kMaxSamples) {
        marked.assign(samples.size(), 0);
        bool any = false;
        for (std::size_t k = 1; k + 1 < samples.size(); ++k) {
            marked[k] = offLine(samples[k - 1], samples[k + 1], samples[k]) > tolerance;
            any = any || marked[k];
        }
        if (!any) break;
        refined.clear();
        for (std::size_t k = 0; k < samples.size(); ++k) {
            if (k > 0 && (marked[k - 1] || marked[k]))
                refined.push_back(sampleAt((samples[k - 1].t + samples[k].t) / 2.0));
            refined.push_back(samples[k]);
        }
        samples.swap(refined);
    }
    points.reserve(samples.size() + 1);
    normals.reserve(samples.size() + 1);
    for (const Sample& s : samples) {
        points.push_back(s.point);
        normals.push_back(s.normal);
    }
    if (wantsClosingPoint(closed, points)) {
        points.push_back(points.front());
        normals.push_back(normals.front());
    }
    return kSuccess;
}

void Curve2::flattenLinear(std::vector<Vec2>& points, std::vector<Vec2>& normals) const {
    const auto segment = [&](Vec2 from, Vec2 to) {
        const Vec2 normal = leftNormal(to - from);
        points.push_back(from);
        normals.push_back(normal);
        points.push_back(to);
        normals.push_back(normal);
    };
    if (points_.size() == 1) {
        segment(points_[0], points_[0]);
        return;
    }
    for (std::size_t i = 1; i < points_.size(); ++i)
        segment(points_[i - 1], points_[i]);
    if (wantsClosingPoint(closed, points)) {
        const Vec2 closing = leftNormal(points_.front() - points_.back());
        points.push_back(points_.front());
        normals.push_back(closing);
    }
}

int Curve2::removeShort() {
    const std::size_t before = points_.size();
    if (type_ == Type::kLinear) {
        // From the end: of two points too near it is the earlier one that goes.
        std::size_t kept = points_.size();
        for (std::size_t i = points_.size(); i-- > 0;)
            if (kept == points_.size() || !(distance(points_[kept], points_[i]) <= kShort))
                points_[--kept] = points_[i];
        points_.erase(points_.begin(), points_.begin() + static_cast<std::ptrdiff_t>(kept));
        if (points_.size() < 2) makeEmpty();
    } else if (type_ == Type::kBezier) {
        if (before < 2 || (distance(points_.front(), points_.back()) < kShort &&
                           distance(points_[0], points_[1]) < kShort))
            makeEmpty();
    }
    points_.shrink_to_fit();
    return static_cast<int>(before - points_.size());
}

void Curve2::computeLength() {
    length_ = 0.0;
    std::vector<Vec2> flat;
    std::vector<Vec2> normals;
    std::span<const Vec2> line = points_;
    if (type_ == Type::kBezier) {
        flattenBezier(kLengthTolerance, flat, normals);
        line = flat;
    } else if (type_ != Type::kLinear) {
        return;
    }
    for (std::size_t i = 1; i < line.size(); ++i)
        length_ += distance(line[i], line[i - 1]);
}

void Curve2::appendKnots(double offset, double total, std::vector<double>& knots) const {
    if (offset == 0.0) knots.push_back(0.0);
    if (type_ == Type::kBezier) knots.push_back((offset + length_) / total);
    if (type_ != Type::kLinear) return;
    double running = 0.0;
    for (std::size_t i = 1; i < points_.size(); ++i) {
        running += distance(points_[i], points_[i - 1]);
        knots.push_back((offset + running) / total);
    }
}

bool Curve2::snapToKnot(Vec2& point, double tolerance, double& accumulated) const {
    const auto hits = [&](Vec2 knot) {
        if (!(distance(knot, point) <= tolerance)) return false;
        point = knot;
        return true;
    };
    if (points_.empty()) return false;
    if (type_ == Type::kBezier) {
        if (accumulated == 0.0 && hits(points_.front())) return true;
        accumulated += length_;
        return hits(points_.back());
    }
    if (type_ != Type::kLinear) return false;
    if (accumulated == 0.0 && hits(points_.front())) return true;
    for (std::size_t i = 1; i < points_.size(); ++i) {
        accumulated += distance(points_[i], points_[i - 1]);
        if (hits(points_[i])) return true;
    }
    return false;
}

void Curve2::translate(double dx, double dy) {
    for (Vec2& p : points_)
        p = p + Vec2{dx, dy};
}

void Curve2::scale(double factor) {
    for (Vec2& p : points_)
        p = p * factor;
}

void Curve2::reverse() {
    std::reverse(points_.begin(), points_.end());
    std::swap(attachedHead, attachedTail);
}

}  // namespace orvin
