// Finding fonts where the system keeps them.
#pragma once

#include <filesystem>
#include <string_view>

namespace orvin {

/// The installed font file of that name ("DejaVuSans.ttf", in any case); empty for none.
std::filesystem::path findInstalledFont(std::string_view fileName);

/// A plain, readable font for a text whose font nobody chose: one of a few well-known ones, else
/// the first by name; empty where no font is installed.
std::filesystem::path findDefaultFont();

}  // namespace orvin
