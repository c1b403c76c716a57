#include "orvinhost/Module.h"

#include "common/Options.h"
#include "host/abi/PiPL.h"
#include "toolkit/platform/Platform.h"

#include <windows.h>

namespace orvin::stand_in {

Module::Module(const std::filesystem::path& path) {
    const std::filesystem::path file = std::filesystem::absolute(path);
    const HMODULE library = LoadLibraryW(file.c_str());
    if (library == nullptr)
        throw apps::Failure(file.string() + ": can't be loaded, error " +
                            std::to_string(GetLastError()));
    library_ = library;
    entry_ =
        reinterpret_cast<PF_EffectMainFn>(reinterpret_cast<void*>(GetProcAddress(library, "main")));
    if (entry_ == nullptr) {
        FreeLibrary(library);
        throw apps::Failure(file.string() + ": no entry \"main\"");
    }
}

Module::~Module() {
    FreeLibrary(static_cast<HMODULE>(library_));
}

std::vector<std::uint8_t> Module::pipl() const {
    const auto library = static_cast<HMODULE>(library_);
    const HRSRC found = FindResourceW(
        library, reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(kPiPLResourceId)), L"PIPL");
    if (found == nullptr) return {};
    const auto* bytes =
        static_cast<const std::uint8_t*>(LockResource(LoadResource(library, found)));
    if (bytes == nullptr) return {};
    return std::vector<std::uint8_t>(bytes, bytes + SizeofResource(library, found));
}

std::filesystem::path Module::standardPath() {
    return platform::moduleFolder() / "3DOrvinex.aex";
}

void* makeMainWindow() {
    return CreateWindowExW(0, L"STATIC", L"orvinhost", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                           CW_USEDEFAULT, 320, 200, nullptr, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

}  // namespace orvin::stand_in
