// The edge library: the sections of the 107 built-in edges, and the two icons that viewers draw for
// points and lights. Compiled in as text (library/README.md), built once, constant from then on.
//
// An edge is known by its place in the library: projects store nothing else of it (ProfileL).
#pragma once

#include <memory>
#include <string_view>

#include "scene/SceneX.h"
#include "toolkit/Result.h"

namespace orvin {

class ObjectP;
class ProfileI;

/// Builds the library; registerMemberClasses() does so at the end of start-up. It lives until the
/// process ends. -1 where it is there already, which changes nothing, and where a text can't be
/// read: then there is none, and standard error says why. Call from one thread.
Result loadEdgeLibrary();

/// Edges in the library; 0 without one.
int edgeCount();

/// The library's own name of an edge (menus show EdgeMenu.h's); null for an index out of range.
const char* edgeName(int index);

/// The edge; not to be changed, but its shape may be asked for. Null for an index out of range.
ProfileI* edgeAt(int index);

/// The index of an edge by its own name or by the one that menus show; -1 for none.
int findEdge(std::string_view name);

/// The icons, about two units across: a ball, and a lamp that shines along negative z as lights do
/// (material slot 0 is its glass, 1 its socket). Null without a library.
ObjectP* sphereIcon();
ObjectP* lightIcon();

/// The texts that a library is built from; arrays of lines that end with null.
struct EdgeLibraryTexts {
    const char* const* edges;
    const char* const* sphere;
    const char* const* lightIcon;
};

/// What is compiled in.
EdgeLibraryTexts builtInEdgeTexts();

/// A library of these texts, its edges turned and snapped (InputProfile2::orientEdgePath); null and
/// a line on standard error where one holds anything that can't be read or isn't known.
std::unique_ptr<SceneX> buildEdgeLibrary(const EdgeLibraryTexts& texts);

}  // namespace orvin
