// Model files in and out, by the extension of their name.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "geometry/ObjectP.h"
#include "interchange/ExportWalk.h"
#include "toolkit/Result.h"

namespace orvin {

class SceneX;

/// The format that a name's last four characters tell (".fac", ".c4d", ".obj", ".dxf", ".lwo", in
/// letters of either case); nothing for another name.
std::optional<ModelFileType> modelFormatOf(const std::filesystem::path& path);

/// True where the format is read (and written). Cinema 4D isn't: a message to the user says so and
/// names the formats that are.
bool canReadModels(ModelFileType type);
bool canWriteModels(ModelFileType type);

/// Asks the user for a file. 0 with both values, -1 when the user cancels, and -1 with a message
/// and `format` at 4 for an extension that isn't known.
Result chooseImportFile(std::filesystem::path& path, ModelFileType& format);

/// Reads a file into the scene: one ObjectP per group of the file; `made` (if not null) gets them.
/// -1, and nothing added, on failure, with a message that says why.
Result importModel(SceneX& scene, const std::filesystem::path& path, ModelFileType type,
                   std::vector<ObjectP*>* made = nullptr);

/// The same with the format of the extension; the message of chooseImportFile for an unknown one.
Result importModel(SceneX& scene, const std::filesystem::path& path,
                   std::vector<ObjectP*>* made = nullptr);

/// Writes objects in the format of the extension. -1 on failure, with a message that says why; a
/// file that was there is then as it was.
Result exportModel(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                   const ExportOptions& options = {});

/// Asks the user for a file and writes the scene's objects to it: all, or the selected ones. -1
/// also when the user cancels.
Result exportObjects(SceneX& scene, bool selectedOnly, const ExportOptions& options = {});

/// The objects of a scene in scene order, or the selected ones in the order of their selection.
std::vector<MeshObject*> objectsToExport(SceneX& scene, bool selectedOnly);

/// Lets imported objects read and write their files by stream commands. Call it at start-up.
void installModelHooks();

}  // namespace orvin
