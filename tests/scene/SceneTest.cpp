#include <gtest/gtest.h>

#include "scene/HandleStream.h"
#include "scene/MemoryStream.h"
#include "tests/scene/Members.h"
#include "toolkit/Errors.h"

namespace orvin {
namespace {

class SceneTest : public testing::Test {
  protected:
    void SetUp() override { registerTestClasses(); }

    static Result load(SceneX& scene, const std::string& text) {
        MemoryStream stream(nullptr, text);
        return loadBlock(stream, scene);
    }
    static std::string text(SceneX& scene) {
        MemoryStream stream(nullptr);
        EXPECT_EQ(stream.writeObject(scene), kSuccess);
        return stream.text();
    }
    static std::vector<std::string> names(std::span<SceneMember* const> members) {
        std::vector<std::string> all;
        for (const SceneMember* member : members)
            all.push_back(member->name());
        return all;
    }
    using Names = std::vector<std::string>;
};

// ---- names

TEST_F(SceneTest, UniqueNames) {
    SceneX scene;
    for (const char* name : {"Bevel", "Object 5", "x", "7", "Cut.3", "Cut.1"})
        scene.make<Cube>(name);
    const std::pair<const char*, const char*> cases[] = {
        {"free", "free"}, {"Bevel", "Bevel.1"}, {"Object 5", "Object 5.1"}, {"x", "x1"},
        {"7", "1"},       {"Cut.3", "Cut.2"},   {"Cut.1", "Cut.2"},
    };
    for (const auto& [name, unique] : cases)
        EXPECT_EQ(scene.uniqueName(name), unique);

    // Numbers that come free are used again.
    Cube& first = scene.make<Cube>("Bevel.1");
    scene.make<Cube>("Bevel.2");
    EXPECT_EQ(scene.uniqueName("Bevel"), "Bevel.3");
    first.setName("other");
    EXPECT_EQ(scene.uniqueName("Bevel"), "Bevel.1");

    const std::string longest(255, 'n');
    scene.make<Cube>(longest);
    EXPECT_LE(scene.uniqueName(longest).size(), 255U);
    EXPECT_EQ(scene.memberByName(scene.uniqueName(longest)), nullptr);
}

TEST_F(SceneTest, RenamingOnLoad) {
    SceneX scene;
    Cube& a = scene.make<Cube>("Box");
    Cube& b = scene.make<Cube>("tmp");
    scene.renameOnLoad(b, "Box");
    EXPECT_EQ(b.name(), "Box.1");
    scene.renameOnLoad(b, "Box");  // it stands
    EXPECT_EQ(b.name(), "Box.1");
    scene.renameOnLoad(a, "Box");
    EXPECT_EQ(a.name(), "Box");
    scene.renameOnLoad(b, "root");  // the root has a name too
    EXPECT_EQ(b.name(), "root.1");
}

TEST_F(SceneTest, MaxAutoNumberTakesDigitsOnly) {
    SceneX scene;
    for (const char* name : {"part3", "part12", "part99b", "part", "part-100", "part99999999999"})
        scene.make<Cube>(name);
    EXPECT_EQ(scene.maxAutoNumber("part"), 12);
    EXPECT_EQ(scene.maxAutoNumber("nothing"), 0);
}

TEST_F(SceneTest, SetNames) {
    EXPECT_EQ(setName(3), "|ORVIN_GROUP3");
    EXPECT_EQ(setNumber("|ORVIN_GROUP12"), 12);
    EXPECT_EQ(setNumber("|ORVIN_GROUP"), std::nullopt);
    EXPECT_EQ(setNumber("group3"), std::nullopt);
}

// ---- loading

TEST_F(SceneTest, LoadedTextIsWrittenBack) {
    const std::string block =
        " begin MaterialX\n  name \"wood\"\n  use \"|ExtMap2\"\n end MaterialX\n"
        " begin Group\n  name \"|ORVIN_GROUP1\"\n  enabled 1\n  translate 1.000000 2.000000 "
        "3.000000\n  rotate 0.000000 30.000000 0.000000\n  scale 1.000000 1.000000 1.000000\n  "
        "origin 4.000000 0.000000 0.000000\n  parent \"root\"\n end Group\n"
        " begin ObjectX\n  name \"the \\\"one\\\"\"\n  enabled 0\n  translate -0.500000 0.000000 "
        "0.000000\n  rotate 0.000000 0.000000 0.000000\n  scale 2.000000 2.000000 2.000000\n  "
        "origin 0.000000 0.000000 0.000000\n  parent \"|ORVIN_GROUP1\"\n end ObjectX\n";
    const std::string all = "begin SceneX\n name \"My scene\"\n" + block + "end SceneX\n";
    SceneX scene;
    EXPECT_EQ(load(scene, all.substr(all.find('\n'))), kSuccess);
    EXPECT_EQ(text(scene), all);
    EXPECT_EQ(scene.name(), "My scene");
    EXPECT_TRUE(scene.usesExtMap(2));
    EXPECT_FALSE(scene.usesExtMap(1));
}

TEST_F(SceneTest, AutomaticNamesRiseAcrossScenesAndTouchNobody) {
    const int before = gAutoNameCounter;
    SceneX first;
    ASSERT_EQ(load(first, "begin ObjectX end ObjectX end SceneX"), kSuccess);
    SceneX second;
    const std::string next = "object" + std::to_string(before + 2);
    // A member bears the next automatic name already, and something refers to it.
    Cube& bearer = second.make<Cube>(next);
    ASSERT_EQ(load(second, "begin ObjectX name \"late\" end ObjectX end SceneX"), kSuccess);
    EXPECT_EQ(gAutoNameCounter, before + 2);
    EXPECT_EQ(names(first.members(MemberKind::kObject)),
              Names{"object" + std::to_string(before + 1)});
    EXPECT_EQ(names(second.members(MemberKind::kObject)), (Names{next, "late"}));
    EXPECT_EQ(second.memberByName(next), &bearer);

    // A forward reference stays with the name it was made for.
    const NameRef forward(second.registry(), "object" + std::to_string(before + 3));
    ASSERT_EQ(load(second, "begin ObjectX name \"other\" end ObjectX end SceneX"), kSuccess);
    EXPECT_EQ(forward.get(), nullptr);
}

TEST_F(SceneTest, BadBlocksStopWithTheCommandsName) {
    const std::pair<const char*, const char*> cases[] = {
        {"begin Nothing", "<<begin>> for class <<SceneX>>"},
        {"begin", "<<begin>> for class <<SceneX>>"},
        {"select \"nobody\"", "<<select>> for class <<SceneX>>"},
        {"begin Group scale 1 2 x", "<<scale>> for class <<Group>>"},
        {"begin Group end SceneX", "<<end>> for class <<Group>>"},
        {"query", "<<query>> for class <<SceneX>>"},  // nothing to write to
    };
    for (const auto& [input, named] : cases) {
        SceneX scene;
        PlainHandleMemory memory;
        const std::string_view bytes = input;
        const Handle handle = memory.allocate(bytes.size());
        std::copy(bytes.begin(), bytes.end(), static_cast<char*>(*handle));
        HandleStream stream(memory, nullptr);
        ASSERT_EQ(stream.openRead(handle, 0), kSuccess);
        testing::internal::CaptureStderr();  // the message box of a program without windows
        EXPECT_EQ(loadBlock(stream, scene), kFailure) << input;
        testing::internal::GetCapturedStderr();
        EXPECT_NE(sceneErrorText().find(named), std::string_view::npos) << sceneErrorText();
    }
}

TEST_F(SceneTest, AMissingParentIsLackOfMemory) {
    SceneX scene;
    EXPECT_THROW(load(scene, "begin Group parent \"nobody\""), std::bad_alloc);
}

TEST_F(SceneTest, NestedGroupsAreWrittenBehindTheirParents) {
    SceneX scene;
    Group& inner = scene.make<Group>("inner");
    Group& middle = scene.make<Group>("middle");
    Group& outer = scene.make<Group>("outer");
    middle.setParent(outer.ref());
    inner.setParent(middle.ref());
    const std::string written = text(scene);
    SceneX copy;
    ASSERT_EQ(load(copy, written.substr(written.find('\n'))), kSuccess);
    EXPECT_EQ(names(copy.members(MemberKind::kGroup)), (Names{"outer", "middle", "inner"}));
    EXPECT_EQ(text(copy), written);
}

TEST_F(SceneTest, WhatIsWrittenFindsItsParents) {
    // A group below an object: the object goes first, or, left out, hands its place on.
    for (const bool withObject : {true, false}) {
        SceneX scene;
        Cube& box = scene.make<Cube>("box");
        box.transform().setTranslate({5, 0, 0});
        Group& group = scene.make<Group>("group");
        group.transform().setTranslate({0, 7, 0});
        group.attachTo(box.ref());
        box.setSaveable(withObject);
        const std::string written = text(scene);
        SceneX copy;
        ASSERT_EQ(load(copy, written.substr(written.find('\n'))), kSuccess);
        EXPECT_EQ(copy.count(MemberKind::kObject), withObject ? 1U : 0U);
        auto* const read = copy.memberAs<Group>(MemberKind::kGroup, "group");
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->parent()->name(), withObject ? "box" : "root");
        EXPECT_EQ(read->world().origin(), (Vec3{5, 7, 0}));
    }
}

TEST_F(SceneTest, DeepTreesOfMixedKindsGoInOneSweep) {
    SceneX scene;
    TransformMember* last = &scene.root();
    for (int i = 0; i < 200000; ++i) {
        const std::string name = "n" + std::to_string(i);
        TransformMember* next = nullptr;
        if (i % 2 == 0)
            next = &scene.make<Cube>(name);
        else
            next = &scene.make<Group>(name);
        next->attachTo(last->ref());
        last = next;
    }
    EXPECT_EQ(last->world(), Matrix4::identity());
}

TEST_F(SceneTest, CommandLineKeys) {
    SceneX scene("s");
    scene.make<Cube>("a");
    scene.make<Cube>("b");
    MemoryStream stream(nullptr, "select a selectToggle b delete name t dump ? end SceneX");
    ASSERT_EQ(loadBlock(stream, scene), kSuccess);
    EXPECT_EQ(scene.count(MemberKind::kObject), 0U);
    EXPECT_EQ(stream.text(), " name \"t\"\n begin SceneX\n  name \"t\"\n end SceneX\n");
}

// ---- members, selection, Sets

TEST_F(SceneTest, ListsAndLookup) {
    SceneX scene;
    Cube& cube = scene.make<Cube>("box");
    Group& group = scene.make<Group>("group");
    EXPECT_EQ(scene.member(MemberKind::kObject, "box"), &cube);
    EXPECT_EQ(scene.member(MemberKind::kGroup, "box"), nullptr);
    EXPECT_EQ(scene.memberAs<Group>(MemberKind::kGroup, "group"), &group);
    EXPECT_EQ(scene.memberByName("root"), &scene.root());
    EXPECT_EQ(scene.count(MemberKind::kRoot), 0U);
    testing::internal::CaptureStdout();
    scene.removeMember(cube, MemberKind::kStyle);
    scene.removeMember(cube, MemberKind{42});
    scene.removeMember(scene.root(), MemberKind::kRoot);
    const std::string line = "Exception: SceneMember unable to be removed from scene!\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line + line);
}

TEST_F(SceneTest, Selection) {
    SceneX scene;
    Cube& a = scene.make<Cube>("a");
    Cube& b = scene.make<Cube>("b");
    Cube& c = scene.make<Cube>("c");
    scene.toggleSelect(a);
    scene.toggleSelect(a);
    EXPECT_TRUE(scene.selection().empty());
    for (Cube* cube : {&a, &b, &c, &b})
        scene.addSelect(cube);
    scene.bringToFront(c);
    EXPECT_EQ(names(scene.selection()), (Names{"c", "a", "b"}));
    scene.destroy(a);
    EXPECT_EQ(names(scene.selection()), (Names{"c", "b"}));
    scene.addSelect(&scene.root());
    scene.deleteSelected();
    EXPECT_TRUE(scene.selection().empty());
    EXPECT_EQ(scene.count(MemberKind::kObject), 0U);
    EXPECT_EQ(scene.memberByName("root"), &scene.root());
}

TEST_F(SceneTest, Sets) {
    SceneX scene;
    for (int n = 0; n < 3; ++n)
        scene.make<Group>(setName(n));
    Cube& a = scene.make<Cube>("a");
    Cube& b = scene.make<Cube>("b");
    a.transform().setTranslate({10, 0, 0});
    b.transform().setTranslate({20, 4, 0});

    EXPECT_TRUE(scene.selectSet(2));
    EXPECT_EQ(names(scene.selection()), Names{"|ORVIN_GROUP2"});
    EXPECT_FALSE(scene.selectSet(0));
    EXPECT_TRUE(scene.selection().empty());

    scene.moveToSet(1, nullptr, false);  // nothing selected: nothing happens
    scene.moveToSet(7, &a, false);       // no such Set: neither
    EXPECT_EQ(a.parent(), &scene.root());
    scene.addSelect(&a);
    scene.addSelect(&b);
    scene.moveToSet(1, nullptr, false);
    EXPECT_EQ(scene.set(1)->childCount(), 2U);
    EXPECT_EQ(scene.set(1)->transform().origin(), (Vec3{15, 2, 0}));
    Cube& c = scene.make<Cube>("c");
    c.transform().setTranslate({1000, 0, 0});
    scene.moveToSet(1, &c, false);  // not its first content: the pivot stays
    EXPECT_EQ(scene.set(1)->transform().origin(), (Vec3{15, 2, 0}));

    scene.make<Cube>("|ORVIN_GROUP8");
    EXPECT_THROW(scene.moveToSet(8, &c, false), eOrvinError);
}

TEST_F(SceneTest, BoundsAndLayerMaps) {
    SceneX scene;
    EXPECT_TRUE(scene.sceneBounds().empty());
    scene.make<Cube>("a");
    scene.make<Cube>("b").transform().setTranslate({10, 0, 0});
    EXPECT_EQ(scene.sceneBounds().max, (Vec3{11, 1, 1}));
    scene.ensureExtMap(4);
    scene.ensureExtMap(4);
    EXPECT_EQ(names(scene.members(MemberKind::kImageMap)), Names{"|ExtMap4"});
}

// ---- sweep and copies

TEST_F(SceneTest, PurgeDropsWhatNothingRefersTo) {
    const auto build = [](SceneX& scene) {
        scene.make<Group>("g");
        scene.make<Style>("defaultObjXStyle", "ObjectXStyle");
        scene.make<Style>("style", "ObjectXStyle");
        scene.make<Material>("defaultMtl", "MaterialX");
        auto& wood = scene.make<Material>("wood", "MaterialX");
        scene.make<Material>("stone", "MaterialX");
        wood.use = scene.make<Map>("woodMap", "ImageMap").ref();
        scene.make<Map>("stoneMap", "ImageMap").use = wood.ref();
        scene.make<Cube>("box").material = wood.ref();
    };
    struct Case {
        unsigned mask;
        Names objects, styles, materials, maps;
    };
    const Case cases[] = {
        {0, {}, {"defaultObjXStyle"}, {"defaultMtl"}, {}},
        {1, {"box"}, {"defaultObjXStyle"}, {"defaultMtl", "wood"}, {"woodMap"}},
        {2, {}, {"defaultObjXStyle", "style"}, {"defaultMtl"}, {}},
        {4, {}, {"defaultObjXStyle"}, {"defaultMtl", "wood", "stone"}, {"woodMap"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mask);
        SceneX scene;
        build(scene);
        scene.addSelect(scene.memberByName("box"));
        scene.purge(c.mask);
        EXPECT_EQ(names(scene.members(MemberKind::kObject)), c.objects);
        EXPECT_EQ(names(scene.selection()), c.objects);
        EXPECT_EQ(names(scene.members(MemberKind::kStyle)), c.styles);
        EXPECT_EQ(names(scene.members(MemberKind::kMaterial)), c.materials);
        EXPECT_EQ(names(scene.members(MemberKind::kImageMap)), c.maps);
        EXPECT_EQ(names(scene.members(MemberKind::kGroup)), Names{"g"});
    }
    SceneX scene;
    build(scene);
    EXPECT_FALSE(scene.stillReferred(*scene.memberByName("wood")));
    scene.memberByName("box")->protectedFromSweep = true;
    EXPECT_TRUE(scene.stillReferred(*scene.memberByName("wood")));
    EXPECT_FALSE(scene.stillReferred(*scene.memberByName("style")));
    EXPECT_TRUE(scene.stillReferred(*scene.memberByName("stoneMap")));
}

TEST_F(SceneTest, MarkingRunsOnLongAndCyclicChains) {
    SceneX scene;
    auto& first = scene.make<Material>("m0", "MaterialX");
    Material* last = &first;
    for (int i = 1; i < 200000; ++i) {
        auto& next = scene.make<Material>("m" + std::to_string(i), "MaterialX");
        last->use = next.ref();
        last = &next;
    }
    last->use = first.ref();
    first.protectedFromSweep = true;
    scene.purge(0);
    EXPECT_EQ(scene.count(MemberKind::kMaterial), 200000U);
}

TEST_F(SceneTest, Clones) {
    SceneX source;
    Cube& box = source.make<Cube>("box");
    box.saveable = false;
    box.transform().setRotate({1, 2, 3});
    box.setEnabled(false);
    SceneX target;
    auto* const copy = dynamic_cast<Cube*>(target.cloneMember(box, "copy"));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->name(), "copy");
    EXPECT_FALSE(copy->saveable);
    EXPECT_FALSE(copy->isEnabled());
    EXPECT_EQ(copy->transform().rotate(), (Vec3{1, 2, 3}));
    EXPECT_EQ(copy->parent(), &target.root());
    EXPECT_EQ(target.cloneMember(box, "copy"), nullptr);
}

TEST_F(SceneTest, ImportReconcilesNames) {
    using C = NameConflict;
    struct Case {
        const char* caption;
        C answer;
        Names materials, maps;
        const char* boxUses;
        const char* woodMapNote;
    };
    const Case cases[] = {
        {"rename", C::kRenameNew, {"wood", "wood.1"}, {"grain", "grain.1"}, "wood.1", "old"},
        {"replace", C::kReplaceOld, {"wood"}, {"grain"}, "wood", "new"},
        {"ignore", C::kIgnoreNew, {"wood"}, {"grain"}, "wood", "old"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.caption);
        SceneX source;
        auto& wood = source.make<Material>("wood", "MaterialX");
        auto& grain = source.make<Map>("grain", "ImageMap");
        grain.note = "new";
        wood.use = grain.ref();
        Cube& box = source.make<Cube>("box");
        box.material = wood.ref();

        SceneX target;
        target.make<Material>("wood", "MaterialX").use =
            target.make<Map>("grain", "ImageMap").ref();
        static_cast<Map*>(target.memberByName("grain"))->note = "old";
        const NameRef held(target.registry(), "wood");

        int asked = 0;
        ImportPolicy policy;
        policy.question = [&](const SceneMember&, const SceneMember&) {
            ++asked;
            return std::pair{c.answer, true};
        };
        auto* const copy = dynamic_cast<Cube*>(target.importMember(box, policy, true));
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(asked, 1) << "the answer stands for the map as well";
        EXPECT_EQ(names(target.members(MemberKind::kMaterial)), c.materials);
        EXPECT_EQ(names(target.members(MemberKind::kImageMap)), c.maps);
        EXPECT_EQ(copy->material.name(), c.boxUses);
        EXPECT_EQ(copy->material.get(), target.memberByName(c.boxUses));
        EXPECT_EQ(held.get(), target.memberByName("wood"));
        EXPECT_EQ(static_cast<Map*>(target.memberByName("grain"))->note, c.woodMapNote);
        auto* const used = static_cast<Material*>(copy->material.get());
        EXPECT_EQ(used->use.name(), c.maps.back());
    }
}

TEST_F(SceneTest, AnImportNeverReplacesItsOwnCopies) {
    // "grain" is renamed to the very name that its neighbour brings along.
    SceneX source;
    auto& neighbour = source.make<Map>("grain.1", "ImageMap");
    auto& grain = source.make<Map>("grain", "ImageMap");
    grain.use = neighbour.ref();
    SceneX target;
    target.make<Map>("grain", "ImageMap");
    ImportPolicy policy;
    policy.question = [](const SceneMember&, const SceneMember& incoming) {
        const bool first = incoming.name() == "grain";
        return std::pair{first ? NameConflict::kRenameNew : NameConflict::kReplaceOld, false};
    };
    auto* const copy = static_cast<Map*>(target.importMember(grain, policy, true));
    EXPECT_EQ(names(target.members(MemberKind::kImageMap)), (Names{"grain", "grain.1", "grain.2"}));
    EXPECT_EQ(copy, target.memberByName("grain.1"));
    EXPECT_EQ(copy->use.name(), "grain.2");
}

TEST_F(SceneTest, SomeMembersExistOnce) {
    SceneX source;
    auto& material = source.make<Material>("defaultMtl", "MaterialX");
    auto& profile = source.make<Profile>("Bevel", "ProfileL");
    auto& clash = source.make<Map>("box", "ImageMap");
    SceneX target;
    ImportPolicy policy;
    SceneMember* const first = target.importMember(profile, policy, true);
    EXPECT_EQ(target.importMember(profile, policy, true), first);
    SceneMember* const standard = target.importMember(material, policy, true);
    EXPECT_EQ(standard, target.memberByName("defaultMtl"));
    EXPECT_EQ(target.importMember(material, policy, true), standard);
    EXPECT_EQ(target.count(MemberKind::kMaterial), 1U);
    // Another class bears the name: neither may give way.
    target.make<Cube>("box");
    policy = {NameConflict::kReplaceOld, true, {}};
    EXPECT_EQ(target.importMember(clash, policy, true)->name(), "box.1");
}

TEST_F(SceneTest, AReplacedGroupKeepsItsPlace) {
    SceneX source;
    Group& incoming = source.make<Group>("mid");
    incoming.transform().setTranslate({7, 0, 0});
    SceneX target;
    target.make<Group>("first");
    Group& parent = target.make<Group>("mid");
    target.make<Group>("last");
    Cube& child = target.make<Cube>("child");
    child.attachTo(parent.ref());
    target.select(&parent);
    ImportPolicy policy{NameConflict::kReplaceOld, true, {}};
    SceneMember* const copy = target.importMember(incoming, policy, false);
    EXPECT_EQ(names(target.members(MemberKind::kGroup)), (Names{"first", "mid", "last"}));
    EXPECT_EQ(target.memberByName("mid"), copy);
    EXPECT_EQ(child.parent(), copy);
    EXPECT_EQ(target.selection()[0], copy);
}

}  // namespace
}  // namespace orvin
