// edges: what the library, or a folder of custom edges, has: as a list or as a sheet of pictures.
#include <algorithm>
#include <filesystem>

#include "common/ProgressBar.h"
#include "orvinex/Commands.h"
#include "orvinex/EdgeSheet.h"
#include "setup/StartUp.h"
#include "toolkit/platform/Platform.h"
#include "vector/edges/CustomEdges.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/edges/EdgeMenu.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin::orvinex {

namespace {

constexpr int kSingleSide = 800;  // pixels of the letter where one edge alone is drawn

struct ListedEdge {
    int index;
    std::string name;
    std::string shown;
    std::string category;
    ProfileI* edge;
    bool makesSolids;
};

std::vector<ListedEdge> libraryEdges() {
    if (edgeCount() == 0) throw apps::Failure("there is no edge library");
    std::vector<ListedEdge> edges;
    for (int i = 0; i < edgeCount(); ++i) {
        const std::string name = edgeName(i);
        const int category = edgeCategory(name);
        edges.push_back(
            {i, name, std::string(shownEdgeName(name)),
             category < 0 ? std::string()
                          : std::string(edgeCategories()[static_cast<std::size_t>(category)].name),
             edgeAt(i), true});
    }
    return edges;
}

std::vector<ListedEdge> customEdges(CustomEdges& custom, const std::filesystem::path& folder) {
    if (!std::filesystem::is_directory(folder))
        throw apps::Failure("'" + platform::textFromPath(folder) + "' is no folder");
    custom.reload(folder);
    std::vector<ListedEdge> edges;
    for (int i = 0; i < custom.count(); ++i) {
        const std::string& name = custom.edge(i)->name();
        edges.push_back(
            {i, name, name, "Custom Edges", custom.edge(i), makesSolids(*custom.edge(i))});
    }
    return edges;
}

std::vector<ListedEdge> chosen(const std::vector<ListedEdge>& all,
                               const std::vector<std::string>& names) {
    if (names.empty()) return all;
    std::vector<ListedEdge> edges;
    for (const std::string& name : names) {
        const auto by = [&](std::string ListedEdge::*field) {
            return std::find_if(all.begin(), all.end(),
                                [&](const ListedEdge& e) { return e.*field == name; });
        };
        auto found = by(&ListedEdge::name);
        if (found == all.end()) found = by(&ListedEdge::shown);
        if (found == all.end()) throw apps::Failure("no edge is named '" + name + "'");
        edges.push_back(*found);
    }
    return edges;
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string listText(const std::vector<ListedEdge>& edges) {
    std::size_t widest = 0;
    for (const ListedEdge& edge : edges)
        widest = std::max({widest, edge.name.size(), edge.shown.size()});
    std::string text;
    for (const ListedEdge& edge : edges)
        text += padded(std::to_string(edge.index), 5) + padded(edge.name, widest + 2) +
                padded(edge.shown, widest + 2) + edge.category + "\n";
    return text;
}

void writeSheet(const std::vector<ListedEdge>& listed, const apps::ParsedOptions& options) {
    std::vector<SheetEdge> edges;
    for (const ListedEdge& edge : listed)
        edges.push_back(
            {edge.edge, std::to_string(edge.index) + "  " + edge.shown, edge.makesSolids});
    if (edges.empty()) throw apps::Failure("there are no edges to draw");
    SheetLayout layout;
    if (edges.size() == 1) layout.letterSide = kSingleSide;
    if (options.has("--columns"))
        layout.columns = apps::wholeOption(options.value("--columns"), "--columns", 1, 107);
    if (options.has("--letter"))
        layout.letterSide = apps::wholeOption(options.value("--letter"), "--letter", 64, 4096);
    apps::ProgressBar bar("drawing edges", options.has("--quiet"));
    const apps::Picture sheet =
        drawEdgeSheet(edges, layout, [&](double done) { bar.update(done); });
    apps::writePng(options.value("--sheet"), sheet);
}

}  // namespace

int edgesCommand(const apps::ParsedOptions& options, apps::ProgramOutput& output) {
    if (options.has("--list") && options.has("--sheet"))
        throw apps::UsageError("--list and --sheet are two things");
    if (options.has("--sheet"))
        static_cast<void>(apps::pngOption(options.value("--sheet"), "--sheet"));
    registerMemberClasses();
    CustomEdges custom;
    const std::vector<ListedEdge> all =
        options.has("--custom")
            ? customEdges(custom, platform::pathFromText(options.value("--custom")))
            : libraryEdges();
    const std::vector<ListedEdge> edges = chosen(all, options.all("--edge"));
    if (options.has("--sheet"))
        writeSheet(edges, options);
    else
        output.write(listText(edges));
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
