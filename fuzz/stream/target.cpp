// The word stream and the blocks of a scene. The first byte picks the store and how the bytes meet
// it; what was loaded is swept, written, and must load and write the same again.
#include <algorithm>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "fuzz/Fuzzing.h"
#include "scene/FileStream.h"
#include "scene/HandleStream.h"
#include "scene/MemoryStream.h"
#include "scene/PresetStream.h"
#include "scene/SceneX.h"
#include "toolkit/Questions.h"

namespace {

using namespace orvin;
using fuzzing::require;
using fuzzing::Silent;

void load(SceneStream& stream, SceneX& scene) {
    try {
        loadBlock(stream, scene);
    } catch (const std::bad_alloc&) {
        // A parent that isn't there.
        stream.unwind(0);
    }
}

std::string written(SceneX& scene) {
    MemoryStream stream(nullptr);
    require(scene.writeBody(stream) == kSuccess);
    return stream.takeText();
}

bool hasLongLine(std::string_view text) {
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        if (end - start > 250) return true;
        start = end + 1;
    }
    return false;
}

void tokens(SceneStream& stream, std::size_t size) {
    std::string_view token;
    for (std::size_t count = 0; stream.nextToken(token) == kSuccess; ++count) {
        require(token.size() < kLineCapacity);
        require(stream.position() < static_cast<std::int64_t>(size));
        if (token == "raw") {
            std::uint8_t bytes[3];
            stream.readBytes(bytes);
        }
        require(count <= size);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Silent silent;
    static const bool kPrepared = [] {
        setQuestions(&silent);
        registerSceneClasses();
        return true;
    }();
    static_cast<void>(kPrepared);
    if (size == 0) return 0;
    const unsigned mode = data[0] % 6;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);

    PlainHandleMemory memory;
    const Handle handle = memory.allocate(text.size());
    std::copy(text.begin(), text.end(), static_cast<char*>(*handle));
    std::vector<std::string> strings{{}};
    for (const char c : text)
        if (c == '\n')
            strings.emplace_back();
        else
            strings.back() += c;
    std::vector<const char*> table;
    for (const std::string& s : strings)
        table.push_back(s.c_str());
    table.push_back(nullptr);

    SceneX scene;
    HandleStream fromHandle(memory, nullptr);
    require(fromHandle.openRead(handle, 0) == kSuccess);
    PresetStream fromTable(nullptr, table.data());
    MemoryStream fromMemory(nullptr, text);
    switch (mode) {
        case 0:
            load(fromMemory, scene);
            break;
        case 1:
            load(fromHandle, scene);
            break;
        case 2:
            load(fromTable, scene);
            break;
        case 3:
            tokens(fromMemory, size);
            return 0;
        case 4:
            tokens(fromHandle, size);
            return 0;
        default:
            tokens(fromTable, size);
            return 0;
    }
    scene.purge(1);
    const std::string once = written(scene);
    SceneX again;
    MemoryStream reader(nullptr, once);
    require(loadBlock(reader, again) == kSuccess);
    // Names that can't be written as they are (cut ones, and those that gain a blank) may meet
    // another of that form; not-a-number loses its sign. All other text comes back byte for byte.
    const bool exact = once.find("nan") == std::string::npos &&
                       once.find("\\ \"") == std::string::npos && !hasLongLine(once);
    if (exact) require(written(again) == once);
    for (const MemberKind kind : {MemberKind::kGroup, MemberKind::kObject})
        require(scene.count(kind) == again.count(kind));
    return 0;
}
