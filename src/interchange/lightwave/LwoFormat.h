// Names and limits of LightWave object files, as the published descriptions of "LWOB" (LightWave 5
// and before) and "LWO2" (6 and later) have them.
//
// Both are a FORM of chunks, big-endian. Space is left-handed there: x to the right, y up, z away
// from the viewer; polygons run clockwise as seen from outside.
#pragma once

#include <cstdint>

#include "interchange/ByteReader.h"

namespace orvin::lwo {

inline constexpr std::uint32_t kForm = chunkId("FORM");
inline constexpr std::uint32_t kLwob = chunkId("LWOB");
inline constexpr std::uint32_t kLwo2 = chunkId("LWO2");

inline constexpr std::uint32_t kPoints = chunkId("PNTS");
inline constexpr std::uint32_t kPolygons = chunkId("POLS");
inline constexpr std::uint32_t kSurface = chunkId("SURF");
inline constexpr std::uint32_t kColor = chunkId("COLR");
inline constexpr std::uint32_t kTransparency = chunkId("TRAN");
inline constexpr std::uint32_t kSmoothing = chunkId("SMAN");  // an angle in radians

// LWOB only.
inline constexpr std::uint32_t kSurfaceNames = chunkId("SRFS");
inline constexpr std::uint32_t kCurves = chunkId("CRVS");
inline constexpr std::uint32_t kPatches = chunkId("PCHS");
inline constexpr std::uint32_t kExactTransparency = chunkId("VTRN");
inline constexpr std::uint32_t kFlags = chunkId("FLAG");
inline constexpr std::uint32_t kDiffuse = chunkId("DIFF");

// LWO2 only.
inline constexpr std::uint32_t kTags = chunkId("TAGS");
inline constexpr std::uint32_t kLayer = chunkId("LAYR");
inline constexpr std::uint32_t kBounds = chunkId("BBOX");
inline constexpr std::uint32_t kVertexMap = chunkId("VMAP");
inline constexpr std::uint32_t kDiscontinuousMap = chunkId("VMAD");
inline constexpr std::uint32_t kTextureMap = chunkId("TXUV");  // type of both kinds of map
inline constexpr std::uint32_t kPolygonTags = chunkId("PTAG");
inline constexpr std::uint32_t kFaces = chunkId("FACE");  // types of polygons
inline constexpr std::uint32_t kCurve = chunkId("CURV");
inline constexpr std::uint32_t kSubPatch = chunkId("PTCH");  // cages of subdivided surfaces
inline constexpr std::uint32_t kSubDivision = chunkId("SUBD");

inline constexpr std::size_t kPointBytes = 12;
inline constexpr std::size_t kMaxCorners = 1023;          // of an LWO2 polygon: ten bits
inline constexpr std::uint32_t kFirstLongIndex = 0xFF00;  // indices below are written in two bytes
inline constexpr std::uint32_t kMaxIndex = 0xFFFFFF;

/// A vertex or polygon index of LWO2: two bytes, or four of which the first is 0xFF.
inline std::uint32_t index(ByteReader& in) {
    const std::uint32_t high = in.u16();
    if (high < kFirstLongIndex) return high;
    return (high & 0xFFU) << 16 | in.u16();
}

}  // namespace orvin::lwo
