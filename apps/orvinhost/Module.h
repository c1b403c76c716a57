// The effect's module, loaded the way the host loads it. Implementations: posix/ and win32/.
#pragma once

#include "host/abi/Abi.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvin::stand_in {

class Module {
  public:
    /// Loads the module and finds its entry "main". Throws Failure with the system's reason.
    explicit Module(const std::filesystem::path& path);
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    PF_EffectMainFn entry() const { return entry_; }
    /// Its instance handle, where the system has such.
    void* instance() const { return library_; }
    /// The PiPL resource; empty where a module has none.
    std::vector<std::uint8_t> pipl() const;

    /// "3DOrvinex.aex" or "3DOrvinex.so" beside the program.
    static std::filesystem::path standardPath();

  private:
    void* library_ = nullptr;
    PF_EffectMainFn entry_ = nullptr;
};

/// A hidden window that stands for the host's main window; null where there are none.
void* makeMainWindow();

}  // namespace orvin::stand_in
