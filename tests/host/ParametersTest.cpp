#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "host/CompLinks.h"
#include "host/DescribeParameters.h"
#include "host/LayerMaps.h"
#include "host/SceneDrive.h"
#include "render/ImageFile.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/image/ImageCache.h"
#include "setup/StartUp.h"
#include "tests/host/FakeHost.h"

namespace orvin {
namespace {

constexpr PF_SpecVersion kToday{13, 4};

/// The parameters of a host of today at their defaults.
struct Params {
    std::vector<PF_ParamDef> defs = describeParameters(kToday);
    PF_ParamDef input{};
    std::vector<PF_ParamDef*> pointers{&input};

    Params() {
        for (PF_ParamDef& def : defs)
            pointers.push_back(&def);
    }
    ParamArray array() const { return pointers.data(); }
    void slide(int index, double value) { pointers[index_(index)]->u.fd.value = toFixed(value); }
    double value(int index) const { return sliderValue(array(), index); }
    PF_ParamDef& operator[](int index) { return *pointers[index_(index)]; }

  private:
    static std::size_t index_(int i) { return static_cast<std::size_t>(i); }
};

struct PosedScene {
    SceneX scene;
    CameraX& camera = scene.make<CameraX>(kDefaultCamera);

    PosedScene() {
        for (int i = 0; i < 4; ++i) {
            LightX& light = scene.make<LightX>("light" + std::to_string(i));
            light.setType(i == 0 ? LightType::kAmbient : LightType::kDirectional);
        }
        for (int k = 0; k < gSetCount; ++k)
            scene.make<Group>(setName(k));
    }
};

TEST(Parameters, StandWhereTheIndicesSay) {
    Params p;
    ASSERT_EQ(p.pointers.size(), 125U);
    const struct {
        int index;
        int id;
        PF_ParamType type;
        const char* name;
    } rows[] = {{1, 1, PF_Param_NO_DATA, "Scene Preview"},
                {2, 123, PF_Param_CHECKBOX, ""},
                {5, 3, PF_Param_POPUP, "Camera Type"},
                {16, 122, PF_Param_FIX_SLIDER, "(O,L,H) Camera Ortho Size"},
                {20, 17, PF_Param_COLOR, "Light 1 Color"},
                {35, 32, PF_Param_FIX_SLIDER, "Light 3 Elevation"},
                {40, 37, PF_Param_FIX_SLIDER, "Set 1 X Position"},
                {109, 106, PF_Param_FIX_SLIDER, "Set 8 Depth Scale"},
                {111, 108, PF_Param_GROUP_END, ""},
                {122, 119, PF_Param_LAYER, "Layer Map 10"},
                {124, 121, PF_Param_CHECKBOX, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(p[row.index].uu.id, row.id) << row.index;
        EXPECT_EQ(p[row.index].param_type, row.type) << row.index;
        EXPECT_STREQ(p[row.index].name, row.name) << row.index;
    }
    std::set<int> ids;
    for (const PF_ParamDef& def : p.defs) {
        EXPECT_TRUE(ids.insert(def.uu.id).second) << def.uu.id;
        EXPECT_LT(std::strlen(def.name), sizeof(def.name));
    }
    EXPECT_EQ(p[2].flags, 0x42);
    EXPECT_EQ(p[124].flags, 0x40);
    EXPECT_EQ(p[6].flags, 0x60);
    EXPECT_EQ(p[1].ui_flags, 0x82);
    EXPECT_EQ(p[12].u.fd.valid_max, 30000 << 16);
    EXPECT_EQ(p[16].u.fd.valid_min, 6553);  // 0.1, cut off
    EXPECT_STREQ(p[2].u.bd.u.nameptr, "Use Comp Camera");
    EXPECT_EQ(p[5].u.pd.num_choices, 3);
}

TEST(Parameters, EveryIndexOfTheSetsSpeaksOfOne) {
    const int pairs[][2] = {{40, 1}, {46, 1}, {47, 2}, {49, 2}, {55, 2}, {101, 8}, {109, 8}};
    for (const auto& [index, set] : pairs)
        EXPECT_EQ(param::setOf(index), set) << index;
}

TEST(Parameters, OlderHostsGetFewer) {
    EXPECT_EQ(describeParameters({12, 5}).size(), 122U);  // no comp boxes
    for (const PF_ParamDef& def : describeParameters({11, 6})) {
        EXPECT_NE(def.param_type, PF_Param_GROUP_START);
        EXPECT_STRNE(def.name, "Set 4 X Position");
    }
}

TEST(Parameters, DriveTheCameraInItsMode) {
    Params p;
    PosedScene s;
    driveCamera(s.camera, p.array());
    EXPECT_EQ(s.camera.mode(), CameraMode::kOrbit);
    EXPECT_DOUBLE_EQ(s.camera.orthoWidth(), 500.0);
    // Orbit: the eye stands `distance` from the target.
    EXPECT_NEAR(length(s.camera.world().origin() - Vec3{0, 0, -15}), 907.0, 1e-9);
    p[param::kCameraType].u.pd.value = 2;
    driveCamera(s.camera, p.array());
    EXPECT_EQ(s.camera.mode(), CameraMode::kLookAt);
    EXPECT_NEAR(length(s.camera.world().origin() - Vec3{300, 500, 500}), 0.0, 1e-9);
    p[param::kCameraType].u.pd.value = 9;  // no choice of the menu: the mode stays
    driveCamera(s.camera, p.array());
    EXPECT_EQ(s.camera.mode(), CameraMode::kLookAt);
}

TEST(Parameters, DriveSetsAndLights) {
    Params p;
    PosedScene s;
    p.slide(param::setBase(8), 12.5);
    p.slide(param::setBase(8) + 4, 90);
    p.slide(param::setBase(8) + 6, 250);
    Group& set = *s.scene.set(8);
    set.transform().setScale({2, 3, 4});
    driveSet(set, p.array(), 8);
    EXPECT_EQ(set.transform().translate(), (Vec3{12.5, 0, 0}));
    EXPECT_EQ(set.transform().rotate(), (Vec3{0, 90, 0}));
    EXPECT_EQ(set.transform().scale(), (Vec3{2, 3, 2.5}));

    LightX& light = *sceneLight(s.scene, 2);
    light.transform().setRotate({1, 2, 3});
    driveLight(light, p.array(), 2);
    EXPECT_EQ(light.transform().rotate(), (Vec3{48, 94, 3}));
    EXPECT_DOUBLE_EQ(light.intensity(), 0.8);
    EXPECT_FLOAT_EQ(light.color()[1], 222.0F / 255.0F);
    EXPECT_FLOAT_EQ(light.color()[3], 0.0F);
}

TEST(Parameters, WhatIsDrivenReadsBackUnchanged) {
    Params p;
    PosedScene s;
    p.slide(param::setBase(3) + 1, -17.25);
    driveCamera(s.camera, p.array());
    for (int k = 1; k < gSetCount; ++k)
        driveSet(*s.scene.set(k), p.array(), k);
    for (int n = 1; n <= 3; ++n)
        driveLight(*sceneLight(s.scene, n), p.array(), n);
    for (PF_ParamDef& def : p.defs)
        def.uu.change_flags = 0;
    showScene(s.scene, p.array(), SceneGroup::kLights);
    showScene(s.scene, p.array(), SceneGroup::kSets);
    for (std::size_t i = 1; i < p.pointers.size(); ++i)
        EXPECT_EQ(p.pointers[i]->uu.change_flags, 0) << i;

    showScene(s.scene, p.array(), SceneGroup::kCamera);
    EXPECT_EQ(p[param::kCameraType].uu.change_flags, 1);  // the mode always
    EXPECT_EQ(p[param::kCameraDistance].uu.change_flags, 0);
    // The eye of an orbit follows from the other values: three sliders that go together.
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_EQ(p[param::kCameraEye + axis].uu.change_flags, 1);
    EXPECT_NEAR(p.value(param::kCameraEye), s.camera.pose().eye.x, 1e-4);

    s.scene.set(3)->transform().setTranslate({0, 5, 0});
    showScene(s.scene, p.array(), SceneGroup::kAll);
    EXPECT_EQ(p[param::setBase(3)].uu.change_flags, 1);
    EXPECT_EQ(p[param::setBase(3) + 3].uu.change_flags, 0);
    EXPECT_DOUBLE_EQ(p.value(param::setBase(3) + 1), 5.0);
}

TEST(Parameters, FixedValuesHoldAtTheirEnds) {
    EXPECT_EQ(toFixed(1.5), 0x18000);
    EXPECT_EQ(toFixed(-0.99999), -65535);
    EXPECT_EQ(toFixed(1e9), std::numeric_limits<PF_Fixed>::max());
    EXPECT_EQ(toFixed(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(CompLinks, CompSpaceBecomesSceneSpace) {
    PosedScene s;
    A_Matrix4 m{};
    for (int i = 0; i < 4; ++i)
        m.mat[i][i] = 1.0;
    // A comp camera in the middle of a 640 x 480 comp, 900 in front of it, looking at it.
    m.mat[3][0] = 320;
    m.mat[3][1] = 240;
    m.mat[3][2] = -900;
    applyCompMatrix(s.camera, m, 640, 480);
    EXPECT_EQ(s.camera.mode(), CameraMode::kTransform);
    EXPECT_NEAR(length(s.camera.world().origin() - Vec3{0, 0, 900}), 0.0, 1e-9);
    EXPECT_NEAR(length(s.camera.world().direction({0, 0, -1}) - Vec3{0, 0, -1}), 0.0, 1e-9);
    EXPECT_NEAR(s.camera.eye().z, 900.0, 1e-9);

    // Turned by 90 degrees about comp y: comp z goes to comp x, which is x of the scene too.
    const Matrix4 turned = Matrix4::rotationAbout(1, 90);
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            m.mat[row][column] = turned.m[row][column];
    applyCompMatrix(s.camera, m, 641, 480);  // half of an odd width is cut off
    EXPECT_NEAR(s.camera.world().origin().x, 0.0, 1e-9);
    EXPECT_NEAR(length(s.camera.world().direction({0, 0, -1}) - Vec3{1, 0, 0}), 0.0, 1e-9);
    EXPECT_GT(s.camera.world().determinant3(), 0.0);
}

TEST(LayerMaps, WorldsTurnOverAndKeepAlphaWhereThereIsAny) {
    PF_Pixel pixels[2][4] = {};
    for (auto& row : pixels)
        for (PF_Pixel& pixel : row)
            pixel.alpha = 255;
    pixels[0][0].red = 200;  // top left
    pixels[1][1].green = 100;
    PF_EffectWorld world{};
    world.data = &pixels[0][0];
    world.rowbytes = 4 * sizeof(PF_Pixel) + 3;  // the low two bits mean nothing
    world.width = 3;
    world.height = 2;
    const auto opaque = imageOfWorld(world, "|ExtMap4");
    EXPECT_FALSE(opaque->hasAlpha());
    EXPECT_EQ(opaque->path(), "|ExtMap4");
    EXPECT_EQ(opaque->boxQuery(0, 1, 0, 1)[0], 200);
    EXPECT_EQ(opaque->boxQuery(1, 0, 1, 0)[1], 100);
    pixels[1][2].alpha = 7;
    const auto clear = imageOfWorld(world, "|ExtMap4");
    EXPECT_TRUE(clear->hasAlpha());
    EXPECT_EQ(clear->boxQuery(2, 0, 2, 0)[3], 7);
}

TEST(LayerMaps, AreLentWhereAMaterialShowsThem) {
    registerMemberClasses();
    FakeHost host;
    PF_Pixel pixel{};
    for (int n = 1; n <= param::kLayerMapCount; ++n) {
        PF_LayerDef& layer = host.params[static_cast<std::size_t>(param::layerMap(n))].u.ld;
        layer.data = n == 4 ? nullptr : &pixel;  // none is chosen for Layer Map 4
        layer.rowbytes = sizeof pixel;
        layer.width = layer.height = 1;
    }
    SceneX scene;
    MaterialX& material = scene.make<MaterialX>("m");
    scene.make<ImageFile>("file").setPath("|ExtMap2");
    scene.make<ImageMap>("map").setImageFile("file");
    scene.make<ImageMap>("|ExtMap3.1");           // a copy beside one of its name
    material.setMap(MapUse::kColor, "|ExtMap1");  // which isn't there yet
    material.setMap(MapUse::kBump, "map");
    material.setMap(MapUse::kReflection, "|ExtMap3.1");
    material.setMap(MapUse::kTransparency, "|ExtMap4");
    PF_InData in = host.inData();
    EXPECT_EQ(fillLayerMaps(in, scene), 0);
    EXPECT_EQ(host.checkedOut, 0);
    const std::pair<MapUse, const char*> shown[] = {{MapUse::kColor, "|ExtMap1"},
                                                    {MapUse::kBump, "|ExtMap2"},
                                                    {MapUse::kReflection, "|ExtMap3"}};
    for (const auto& [use, layer] : shown) {
        ASSERT_NE(material.map(use), nullptr) << layer;
        const SummedImage* const image = material.map(use)->resolve().image();
        ASSERT_NE(image, nullptr) << layer;
        EXPECT_EQ(image->path(), layer);
    }
    for (const int unused : {4, 5, 10})
        EXPECT_EQ(scene.memberByName(extMapName(unused)), nullptr) << unused;
    clearLayerImages();
}

}  // namespace
}  // namespace orvin
