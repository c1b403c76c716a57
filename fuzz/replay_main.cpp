// Runs a fuzz target over files and folders of files, so that seeds and past crashes are replayed
// by any compiler. A folder that is not there counts as empty; no input at all is a failure.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file),
                                  std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path = argv[i];
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
                if (!entry.is_regular_file()) continue;
                replay(entry.path());
                ++count;
            }
        } else if (std::filesystem::exists(path)) {
            replay(path);
            ++count;
        }
    }
    std::fprintf(stderr, "replayed %d inputs\n", count);
    return count > 0 ? 0 : 1;
}
