// The commands of orvinex. Each gets its parsed options, and the output where it tells something,
// throws UsageError or Failure, and returns the exit status.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "common/Options.h"
#include "common/ProgramOutput.h"
#include "setup/Project.h"

namespace orvin::orvinex {

inline constexpr int kMaxFrames = 1 << 20;  // that options take

int renderCommand(const apps::ParsedOptions& options);
int outlineCommand(const apps::ParsedOptions& options);
int importCommand(const apps::ParsedOptions& options);
int exportCommand(const apps::ParsedOptions& options);
int resaveCommand(const apps::ParsedOptions& options);
int infoCommand(const apps::ParsedOptions& options, apps::ProgramOutput& output);
int paramsCommand(const apps::ParsedOptions& options, apps::ProgramOutput& output);
int edgesCommand(const apps::ParsedOptions& options, apps::ProgramOutput& output);
int textCommand(const apps::ParsedOptions& options);
int sheetCommand(const apps::ParsedOptions& options);

/// Opens the project or throws Failure with the reason.
void openProject(Project& project, const std::filesystem::path& path);

/// Saves it or throws Failure; the old file is then as it was.
void saveProject(Project& project, const std::filesystem::path& path);

/// Makes `frame` the one that changing outlines show; the clock then runs that far at least.
void goToFrame(int frame);
/// The same for "--frame", where it is given.
void goToFrame(const apps::ParsedOptions& options);

/// Names of the materials of the main scene.
std::vector<std::string> materialNames(Project& project);

/// Tells on standard error which of the materials that were there a save has dropped: who wrote
/// them by hand should know.
void tellDropped(Project& project, const std::vector<std::string>& before);

/// The value of "-o", or UsageError.
std::string outputOption(const apps::ParsedOptions& options);

/// UsageError where `output` is one of the files that the command reads: it would be lost.
void keepInputs(const apps::ParsedOptions& options, const std::string& output);

/// "-o" of a picture: ends in ".png", and is no input. UsageError.
std::string pictureOutput(const apps::ParsedOptions& options);

}  // namespace orvin::orvinex
