#include "render/Shading.h"

#include <algorithm>
#include <cmath>

namespace orvin {

namespace {

constexpr float kGlareRed = 0.37333333F;  // alpha of light that lies on top of a surface
constexpr float kGlareGreen = 0.32F;
constexpr float kGlareBlue = 0.30666667F;

float glare(const Rgba& c) {
    return kGlareRed * c[0] + kGlareGreen * c[1] + kGlareBlue * c[2];
}

Rgba mix(const Rgba& a, const Rgba& b, float weightOfB) {
    Rgba r;
    for (std::size_t i = 0; i < 4; ++i)
        r[i] = (1.0F - weightOfB) * a[i] + weightOfB * b[i];
    return r;
}

// ---- bump

struct Slopes {
    double s = 0.0;
    double t = 0.0;
};

Vec3 bumped(Vec3 normal, const ShadeContext& context, const Slopes& slopes) {
    return normalize(normal + cross(normal, context.tangentT) * slopes.s -
                     cross(normal, context.tangentS) * slopes.t);
}

// Turns the normals by the change of the map's brightness to the neighbouring boxes.
void bump(const ShadeMaterial& material, ShadeContext& context) {
    const ResolvedMap& map = material.maps.bump;
    const TextureBox& box = context.texture;
    float here = 0.0F;
    if (!map || !map.channel(box, 3, here)) return;
    const double width = box.sMax - box.sMin;
    const double height = box.tMax - box.tMin;
    float beside = here;
    float below = here;
    map.channel({box.sMin - width, box.tMin, box.sMax - width, box.tMax}, 3, beside);
    map.channel({box.sMin, box.tMin - height, box.sMax, box.tMax - height}, 3, below);
    const double k = 3.0 * material.look.bumpScale;
    const Slopes slopes{static_cast<double>(here - beside) * k,
                        static_cast<double>(here - below) * k};
    context.normal = bumped(context.normal, context, slopes);
    if (!material.look.has(MaterialX::kReflectionMap)) return;
    for (Vec3& normal : context.cornerNormals)
        normal = bumped(normal, context, slopes);
}

// ---- light

Rgba surfaceColor(const ShadeMaterial& material, const ShadeContext& context) {
    const MaterialX::Look& look = material.look;
    Rgba mapped;
    if (!look.has(MaterialX::kColorMap) || !look.has(MaterialX::kAmbient | MaterialX::kDiffuse))
        return look.diffuse;
    if (!material.maps.color || !material.maps.color.color(context.texture, mapped))
        return look.diffuse;
    if (mapped[3] <= 0.0F) return look.diffuse;
    return mapped[3] >= 1.0F ? mapped : mix(look.diffuse, mapped, mapped[3]);
}

struct LightSums {
    Rgba color{};     // ambient and diffuse
    Rgba specular{};  // its alpha means nothing
};

LightSums illuminate(const ShadeMaterial& material, const ShadeContext& context,
                     std::span<const LightX* const> lights) {
    const MaterialX::Look& look = material.look;
    const bool diffuse = look.has(MaterialX::kDiffuse);
    const bool specular = look.has(MaterialX::kSpecular);
    const Rgba surface = surfaceColor(material, context);
    const Vec3 toEye = normalize(context.eye - context.position);
    const Vec3 normal = normalize(context.normal);
    LightSums sums;
    for (const LightX* light : lights) {
        const Rgba& color = light->color();
        if (light->type() == LightType::kAmbient) {
            if (!look.has(MaterialX::kAmbient) && !diffuse) continue;
            const Rgba& answer = look.has(MaterialX::kAmbient) ? look.ambient : surface;
            const float intensity = static_cast<float>(light->intensity());
            for (std::size_t i = 0; i < 4; ++i)
                sums.color[i] += answer[i] * (color[i] * intensity);
            continue;
        }
        if (!diffuse && !specular) continue;
        const double lit = light->shadowFactor(context.position);
        LightX::Incidence incidence;
        if (lit == 0.0 || !light->incidence(context.position, incidence)) continue;
        if (diffuse) {
            const float d =
                static_cast<float>(LightX::diffuseTerm(incidence, context.normal) * lit);
            for (std::size_t i = 0; i < 4; ++i)
                sums.color[i] += surface[i] * color[i] * d;
        }
        if (specular) {
            const Rgba sp = light->specularTerm(incidence, toEye, normal, look.specularExponent);
            const float amount = static_cast<float>(lit * look.specularAmount);
            for (std::size_t i = 0; i < 4; ++i)
                sums.specular[i] += sp[i] * amount;
        }
    }
    return sums;
}

// ---- opacity

// Sets alpha, multiplies the colour by it, and answers what the map scales all light by.
float applyOpacity(const ShadeMaterial& material, const ShadeContext& context, LightSums& sums) {
    const MaterialX::Look& look = material.look;
    const float own = static_cast<float>(1.0 - look.transparency);
    float mapScale = 1.0F;
    float& alpha = sums.color[3];
    float sample = 0.0F;
    if (look.has(MaterialX::kTransparencyMap) && material.maps.transparency &&
        material.maps.transparency.channel(context.texture, 3, sample)) {
        mapScale = sample;
        alpha = own * sample;
        for (std::size_t i = 0; i < 3; ++i)
            sums.specular[i] *= sample;
    } else {
        alpha = look.has(MaterialX::kTransparency) ? own : 1.0F;
    }
    if (alpha < 1.0F) {
        for (std::size_t i = 0; i < 3; ++i)
            sums.color[i] *= alpha;
    } else {
        alpha = 1.0F;
    }
    return mapScale;
}

// ---- reflection

// An interval on an axis of the environment; it runs over the seam where lo exceeds hi.
struct Interval {
    double lo = 1e20;
    double hi = -1e20;

    void add(double x) {
        lo = std::min(lo, x);
        hi = std::max(hi, x);
    }
    // Four corners that lie far apart, or don't enclose the middle, are taken to enclose the seam.
    void settle(double middle) {
        if (middle < lo || middle > hi || hi - lo > 0.5) std::swap(lo, hi);
    }
    bool wraps() const { return lo > hi; }
    Interval firstPart() const { return wraps() ? Interval{0.0, hi} : *this; }
    Interval secondPart() const { return wraps() ? Interval{lo, 1.0} : *this; }
};

// Never 0, so that two boxes without an extent on one axis still weigh by the other one.
double area(const TextureBox& box) {
    constexpr double kLeast = 1e-9;
    return std::max(box.sMax - box.sMin, kLeast) * std::max(box.tMax - box.tMin, kLeast);
}

// Longitude and latitude, each 0 to 1, at which a mirror at `position` sees the environment.
Vec2 environmentPoint(const ResolvedMap& map, Vec3 eye, Vec3 position, Vec3 normal) {
    const Vec3 toEye = normalize(eye - position);
    const Vec3 mirrored = normalize(normal * (2.0 * dot(toEye, normal)) - toEye);
    const Vec3 r = map.reflection(mirrored);
    double s = std::atan2(-r.x, -r.z);
    if (s < 0.0) s += 2.0 * kPi;
    // A placement with a scale gives vectors of any length.
    const double t = (std::asin(std::clamp(r.y, -1.0, 1.0)) + 1.5707963) * 0.3183098;
    return {s * 0.1591549, std::min(t, 1.0)};
}

bool environment(const ResolvedMap& map, const ShadeContext& context, Rgba& out) {
    Interval s;
    Interval t;
    for (std::size_t i = 0; i < ShadeContext::kCorners; ++i) {
        const Vec2 p = environmentPoint(map, context.eye, context.cornerPositions[i],
                                        context.cornerNormals[i]);
        s.add(p.x);
        t.add(p.y);
    }
    const Vec2 middle = environmentPoint(map, context.eye, context.position, context.normal);
    s.settle(middle.x);
    t.settle(middle.y);
    if (!s.wraps() && !t.wraps()) return map.color({s.lo, t.lo, s.hi, t.hi}, out);

    const Interval s1 = s.firstPart();
    const Interval t1 = t.firstPart();
    const Interval s2 = s.secondPart();
    const Interval t2 = t.secondPart();
    const TextureBox box1{s1.lo, t1.lo, s1.hi, t1.hi};
    const TextureBox box2{s2.lo, t2.lo, s2.hi, t2.hi};
    Rgba first;
    Rgba second;
    const bool found1 = map.color(box1, first);
    const bool found2 = map.color(box2, second);
    if (found1 && found2) {
        const double part = area(box2) / (area(box1) + area(box2));
        out = mix(first, second, static_cast<float>(part));
    } else if (found1) {
        out = first;
    } else if (found2) {
        out = second;
    }
    return found1 || found2;
}

Rgba shadeAt(const ShadeMaterial& material, const ShadeContext& at,
             std::span<const LightX* const> lights, bool premultiplied) {
    const MaterialX::Look& look = material.look;
    LightSums sums = illuminate(material, at, lights);
    const float mapScale = applyOpacity(material, at, sums);
    Rgba color = sums.color;
    sums.specular[3] = glare(sums.specular);
    for (std::size_t i = 0; i < 4; ++i)
        color[i] += sums.specular[i];

    Rgba reflected;
    if (look.has(MaterialX::kReflectionMap) && material.maps.reflection &&
        environment(material.maps.reflection, at, reflected)) {
        const float strength = static_cast<float>(look.reflectivity);
        for (float& channel : reflected)
            channel *= strength;
        for (std::size_t i = 0; i < 3; ++i)
            color[i] += reflected[i] * mapScale;
        color[3] += glare(reflected) * mapScale;
    }

    if (!premultiplied && color[3] > 1e-05F)
        for (std::size_t i = 0; i < 3; ++i)
            color[i] /= color[3];
    for (float& channel : color)
        channel = channel > 1.0F ? 1.0F : std::isnan(channel) ? 0.0F : channel;
    return color;
}

}  // namespace

Rgba shade(const ShadeMaterial& material, const ShadeContext& context,
           std::span<const LightX* const> lights, bool premultiplied) {
    if (!material.look.has(MaterialX::kBumpMap))
        return shadeAt(material, context, lights, premultiplied);
    ShadeContext bumpy = context;
    bump(material, bumpy);
    return shadeAt(material, bumpy, lights, premultiplied);
}

}  // namespace orvin
