#include <gtest/gtest.h>

#include <limits>

#include "scene/MemoryStream.h"
#include "tests/scene/Members.h"

namespace orvin {
namespace {

void expectNear(Vec3 a, Vec3 b, double tolerance = 1e-9) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

void expectNear(const Matrix4& a, const Matrix4& b, double tolerance = 1e-9) {
    for (int i = 0; i < 4; ++i)
        expectNear(a.row(i), b.row(i), tolerance);
}

// ---- Registry and NameRef

TEST(Registry, BucketsFollowTheSignedHash) {
    EXPECT_EQ(registryBucket("", 4093), 0U);
    EXPECT_EQ(registryBucket("A", 4093), 65U);
    EXPECT_EQ(registryBucket("AB", 4093), 65U ^ 132U);
    EXPECT_EQ(registryBucket("\xff", 4093), 1U);  // -1, made positive
    // The sums of another program.
    EXPECT_EQ(registryBucket("defaultObjXStyle", 4093), 748U);
    EXPECT_EQ(registryBucket("caf\xe9 of a long name that passes thirty-two", 4093), 581U);
}

TEST(Registry, CountsAndIterates) {
    Registry<const char*> registry(7);
    auto* const a = registry.lookupOrInsert("a", "one");
    EXPECT_EQ(registry.lookupOrInsert("a", nullptr), a);
    EXPECT_STREQ(a->value, "one");
    EXPECT_EQ(registry.lookupOrInsert("a", "two"), a);
    EXPECT_STREQ(a->value, "two");
    EXPECT_EQ(a->refCount, 3);
    registry.lookupOrInsert("h", "");  // 97 and 104 share bucket 6 of 7: the newer comes first
    registry.lookupOrInsert("b", "");  // 98: bucket 0
    std::string order;
    registry.forEach([&](const auto& entry) { order += entry.name; });
    EXPECT_EQ(order, "bha");
    for (int i = 0; i < 3; ++i)
        registry.release(a);
    EXPECT_EQ(registry.find("a"), nullptr);
}

TEST(Registry, ALostEntryIsReported) {
    Registry<const char*> registry;
    Registry<const char*>::Entry stray;
    stray.name = "stray";
    stray.refCount = 1;
    testing::internal::CaptureStdout();
    registry.release(&stray);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ASSERTION in Registry.h:  trying to unregister a lost (not in hash) name.\n");
}

TEST(NameRef, MayComeBeforeItsMemberAndFollowsRenames) {
    SceneX scene;
    const NameRef early(scene.registry(), "box");
    EXPECT_EQ(early.get(), nullptr);
    auto box = std::make_unique<Cube>(scene, "box");
    EXPECT_EQ(early.get(), box.get());
    const NameRef other = early;
    // Renamed twice while nobody looks, then back: both references come along.
    box->setName("crate");
    box->setName("chest");
    EXPECT_EQ(early.get(), box.get());
    EXPECT_EQ(early.name(), "chest");
    box->setName("box");
    EXPECT_EQ(other.name(), "box");
    EXPECT_EQ(scene.registry().find("crate"), nullptr);
    EXPECT_EQ(scene.registry().find("chest"), nullptr) << "nobody refers to it any more";
    EXPECT_EQ(early.name(), "box");
    box.reset();
    EXPECT_EQ(early.get(), nullptr);
    EXPECT_EQ(scene.registry().find("box")->refCount, 2);
}

TEST(NameRef, ALongChainOfRenamesIsReleasedWithoutRecursion) {
    SceneX scene;
    Cube box(scene, "n");
    auto held = std::make_unique<NameRef>(box.ref());
    for (int i = 0; i < 300000; ++i)
        box.setName(i % 2 == 0 ? "a" : "b");
    held.reset();
    EXPECT_EQ(scene.registry().size(), 2U);  // the box and the root
}

TEST(SceneMember, ALaterOneTakesTheNameOverAndKeepsIt) {
    SceneX scene;
    auto first = std::make_unique<Cube>(scene, "box");
    const NameRef reference = first->ref();
    const Cube second(scene, "box");
    EXPECT_EQ(reference.get(), &second);
    first->setName("loser");
    EXPECT_EQ(reference.get(), &second);
    EXPECT_EQ(scene.memberByName("loser"), first.get());
    first.reset();
    EXPECT_EQ(reference.get(), &second);
}

// ---- Transform

TEST(Transform, LettersActFromTheLastToTheFirstAboutTheMovedPivot) {
    // (11, 0, 0) is one unit from the pivot: doubled, turned to y, moved by 5.
    for (const char* order : {"rst", "trs", "RST", "Trs"}) {
        Transform t;
        t.setOrder(order);
        t.setOrigin({10, 0, 0});
        t.setTranslate({5, 0, 0});
        t.setRotate({0, 0, 90});
        t.setScale({2, 2, 2});
        expectNear(t.matrix().point({11, 0, 0}), {15, 2, 0});
        expectNear(t.matrix().point(t.origin()), t.origin() + t.translate());
    }
    // "srt": rotation first, then scaling along the outer axes.
    Transform t;
    t.setOrder("srt");
    t.setRotate({0, 0, 90});
    t.setScale({1, 3, 1});
    expectNear(t.matrix().point({1, 0, 0}), {0, 3, 0});
}

TEST(Transform, ComponentsAreDerivedFromAMatrix) {
    struct Case {
        const char* caption;
        Vec3 origin, translate, rotate, scale;
    };
    const Case cases[] = {
        {"identity", {}, {}, {}, {1, 1, 1}},
        {"all", {3, -2, 8}, {10, 20, 30}, {25, -40, 130}, {2, 0.5, 3}},
        {"tiny scale", {1, 1, 1}, {}, {10, 20, 30}, {1e-9, 1, 1}},
        {"flat", {1, 2, 3}, {4, 5, 6}, {10, 20, 30}, {1, 1, 0}},
        {"flat along x", {1, 2, 3}, {4, 5, 6}, {10, 20, 30}, {0, 2, 1}},
        {"a line", {1, 2, 3}, {4, 5, 6}, {10, 20, 30}, {0, 0, 2}},
        {"a point", {1, 2, 3}, {4, 5, 6}, {10, 20, 30}, {0, 0, 0}},
        {"mirrored", {1, 2, 3}, {4, 5, 6}, {10, 20, 30}, {1, -2, 1}},
    };
    for (const char* order : {"rst", "trs"})
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.caption) + " " + order);
            Transform source;
            source.setOrder(order);
            source.setOrigin(c.origin);
            source.setTranslate(c.translate);
            source.setRotate(c.rotate);
            source.setScale(c.scale);
            Transform t;
            t.setOrder(order);
            t.setOrigin(c.origin);
            t.setMatrix(source.matrix());
            EXPECT_EQ(t.matrix(), source.matrix());
            const Vec3 scale = t.scale();
            for (int axis = 0; axis < 3; ++axis)
                EXPECT_NEAR(std::abs(scale[axis]), std::abs(c.scale[axis]), 1e-9);
            // Composed again from the components it is the same matrix.
            t.setTranslate(t.translate());
            expectNear(t.matrix(), source.matrix());
        }
}

// ---- the tree

TEST(TransformMember, ReparentingKeepsTheWorldPose) {
    SceneX scene;
    Group group(scene, "g");
    group.transform().setTranslate({100, 0, 0});
    group.transform().setRotate({0, 90, 0});
    Cube box(scene, "box");
    box.transform().setTranslate({1, 2, 3});
    const Matrix4 before = box.world();
    box.setParent(group.ref());
    EXPECT_EQ(box.parent(), &group);
    EXPECT_EQ(group.child(0), &box);
    expectNear(box.world(), before);
    EXPECT_EQ(scene.root().childCount(), 1U);  // the group alone

    // Reading a file attaches without: the local pose stays.
    const Vec3 local = box.transform().translate();
    box.attachTo(scene.root().ref());
    EXPECT_EQ(box.transform().translate(), local);
}

TEST(TransformMember, SmallDifferencesLeaveTheComponentsAlone) {
    SceneX scene;
    Group group(scene, "g");
    group.transform().setTranslate({0.0005, 0, 0});
    Cube box(scene, "box");
    box.transform().setTranslate({1, 2, 3});
    box.setParent(group.ref());
    EXPECT_EQ(box.transform().translate(), (Vec3{1, 2, 3}));
}

TEST(TransformMember, ADestroyedGroupLeavesItsChildrenInPlace) {
    SceneX scene;
    Group outer(scene, "outer");
    outer.transform().setTranslate({5, 0, 0});
    auto inner = std::make_unique<Group>(scene, "inner");
    inner->setParent(outer.ref());
    inner->transform().setScale({2, 2, 2});
    Cube a(scene, "a");
    Cube b(scene, "b");
    for (Cube* cube : {&a, &b})
        cube->attachTo(inner->ref());
    const Matrix4 before = a.world();
    inner.reset();
    EXPECT_EQ(a.parent(), &outer);
    ASSERT_EQ(outer.childCount(), 2U);
    EXPECT_EQ(outer.child(0), &a);
    expectNear(a.world(), before);
}

TEST(TransformMember, CyclesAndMissingParentsAreRefused) {
    SceneX scene;
    Group a(scene, "a");
    Group b(scene, "b");
    b.setParent(a.ref());
    a.setParent(b.ref());
    a.attachTo(a.ref());
    EXPECT_EQ(a.parent(), &scene.root());
    scene.root().setParent(a.ref());
    EXPECT_EQ(scene.root().parent(), nullptr);
    EXPECT_THROW(a.setParent(NameRef(scene.registry(), "nobody")), std::bad_alloc);
    EXPECT_EQ(a.parent(), &scene.root());
}

TEST(TransformMember, BoundsRaysAndPivot) {
    SceneX scene;
    Group group(scene, "g");
    group.transform().setTranslate({10, 0, 0});
    EXPECT_EQ(group.recenterOrigin(false), kFailure);
    Cube box(scene, "box");
    box.transform().setTranslate({0, 0, 50});
    box.transform().setScale({3, 1, 1});
    box.attachTo(group.ref());
    EXPECT_EQ(box.worldBounds().min, (Vec3{7, -1, 49}));
    EXPECT_EQ(box.worldBounds().max, (Vec3{13, 1, 51}));
    EXPECT_TRUE(box.rayHit({{12.5, 0, 100}, {0, 0, -1}}));
    EXPECT_FALSE(box.rayHit({{12.5, 0, 100}, {0, 0, 1}}));
    EXPECT_FALSE(box.rayHit({{13.5, 0, 100}, {0, 0, -1}}));
    EXPECT_FALSE(group.rayHit({{10, 0, 100}, {0, 0, -1}}));
    EXPECT_TRUE(group.worldBounds().empty());

    const Matrix4 pose = box.world();
    EXPECT_EQ(group.recenterOrigin(false), kSuccess);
    EXPECT_EQ(group.transform().origin(), (Vec3{0, 0, 50}));
    expectNear(box.world(), pose);
    EXPECT_EQ(group.recenterOrigin(true), kSuccess);
    EXPECT_EQ(group.transform().origin(), (Vec3{0, 0, 0}));
}

TEST(TransformMember, BlockHasItsLinesInOrder) {
    SceneX scene("s");
    Group group(scene, "a \"b\"");
    group.setEnabled(false);
    group.transform().setRotate({0, -12.5, 0});
    MemoryStream stream(&scene);
    ASSERT_EQ(stream.writeObject(group), kSuccess);
    EXPECT_EQ(stream.text(),
              " begin Group\n"
              "  name \"a \\\"b\\\"\"\n"
              "  enabled 0\n"
              "  translate 0.000000 0.000000 0.000000\n"
              "  rotate 0.000000 -12.500000 0.000000\n"
              "  scale 1.000000 1.000000 1.000000\n"
              "  origin 0.000000 0.000000 0.000000\n"
              "  parent \"root\"\n"
              " end Group\n");
}

}  // namespace
}  // namespace orvin
