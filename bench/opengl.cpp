// OpenGL frames against a bare loop of fixed-function calls on the same mesh, in one program and
// one kind of context. Run in the root folder.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "geometry/MeshObject.h"
#include "render/CameraX.h"
#include "render/MaterialX.h"
#include "render/gl/FixedPipeline.h"
#include "render/gl/GlApi.h"
#include "render/gl/GlTarget.h"
#include "render/gl/GlView.h"
#include "render/gl/MeshArrays.h"
#include "render/gl/OrvinGLRender.h"
#include "scene/SceneX.h"
#include "setup/Project.h"

namespace {

using namespace orvin;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

double cpuSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

struct Word {
    Word() {
        // Mesa's rasteriser works in the calling thread then: one core.
        ::setenv("LP_NUM_THREADS", "0", 1);
        if (project.open("examples/shadows/word.twp") != kSuccess)
            throw std::runtime_error("run this in the root folder: examples/shadows/word.twp");
    }
    SceneX& scene() { return project.mainScene(); }
    CameraX& camera() { return *scene().memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera); }

    Project project;
};

/// What a program would write that draws this and nothing else: arrays once, then clear, place,
/// draw and read.
class BareLoop {
  public:
    explicit BareLoop(Word& word)
        : view_(makeGlView(word.camera(), kWidth, kHeight, 1.0, {})),
          pixels_(std::size_t{kWidth} * kHeight * 4) {
        std::string whyNot;
        target_ = openGlTarget(kWidth, kHeight, {}, whyNot);
        if (!target_) throw std::runtime_error(whyNot);
        for (SceneMember* member : word.scene().members(MemberKind::kObject)) {
            auto& object = static_cast<MeshObject&>(*member);
            std::uint32_t revision = 0;
            const Mesh3* mesh = object.mesh(1, revision);
            const auto* material = dynamic_cast<const MaterialX*>(object.faceMaterial(0));
            bodies_.push_back(
                {surfaceArrays(*mesh), object.world() * view_.cameraFromWorld,
                 fixedMaterial(material != nullptr ? material->look() : MaterialX::Look{})});
        }
        for (SceneMember* member : word.scene().members(MemberKind::kLight)) {
            auto& light = static_cast<LightX&>(*member);
            lights_.push_back({fixedLight(light, false), light.world() * view_.cameraFromWorld});
        }
    }

    std::size_t triangles() const {
        std::size_t count = 0;
        for (const Body& body : bodies_)
            count += body.arrays.triangles.size() / 3;
        return count;
    }

    void frame(bool lists) {
        target_->makeCurrent(kWidth, kHeight);
        glViewport(0, 0, kWidth, kHeight);
        glClearColor(0.0F, 0.0F, 0.0F, 0.0F);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_NORMALIZE);
        glEnable(GL_LIGHTING);
        glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(&view_.clipFromCamera.m[0][0]);
        glMatrixMode(GL_MODELVIEW);
        GLenum name = GL_LIGHT0;
        for (const Lamp& lamp : lights_) {
            glLoadMatrixd(&lamp.place.m[0][0]);
            glLightfv(name, GL_AMBIENT, lamp.light.ambient.data());
            glLightfv(name, GL_DIFFUSE, lamp.light.diffuse.data());
            glLightfv(name, GL_SPECULAR, lamp.light.diffuse.data());
            glLightfv(name, GL_POSITION, lamp.light.position.data());
            glLightf(name, GL_SPOT_EXPONENT, lamp.light.exponent);
            glLightf(name, GL_SPOT_CUTOFF, lamp.light.cutoff);
            glEnable(name++);
        }
        for (Body& body : bodies_) {
            glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, body.material.ambient.data());
            glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, body.material.diffuse.data());
            glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, body.material.specular.data());
            glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, body.material.shininess);
            glLoadMatrixd(&body.place.m[0][0]);
            if (lists) {
                if (body.list == 0) {
                    body.list = glGenLists(1);
                    glNewList(body.list, GL_COMPILE);
                    elements(body);
                    glEndList();
                }
                glCallList(body.list);
            } else {
                elements(body);
            }
        }
        glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels_.data());
        target_->release();
    }

  private:
    struct Body {
        MeshArrays arrays;
        Matrix4 place;
        FixedMaterial material;
        GLuint list = 0;
    };
    struct Lamp {
        FixedLight light;
        Matrix4 place;
    };

    static void elements(const Body& body) {
        glInterleavedArrays(GL_T2F_N3F_V3F, 0, body.arrays.vertices.data());
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(body.arrays.triangles.size()),
                       GL_UNSIGNED_INT, body.arrays.triangles.data());
    }

    GlView view_;
    std::unique_ptr<GlTarget> target_;
    std::vector<Body> bodies_;
    std::vector<Lamp> lights_;
    std::vector<unsigned char> pixels_;
};

struct OurFrame {
    explicit OurFrame(Word& word) : scene(word.scene()) {
        params.width = kWidth;
        params.height = kHeight;
        options.textures = false;
    }
    void frame() {
        if (gl.renderFrame(scene, params, options, picture) != kSuccess)
            throw std::runtime_error(gl.failure());
    }

    SceneX& scene;
    RenderParams params;
    GlFrameOptions options;
    OrvinGLRender gl;
    ImageBuffer picture;
};

// In turn, so that both meet the same machine; the least time of each counts. Limit: Mesa, which
// both wait for: filling and lighting pixels in software, then the copy out of its buffer.
void BM_DraftAgainstBareLoop(benchmark::State& state) {
    Word word;
    BareLoop bare(word);
    OurFrame ours(word);
    const bool lists = state.range(0) != 0;
    bare.frame(lists);
    ours.frame();
    double least = 1e9;
    double leastBare = 1e9;
    for (auto _ : state) {
        const double start = cpuSeconds();
        ours.frame();
        const double middle = cpuSeconds();
        bare.frame(lists);
        least = std::min(least, middle - start);
        leastBare = std::min(leastBare, cpuSeconds() - middle);
    }
    state.counters["draft_ms"] = least * 1e3;
    state.counters["bare_ms"] = leastBare * 1e3;
    state.counters["times_bare"] = least / leastBare;
    state.counters["triangles"] = static_cast<double>(bare.triangles());
    state.counters["meshes_compiled"] = static_cast<double>(ours.gl.meshesCompiled());
    state.SetLabel(lists ? "bare loop with display lists" : "bare loop with arrays");
}
BENCHMARK(BM_DraftAgainstBareLoop)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// What a mesh costs when it is new: joining corners, then the driver's own copy of them.
// Limit: the hash table that finds equal corners.
void BM_SurfaceArrays(benchmark::State& state) {
    Word word;
    std::vector<const Mesh3*> meshes;
    double corners = 0.0;
    for (SceneMember* member : word.scene().members(MemberKind::kObject)) {
        std::uint32_t revision = 0;
        meshes.push_back(static_cast<MeshObject&>(*member).mesh(1, revision));
        corners += static_cast<double>(meshes.back()->cornerCount());
    }
    for (auto _ : state)
        for (const Mesh3* mesh : meshes)
            benchmark::DoNotOptimize(surfaceArrays(*mesh).triangles.data());
    state.counters["corners/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * corners, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_SurfaceArrays)->Unit(benchmark::kMillisecond);

}  // namespace
