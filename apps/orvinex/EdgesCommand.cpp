// edges: what the library has, as a list or as a sheet of pictures.
#include <algorithm>
#include <cstdio>

#include "common/ProgressBar.h"
#include "orvinex/Commands.h"
#include "orvinex/EdgeSheet.h"
#include "setup/StartUp.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/edges/EdgeMenu.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin::orvinex {

namespace {

constexpr int kSingleSide = 800;  // pixels of the letter where one edge alone is drawn

std::string shownName(int index) {
    return std::string(shownEdgeName(edgeName(index)));
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

void printList() {
    std::size_t widest = 0;
    for (int i = 0; i < edgeCount(); ++i)
        widest = std::max({widest, shownName(i).size(), std::string(edgeName(i)).size()});
    const auto print = [&](const std::string& index, const std::string& name,
                           const std::string& shown, std::string_view category) {
        const std::string line = padded(index, 7) + padded(name, widest + 2) +
                                 padded(shown, widest + 2) + std::string(category) + "\n";
        std::fputs(line.c_str(), stdout);
    };
    print("Index", "Name", "Shown as", "Category");
    for (int i = 0; i < edgeCount(); ++i) {
        const int category = edgeCategory(edgeName(i));
        print(std::to_string(i), edgeName(i), shownName(i),
              category >= 0 ? edgeCategories()[static_cast<std::size_t>(category)].name
                            : std::string_view());
    }
}

std::vector<SheetEdge> chosenEdges(const apps::ParsedOptions& options) {
    std::vector<int> indices;
    for (const std::string& name : options.all("--edge")) {
        indices.push_back(findEdge(name));
        if (indices.back() < 0) throw apps::Failure("no edge is named '" + name + "'");
    }
    if (indices.empty())
        for (int i = 0; i < edgeCount(); ++i)
            indices.push_back(i);
    std::vector<SheetEdge> edges;
    for (const int i : indices)
        edges.push_back({edgeAt(i), std::to_string(i) + "  " + shownName(i)});
    return edges;
}

void writeSheet(const apps::ParsedOptions& options) {
    const std::vector<SheetEdge> edges = chosenEdges(options);
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

int edgesCommand(const apps::ParsedOptions& options) {
    registerMemberClasses();
    if (edgeCount() == 0) throw apps::Failure("there is no edge library");
    if (options.has("--list") && options.has("--sheet"))
        throw apps::UsageError("--list and --sheet are two things");
    if (options.has("--sheet"))
        writeSheet(options);
    else
        printList();
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
