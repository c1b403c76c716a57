// Draws how the time for faces grows with the points of an outline and its holes, beside GLU's
// tessellator: ./dev bench writes out/faces-growth.png. Each time is the best of several.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "bench/GluFaces.h"
#include "bench/OutlineShapes.h"
#include "common/Drawing.h"
#include "geometry/outline/FacePeeler.h"

namespace orvin::benches {
namespace {

using apps::Color;

constexpr std::array<int, 6> kPoints{100, 300, 1000, 3000, 10000, 30000};
constexpr std::array<int, 3> kHoles{0, 20, 200};
constexpr std::array<Color, 3> kOurs{{{200, 70, 30}, {225, 130, 60}, {240, 180, 110}}};
constexpr std::array<Color, 3> kGlu{{{40, 70, 120}, {90, 120, 165}, {150, 175, 210}}};

constexpr int kWidth = 800;
constexpr int kHeight = 600;
constexpr double kLeft = 110.0;
constexpr double kRight = 640.0;
constexpr double kTop = 40.0;
constexpr double kBottom = 530.0;
constexpr double kLeastTime = 1e-5;  // seconds, at the bottom
constexpr double kMostTime = 10.0;

double seconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <typename Work>
double best(Work&& work) {
    double least = 1e9;
    double spent = 0.0;
    for (int run = 0; run < 3 || (run < 200 && spent < 0.3); ++run) {
        const double start = seconds();
        work();
        const double time = seconds() - start;
        least = std::min(least, time);
        spent += time;
    }
    return least;
}

double ourTime(const Loops& loops) {
    const QuietOutput quiet;
    PolyShape2 shape = shapeOf(loops);
    shape.weld(0.001);
    return best([&shape] {
        std::size_t corners = 0;
        FacePeeler(shape).forEachPolygon([&](std::span<const int> ids) { corners += ids.size(); });
    });
}

double gluTime(const Loops& loops) {
    GluFaces glu;
    return best([&] { glu.fill(loops); });
}

Vec2 place(double points, double time) {
    const double x = std::log(points / 100.0) / std::log(300.0);
    const double y = std::log(time / kLeastTime) / std::log(kMostTime / kLeastTime);
    return {kLeft + x * (kRight - kLeft), kBottom + y * (kTop - kBottom)};
}

void drawAxes(apps::Picture& picture) {
    const Color grid{222, 222, 218};
    const Color ink{60, 62, 68};
    const char* times[] = {"10 us", "100 us", "1 ms", "10 ms", "100 ms", "1 s", "10 s"};
    double time = kLeastTime;
    for (const char* name : times) {
        const double y = place(100, time).y;
        drawLines(picture, std::array{apps::Polyline{{kLeft, y}, {kRight, y}}}, 1.0, grid);
        drawText(picture, name, {kLeft - 12.0 - apps::textWidth(name, 11.0), y + 5.0}, 11.0, ink);
        time *= 10.0;
    }
    for (const int points : kPoints) {
        const double x = place(points, kLeastTime).x;
        const std::string name = std::to_string(points);
        drawLines(picture, std::array{apps::Polyline{{x, kTop}, {x, kBottom}}}, 1.0, grid);
        drawText(picture, name, {x - apps::textWidth(name, 11.0) / 2.0, kBottom + 24.0}, 11.0, ink);
    }
    drawText(picture, "points", {(kLeft + kRight) / 2.0 - 25.0, kBottom + 52.0}, 12.0, ink);
}

struct Curve {
    std::string name;
    Color color;
    apps::Polyline points;
};

/// With the names beside the ends, from top to bottom and none over another.
void drawCurves(apps::Picture& picture, std::vector<Curve> curves) {
    for (const Curve& curve : curves) {
        drawLines(picture, std::array{curve.points}, 3.0, curve.color);
        for (const Vec2 p : curve.points)
            drawLines(picture, std::array{apps::Polyline{p}}, 8.0, curve.color);
    }
    std::sort(curves.begin(), curves.end(),
              [](const Curve& a, const Curve& b) { return a.points.back().y < b.points.back().y; });
    double y = 0.0;
    for (const Curve& curve : curves) {
        y = std::max(curve.points.back().y + 5.0, y + 19.0);
        drawText(picture, curve.name, {kRight + 16.0, y}, 11.0, curve.color);
    }
}

}  // namespace
}  // namespace orvin::benches

int main(int argc, char** argv) {
    using namespace orvin::benches;
    const std::string path = argc > 1 && argv[1][0] != '-' ? argv[1] : "out/faces-growth.png";
    orvin::apps::Picture picture(kWidth, kHeight);
    fillPicture(picture, {250, 250, 247});
    drawAxes(picture);
    std::printf("%8s %6s %12s %12s %8s\n", "points", "holes", "faces", "GLU", "ratio");
    std::vector<Curve> curves{{"n log n", {170, 172, 176}, {}}};
    for (std::size_t h = 0; h < kHoles.size(); ++h) {
        const std::string holes = ", " + std::to_string(kHoles[h]) + " holes";
        Curve ours{"faces" + holes, kOurs[h], {}};
        Curve glu{"GLU" + holes, kGlu[h], {}};
        double unit = 0.0;  // of n log n, from the first time on
        for (const int points : kPoints) {
            if (points < 10 * kHoles[h]) continue;
            const Loops loops = holedDisc(points, kHoles[h]);
            const double ourSeconds = ourTime(loops);
            const double gluSeconds = gluTime(loops);
            std::printf("%8d %6d %9.3f ms %9.3f ms %8.2f\n", points, kHoles[h], ourSeconds * 1e3,
                        gluSeconds * 1e3, gluSeconds / ourSeconds);
            ours.points.push_back(place(points, ourSeconds));
            glu.points.push_back(place(points, gluSeconds));
            const double growth = points * std::log(points);
            if (unit == 0.0) unit = ourSeconds / growth;
            if (h == 0) curves[0].points.push_back(place(points, growth * unit));
        }
        curves.push_back(std::move(glu));
        curves.push_back(std::move(ours));
    }
    drawCurves(picture, std::move(curves));
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    orvin::apps::writePng(path, picture);
    std::printf("drawn in %s\n", path.c_str());
}
