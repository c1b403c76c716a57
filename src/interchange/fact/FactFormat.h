// Names and layouts of FACT files, as docs/models.md tells them.
//
// A FORM of type "3DFL", big-endian, in which each group is a FORM "GRUP" with a FORM "GHDR" of its
// own. The file's Z points the other way: (x, y, z) there is (x, y, -z) here; corners keep their
// order.
#pragma once

#include <cstdint>

#include "interchange/ByteReader.h"

namespace orvin::fact {

inline constexpr std::uint32_t kForm = chunkId("FORM");
inline constexpr std::uint32_t kFile = chunkId("3DFL");  // types of FORMs
inline constexpr std::uint32_t kGroup = chunkId("GRUP");
inline constexpr std::uint32_t kGroupHeader = chunkId("GHDR");

// In a group's header.
inline constexpr std::uint32_t kInfo = chunkId("GINF");  // four counts, for whoever wants them
inline constexpr std::uint32_t kAttributes = chunkId("GATR");  // materials of slots
inline constexpr std::uint32_t kLink = chunkId("GLNK");        // number of the parent group, or -1
inline constexpr std::uint32_t kName = chunkId("GSTR");        // text

// In a group, or in the file itself.
inline constexpr std::uint32_t kPoints32 = chunkId("CORD");  // three floats each
inline constexpr std::uint32_t kPoints64 = chunkId("DCOR");  // three doubles each
inline constexpr std::uint32_t kTexture = chunkId("XCOR");   // three floats each
inline constexpr std::uint32_t kNormals = chunkId("NVRT");   // three floats each
inline constexpr std::uint32_t kElements = chunkId("ELEM");

// An element: kind (a byte: 0 polygon, 1 line, 2 points), flags (a byte), material slot (two
// bytes), count of corners (four), then an index (four) for each corner: vertices, and by the flags
// texture vertices and normals. Indices count from 0 in their group.
inline constexpr std::uint8_t kHasTexture = 1;
inline constexpr std::uint8_t kHasNormals = 2;
inline constexpr std::size_t kElementHead = 8;

}  // namespace orvin::fact
