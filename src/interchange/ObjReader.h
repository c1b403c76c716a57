// Reader of Wavefront OBJ files.
//
// Read: v, vt, vn, f (and its old name fo), l, p, g; an element goes on in the next line where its
// last token is a single backslash. Everything else is skipped. Lines end with LF or CR LF, or with
// CR in files that have no LF. Indices from the front, or from the end of what was read so far.
//
// Odd files: an index out of range drops its corner (a texture or normal index: that list of its
// face) with a line on standard output, a hundred lines at most. A coordinate that is missing, no
// number or not finite is 0. No input allocates more than a small multiple of its size.
//
// Format: "Object Files (.obj)", appendix B1 of the Advanced Visualizer manual.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "interchange/ImportedModel.h"
#include "toolkit/Result.h"

namespace orvin {

/// The group of elements that stand before any `g` line, and of files without one.
inline constexpr std::string_view kObjDefaultGroup = "OBJ default";

/// Groups beyond this many have their elements in the last one, so that a file of nothing but group
/// names doesn't fill the scene.
inline constexpr std::size_t kObjMaxGroups = 10000;

/// Reads the text of a file. A line with several group names gives the elements that follow to the
/// last of them; a name that was there before goes on with its group. -1 when the progress callback
/// stopped it (polled every 2000 lines).
Result parseObj(std::string_view text, ImportedModel& model);

/// Reads a file; elements without normals get smooth ones, with the default hard shading angle. -1,
/// with a line on standard error, where it can't be read.
Result readObj(const std::filesystem::path& path, ImportedModel& model);

/// Reads a file into a scene, one ObjectP per group; `made` (if not null) gets them. On failure
/// nothing is added.
Result importObj(SceneX& scene, const std::filesystem::path& path,
                 std::vector<ObjectP*>* made = nullptr);

}  // namespace orvin
