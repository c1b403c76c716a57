#include "toolkit/platform/Platform.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <string>

namespace orvin::platform {

namespace {

HMODULE thisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&thisModule), &module);
    return module;
}

}  // namespace

std::filesystem::path moduleFolder() {
    std::wstring name(512, L'\0');
    for (;;) {
        const DWORD size =
            GetModuleFileNameW(thisModule(), name.data(), static_cast<DWORD>(name.size()));
        if (size == 0) return ".";
        if (size < name.size()) {
            name.resize(size);
            return std::filesystem::path(name).parent_path();
        }
        name.resize(name.size() * 2);
    }
}

std::vector<std::filesystem::path> fontFolders() {
    std::vector<std::filesystem::path> folders;
    wchar_t path[MAX_PATH + 1];
    const DWORD own = GetEnvironmentVariableW(L"LOCALAPPDATA", path, MAX_PATH + 1);
    if (own > 0 && own <= MAX_PATH)
        folders.push_back(std::filesystem::path(path) / L"Microsoft\\Windows\\Fonts");
    const UINT windows = GetWindowsDirectoryW(path, MAX_PATH + 1);
    if (windows > 0 && windows <= MAX_PATH)
        folders.push_back(std::filesystem::path(path) / L"Fonts");
    return folders;
}

std::uint64_t freePhysicalMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    return GlobalMemoryStatusEx(&status) ? status.ullAvailPhys : 0;
}

// Large pages need a privilege here that artists' accounts don't have.
void preferLargePages(void*, std::size_t) {}

std::FILE* openTemporaryFile() {
    wchar_t folder[MAX_PATH + 1];
    wchar_t name[MAX_PATH + 1];
    if (GetTempPathW(MAX_PATH, folder) == 0) return nullptr;
    if (GetTempFileNameW(folder, L"orv", 0, name) == 0) return nullptr;
    const HANDLE handle =
        CreateFileW(name, GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        DeleteFileW(name);
        return nullptr;
    }
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_BINARY | _O_RDWR);
    if (descriptor < 0) {
        CloseHandle(handle);
        return nullptr;
    }
    std::FILE* file = _fdopen(descriptor, "w+b");
    if (file == nullptr) _close(descriptor);
    return file;
}

std::filesystem::path pathFromText(std::string_view text) {
    const int bytes = static_cast<int>(text.size());
    UINT page = CP_UTF8;
    int size = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, text.data(), bytes, nullptr, 0);
    if (size == 0) {
        page = CP_ACP;
        size = MultiByteToWideChar(page, 0, text.data(), bytes, nullptr, 0);
    }
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(page, 0, text.data(), bytes, wide.data(), size);
    return wide;
}

std::string textFromPath(const std::filesystem::path& path) {
    const std::wstring& wide = path.native();
    const int length = static_cast<int>(wide.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
    return text;
}

std::FILE* openFile(const std::filesystem::path& path, const char* mode) {
    std::wstring wide;
    for (const char* c = mode; *c != '\0'; ++c)
        wide.push_back(static_cast<wchar_t>(*c));
    return _wfopen(path.c_str(), wide.c_str());
}

int seek(std::FILE* file, std::uint64_t offset) {
    return _fseeki64(file, static_cast<long long>(offset), SEEK_SET);
}

bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    // Within one folder little else goes wrong than that somebody has the old file open.
    errno = GetLastError() == ERROR_DISK_FULL ? ENOSPC : EACCES;
    return false;
}

}  // namespace orvin::platform
