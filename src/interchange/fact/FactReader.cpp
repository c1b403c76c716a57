#include "interchange/fact/FactReader.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <utility>

#include "interchange/ModelFile.h"
#include "interchange/fact/FactFormat.h"
#include "toolkit/Progress.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr std::size_t kMaxDepth = 16;  // of groups in groups
constexpr int kElementsPerTick = 5000;

class FactParser {
  public:
    explicit FactParser(ImportedGroups& model) : model_(model) {}

    Result run(Bytes chunks) {
        open_.emplace_back(chunks);
        while (!open_.empty()) {
            if (open_.back().chunks.atEnd()) {
                if (finish(open_.back()) != kSuccess) return kFailure;
                open_.pop_back();
            } else {
                this->chunk(open_.back().chunks.chunk());
            }
        }
        if (model_.groups.empty()) model_.groups.emplace_back().name = kFactDefaultGroup;
        return kSuccess;
    }

  private:
    /// A group that is being read; the outermost one is the file itself.
    struct Open {
        explicit Open(Bytes content) : chunks(content) {}

        ByteReader chunks;
        int number = 0;  // from 1; 0 for the file
        ImportedGroup group;
        std::vector<Bytes> elements;
    };

    void chunk(const IffChunk& chunk) {
        Open& open = open_.back();
        Mesh3& mesh = open.group.mesh;
        switch (chunk.id) {
            case fact::kForm:
                form(chunk.body);
                break;
            case fact::kPoints32:
                points<float>(chunk.body, [&mesh](Vec3 p) { mesh.addVertex(turned(p)); });
                break;
            case fact::kPoints64:
                points<double>(chunk.body, [&mesh](Vec3 p) { mesh.addVertex(turned(p)); });
                break;
            case fact::kTexture:
                points<float>(chunk.body, [&mesh](Vec3 t) { mesh.addTexVertex(t); });
                break;
            case fact::kNormals:
                points<float>(chunk.body, [&mesh](Vec3 n) { mesh.addNormal(turned(n)); });
                break;
            case fact::kElements:
                open.elements.push_back(chunk.body);
                break;
            default:
                break;
        }
    }

    void form(Bytes body) {
        ByteReader in(body);
        const std::uint32_t type = in.u32();
        if (type == fact::kGroup && open_.size() <= kMaxDepth) {
            open_.emplace_back(in.take(in.rest()));
            open_.back().number = ++groupCount_;
        } else if (type == fact::kGroupHeader) {
            while (!in.atEnd())
                headerChunk(in.chunk());
        }
    }

    void headerChunk(const IffChunk& chunk) {
        ImportedGroup& group = open_.back().group;
        ByteReader in(chunk.body);
        if (chunk.id == fact::kName) {
            group.name = in.text();
        } else if (chunk.id == fact::kAttributes && model_.groups.size() < kMaxImportedGroups) {
            while (!in.atEnd()) {
                const std::size_t slot = in.u16();
                ImportedMaterial material;
                for (std::size_t i = 0; i < 3; ++i)
                    material.color[i] = static_cast<float>(in.f32());
                material.transparency = in.f32();
                const bool whole = !in.failed();
                material.name = in.text();
                if (!whole || slot >= group.materials.size() || material.name.empty()) continue;
                if (group.materials[slot] != ImportedGroup::kNoMaterial) continue;
                group.materials[slot] = addMaterial(std::move(material));
            }
        }
    }

    int addMaterial(ImportedMaterial material) {
        const auto next = static_cast<int>(model_.materials.size());
        const auto [found, isNew] = materials_.emplace(material.name, next);
        if (isNew) model_.materials.push_back(std::move(material));
        return found->second;
    }

    static Vec3 turned(Vec3 p) { return {p.x, p.y, 0.0 - p.z}; }

    template <typename Number, typename Add>
    static void points(Bytes body, Add&& add) {
        ByteReader in(body);
        const auto number = [&in] { return sizeof(Number) == 4 ? in.f32() : in.f64(); };
        for (std::size_t left = body.size() / (3 * sizeof(Number)); left > 0; --left) {
            const double x = number();
            const double y = number();
            add(Vec3{x, y, number()});
        }
    }

    /// Makes room for the elements of a group: their number is told, but not to be trusted.
    static void reserve(std::span<const Bytes> chunks, Mesh3& mesh) {
        std::size_t faces = 0;
        std::size_t corners = 0;
        for (const Bytes chunk : chunks) {
            ByteReader in(chunk);
            while (in.rest() >= fact::kElementHead) {
                in.u8();
                const unsigned flags = in.u8();
                in.u16();
                const std::size_t count = in.u32();
                if (count > in.rest() / 4) break;
                const std::size_t lists = 1 + ((flags & fact::kHasTexture) != 0 ? 1 : 0) +
                                          ((flags & fact::kHasNormals) != 0 ? 1 : 0);
                in.take(std::min(lists * count * 4, in.rest()));
                ++faces;
                corners += count;
            }
        }
        const auto count = [](int n) { return static_cast<std::size_t>(n); };
        mesh.reserve(count(mesh.vertexCount()), count(mesh.texVertexCount()),
                     count(mesh.normalCount()), faces, corners);
    }

    Result finish(Open& open) {
        reserve(open.elements, open.group.mesh);
        for (const Bytes elements : open.elements)
            if (addElements(elements, open.group.mesh) != kSuccess) return kFailure;
        if (open.number == 0 && open.group.mesh.vertexCount() == 0) return kSuccess;
        if (open.number == 0)
            open.group.name = kFactDefaultGroup;
        else if (open.group.name.empty())
            open.group.name = "FACT group" + std::to_string(open.number);
        open.group.mesh.dropUnused();
        model_.add(std::move(open.group));
        return kSuccess;
    }

    Result addElements(Bytes body, Mesh3& mesh) {
        ByteReader in(body);
        for (int i = 0; in.rest() >= fact::kElementHead; ++i) {
            if (i % kElementsPerTick == 0 && pollProgress(i, 0) != 0) return kFailure;
            const std::uint8_t kind = in.u8();
            const std::uint8_t flags = in.u8();
            const int slot = in.u16();
            const std::size_t count = in.u32();
            if (count > in.rest() / 4) return kSuccess;
            indices(in, count, vertices_);
            indices(in, (flags & fact::kHasTexture) != 0 ? count : 0, texture_);
            indices(in, (flags & fact::kHasNormals) != 0 ? count : 0, normals_);
            if (in.failed()) return kSuccess;
            if (!inRange(texture_, mesh.texVertexCount())) texture_.clear();
            if (!inRange(normals_, mesh.normalCount())) normals_.clear();
            mesh.addFace(static_cast<ElementKind>(std::min<int>(kind, 2)),
                         slot < ObjectP::kMaterialCount ? slot : 0, vertices_, texture_, normals_);
        }
        return kSuccess;
    }

    static void indices(ByteReader& in, std::size_t count, std::vector<int>& list) {
        list.clear();
        if (count > in.rest() / 4) count = in.rest() / 4 + 1;  // one too many: the reader fails
        for (; count > 0; --count)
            list.push_back(in.i32());
    }

    static bool inRange(const std::vector<int>& list, int count) {
        return std::all_of(list.begin(), list.end(),
                           [count](int index) { return index >= 0 && index < count; });
    }

    ImportedGroups& model_;
    std::vector<Open> open_;  // outermost first
    int groupCount_ = 0;
    std::unordered_map<std::string, int> materials_;
    std::vector<int> vertices_;  // of the element that is being read
    std::vector<int> texture_;
    std::vector<int> normals_;
};

}  // namespace

Result parseFact(Bytes file, ImportedGroups& model) {
    ByteReader in(file);
    const bool isForm = in.u32() == fact::kForm;
    const std::size_t size = in.u32();
    ByteReader form(in.take(std::min(size, in.rest())));
    if (!isForm || form.u32() != fact::kFile) return kFailure;
    return FactParser(model).run(form.take(form.rest()));
}

Result readFact(const std::filesystem::path& path, ImportedGroups& model) {
    const auto bytes = readModelFile(path);
    if (!bytes) return kFailure;
    if (parseFact(*bytes, model) == kSuccess) return kSuccess;
    if (progressStop() == 0)
        std::fprintf(stderr, "read_fact: '%s' is no FACT file.\n",
                     platform::textFromPath(path).c_str());
    return kFailure;
}

Result importFact(SceneX& scene, const std::filesystem::path& path, std::vector<ObjectP*>* made) {
    ImportedGroups model;
    if (readFact(path, model) != kSuccess) return kFailure;
    auto objects = addToScene(scene, std::move(model), path, ModelFileType::kFact);
    if (made != nullptr) *made = std::move(objects);
    return kSuccess;
}

}  // namespace orvin
