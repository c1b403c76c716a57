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

    Result run(ByteReader chunks) {
        open(chunks);
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
        explicit Open(ByteReader content) : chunks(content) {}

        ByteReader chunks;
        int number = 0;  // from 1; 0 for the file
        ImportedGroup group;
        std::vector<ByteReader> elements;
    };

    void open(ByteReader content) {
        open_.emplace_back(content);
        reserve(content, open_.back());
    }

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
                if (chunk.body.rest() >= fact::kElementHead) open.elements.push_back(chunk.body);
                break;
            default:
                break;
        }
    }

    void form(ByteReader in) {
        const std::uint32_t type = in.u32();
        if (type == fact::kGroup && open_.size() <= kMaxDepth) {
            open(in.take(in.rest()));
            open_.back().number = ++groupCount_;
        } else if (type == fact::kGroupHeader) {
            while (!in.atEnd())
                headerChunk(in.chunk());
        }
    }

    void headerChunk(const IffChunk& chunk) {
        ImportedGroup& group = open_.back().group;
        ByteReader in = chunk.body;
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
    static void points(ByteReader in, Add&& add) {
        const auto number = [&in] { return sizeof(Number) == 4 ? in.f32() : in.f64(); };
        for (std::size_t left = in.rest() / (3 * sizeof(Number)); left > 0; --left) {
            const double x = number();
            const double y = number();
            add(Vec3{x, y, number()});
        }
    }

    /// Makes room for what the chunks of a group hold.
    static void reserve(ByteReader chunks, Open& open) {
        std::size_t points = 0;
        std::size_t texture = 0;
        std::size_t normals = 0;
        std::size_t elementChunks = 0;
        Elements elements;
        while (!chunks.atEnd()) {
            const IffChunk chunk = chunks.chunk();
            const std::size_t size = chunk.body.rest();
            switch (chunk.id) {
                case fact::kPoints32:
                    points += size / (3 * sizeof(float));
                    break;
                case fact::kPoints64:
                    points += size / (3 * sizeof(double));
                    break;
                case fact::kTexture:
                    texture += size / (3 * sizeof(float));
                    break;
                case fact::kNormals:
                    normals += size / (3 * sizeof(float));
                    break;
                case fact::kElements:
                    if (size >= fact::kElementHead) ++elementChunks;
                    count(chunk.body, elements);
                    break;
                default:
                    break;
            }
        }
        open.elements.reserve(elementChunks);
        Mesh3& mesh = open.group.mesh;
        mesh.reserve(points, elements.texture ? texture : 0, elements.normals ? normals : 0,
                     elements.faces, elements.corners);
        mesh.reserve(points, texture, normals, 0, 0);
    }

    struct Elements {
        std::size_t faces = 0;
        std::size_t corners = 0;
        bool texture = false;
        bool normals = false;
    };
    static void count(ByteReader in, Elements& elements) {
        while (in.rest() >= fact::kElementHead) {
            in.u8();
            const unsigned flags = in.u8();
            in.u16();
            const std::size_t count = in.u32();
            if (count > in.rest() / 4) return;
            const bool texture = (flags & fact::kHasTexture) != 0;
            const bool normals = (flags & fact::kHasNormals) != 0;
            const std::size_t lists = std::size_t{1} + (texture ? 1U : 0U) + (normals ? 1U : 0U);
            in.take(std::min(lists * count * 4, in.rest()));
            ++elements.faces;
            elements.corners += count;
            elements.texture = elements.texture || texture;
            elements.normals = elements.normals || normals;
        }
    }

    Result finish(Open& open) {
        for (const ByteReader& elements : open.elements)
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

    Result addElements(ByteReader in, Mesh3& mesh) {
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

Result parseFact(ModelInput& input, ImportedGroups& model) {
    ByteReader in(input);
    const bool isForm = in.u32() == fact::kForm;
    const std::size_t size = in.u32();
    ByteReader form = in.take(std::min(size, in.rest()));
    if (!isForm || form.u32() != fact::kFile) return kFailure;
    return FactParser(model).run(form);
}

Result readFact(const std::filesystem::path& path, ImportedGroups& model) {
    auto input = ModelInput::open(path);
    if (!input) return kFailure;
    const Result result = parseFact(*input, model);
    if (input->failed()) {
        reportUnopened(path);
        return kFailure;
    }
    if (result == kSuccess) return kSuccess;
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
