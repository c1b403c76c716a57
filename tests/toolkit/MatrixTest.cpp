#include <gtest/gtest.h>

#include <limits>

#include "toolkit/math/Box3.h"

namespace orvin {
namespace {

void expectNear(Vec3 a, Vec3 b, double tolerance = 1e-9) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

TEST(Matrix4, TurnsRightHandedAndExactlyAtQuarters) {
    EXPECT_EQ(Matrix4::rotationAbout(2, 90).point({1, 0, 0}), (Vec3{0, 1, 0}));
    EXPECT_EQ(Matrix4::rotationAbout(0, 90).point({0, 1, 0}), (Vec3{0, 0, 1}));
    EXPECT_EQ(Matrix4::rotationAbout(1, -90).point({1, 0, 0}), (Vec3{0, 0, 1}));
}

TEST(Matrix4, LastLetterOfAnOrderActsFirst) {
    // "xyz": z turns x into y, then x turns y into z.
    expectNear(Matrix4::rotation({90, 0, 90}, "xyz").point({1, 0, 0}), {0, 0, 1});
    // "zyx": x leaves x alone, then z turns it into y.
    expectNear(Matrix4::rotation({90, 0, 90}, "zyx").point({1, 0, 0}), {0, 1, 0});
}

TEST(Matrix4, AnglesRoundTripInEveryOrderGimbalLockIncluded) {
    for (const char* order : {"xyz", "xzy", "yxz", "yzx", "zxy", "zyx"})
        for (double a = -170; a < 180; a += 35)
            for (double b = -90; b <= 90; b += 15)
                for (double c = -170; c < 180; c += 35) {
                    Vec3 in{a, a, a};
                    in[order[1] - 'x'] = b;
                    in[order[2] - 'x'] = c;
                    const Matrix4 m = Matrix4::rotation(in, order);
                    const Matrix4 back = Matrix4::rotation(rotationAngles(m, order), order);
                    for (int row = 0; row < 3; ++row)
                        expectNear(m.row(row), back.row(row), 1e-6);
                }
}

TEST(Matrix4, InverseUndoesAndRefusesTheSingular) {
    const Matrix4 m = Matrix4::scaling({2, 3, -4}) * Matrix4::rotation({10, 20, 30}, "xyz") *
                      Matrix4::translation({5, 6, 7});
    const auto inverse = m.inverse();
    ASSERT_TRUE(inverse.has_value());
    expectNear(inverse->point(m.point({1, 2, 3})), {1, 2, 3});
    EXPECT_LT(m.determinant3(), 0.0);
    EXPECT_FALSE(Matrix4::scaling({1, 0, 1}).inverse().has_value());
    EXPECT_FALSE(Matrix4::scaling({1, std::numeric_limits<double>::quiet_NaN(), 1}).inverse());
}

TEST(Matrix4, NormalsStayPerpendicularUnderUnevenScale) {
    const Matrix4 m = Matrix4::scaling({1, 5, 1}) * Matrix4::rotation({0, 0, 30}, "xyz");
    const Vec3 inPlane = m.direction({1, 1, 0});
    const Vec3 normal = normalMatrix(m).direction({1, -1, 0});
    EXPECT_NEAR(dot(inPlane, normal), 0.0, 1e-12);
}

TEST(Box3, CornersFollowTheirBits) {
    Box3 box;
    EXPECT_TRUE(box.empty());
    box.add({1, 2, 3});
    box.add({4, 6, 8});
    EXPECT_EQ(box.corner(5), (Vec3{4, 2, 8}));
    EXPECT_EQ(box.under(Matrix4::translation({1, 0, 0})).max, (Vec3{5, 6, 8}));
    EXPECT_TRUE(Box3{}.under(Matrix4::identity()).empty());
}

}  // namespace
}  // namespace orvin
