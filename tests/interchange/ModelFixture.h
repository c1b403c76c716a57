// What tests of model files share: a folder for them, a scene, and a user who answers by script.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "geometry/GeometryClasses.h"
#include "geometry/ObjectP.h"
#include "scene/SceneX.h"
#include "tests/support/TempFolder.h"
#include "toolkit/Questions.h"

namespace orvin {

namespace fs = std::filesystem;

class ScriptedQuestions final : public HeadlessQuestions {
  public:
    void showMessage(std::string_view text, bool) override { messages += text; }
    std::optional<fs::path> openFile(std::string_view title, std::string_view) override {
        lastTitle = title;
        return answer;
    }
    std::optional<fs::path> saveFile(std::string_view title, std::string_view) override {
        lastTitle = title;
        return answer;
    }
    std::string messages;
    std::string lastTitle;
    std::optional<fs::path> answer;
};

class ModelFiles : public testing::Test {
  protected:
    void SetUp() override {
        registerGeometryClasses();
        before_ = setQuestions(&questions_);
    }
    void TearDown() override { setQuestions(before_); }

    fs::path file(std::string_view name, std::string_view text) const {
        const fs::path path = folder_ / name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    static std::string contents(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), {}));
    }

    ObjectP& triangle(std::string_view name, std::initializer_list<int> materials) {
        Mesh3 mesh;
        for (const Vec3 p : {Vec3{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})
            mesh.addVertex(p);
        mesh.addTexVertex({0.5, 0.25, 0});
        mesh.addNormal({0, 0, 1});
        const std::array<int, 3> zeros{0, 0, 0};
        bool textured = true;
        for (const int material : materials) {
            mesh.addFace(ElementKind::kPolygon, material, std::array<int, 3>{0, 1, 2},
                         textured ? std::span<const int>(zeros) : std::span<const int>(), zeros);
            textured = false;
        }
        auto& object = scene_.make<ObjectP>(name);
        object.setMesh(std::move(mesh));
        return object;
    }

    SceneX scene_;
    const test::TempFolder temporary_;
    const fs::path folder_ = temporary_.path();
    ScriptedQuestions questions_;
    Questions* before_ = nullptr;
};

}  // namespace orvin
