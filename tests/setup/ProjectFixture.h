// A manager with its sections, a folder of its own and an answerer.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "scene/MemoryStream.h"
#include "scene/OrvinSceneManager.h"
#include "setup/OrvinProjectSections.h"
#include "setup/StartUp.h"
#include "tests/setup/ScriptedQuestions.h"
#include "tests/support/TempFolder.h"

namespace orvin {

inline std::string fileText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeText(const std::filesystem::path& path, std::string_view text) {
    std::ofstream(path, std::ios::binary) << text;
}

class ProjectFixture : public testing::Test {
  protected:
    ProjectFixture() {
        registerMemberClasses();
        manager.setDataFolder(folder);
    }
    ~ProjectFixture() override {
        std::error_code error;
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    }

    /// Reads a project from text.
    Result read(std::string_view text) {
        MemoryStream stream(nullptr, text);
        return manager.readProject(stream, false);
    }

    /// What a file of the present project holds.
    std::string text() {
        MemoryStream stream(&manager);
        EXPECT_EQ(manager.writeBody(stream), kSuccess);
        return stream.takeText();
    }

    std::size_t filesInFolder() const {
        const std::filesystem::directory_iterator files(folder);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    ScriptedQuestions user;
    const test::TempFolder temporary;
    const std::filesystem::path folder = temporary.path();
    OrvinPreferences preferences;
    OrvinProjectSections sections;
    OrvinSceneManager manager{preferences, sections};
};

}  // namespace orvin
