#include "common/StrokeFont.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace orvin::apps {

namespace {

// Points are two hexadecimal digits, x and y; a blank divides strokes. The baseline is at y 3,
// small letters are 5 high, capitals 8, and y 0 is where descenders end.
struct Row {
    char character;
    std::string_view strokes;
};
constexpr Row kFont[] = {
    {'A', "033B63 1656"},
    {'B', "030B4B5A584707 4756544303"},
    {'C', "6A4B2B0905234364"},
    {'D', "030B3B5A6866543303"},
    {'E', "5B0B0353 0747"},
    {'F', "5B0B03 0747"},
    {'G', "6A4B2B09052343646737"},
    {'H', "030B 636B 0767"},
    {'I', "030B"},
    {'J', "4B45331305"},
    {'K', "030B 5B07 2953"},
    {'L', "0B0343"},
    {'M', "030B356B63"},
    {'N', "030B636B"},
    {'O', "2B0905234365694B2B"},
    {'P', "030B4B5A584707"},
    {'Q', "2B0905234365694B2B 4563"},
    {'R', "030B4B5A584707 3753"},
    {'S', "5A4B1B0A0817475654431304"},
    {'T', "0B6B 333B"},
    {'U', "0B052343656B"},
    {'V', "0B336B"},
    {'W', "0B234A638B"},
    {'X', "036B 0B63"},
    {'Y', "0B376B 3733"},
    {'Z', "0B6B0363"},
    {'a', "4843 4738180704133344"},
    {'b', "0B03 0718384744331304"},
    {'c', "4738180704133344"},
    {'d', "4B43 4738180704133344"},
    {'e', "06464738180704133344"},
    {'f', "3B2B1A13 0838"},
    {'g', "4841301001 4738180704133344"},
    {'h', "0B03 0718384743"},
    {'i', "0803 0B"},
    {'j', "181100 1B"},
    {'k', "0B03 4805 1643"},
    {'l', "0B0413"},
    {'m', "0803 0718283733 3748586763"},
    {'n', "0803 0718384743"},
    {'o', "180704133344473818"},
    {'p', "0800 0718384744331304"},
    {'q', "4840 4738180704133344"},
    {'r', "0803 062838"},
    {'s', "47381807163544331304"},
    {'t', "1A142333 0838"},
    {'u', "0804133344 4843"},
    {'v', "082348"},
    {'w', "0813375368"},
    {'x', "0843 0348"},
    {'y', "0823 4810"},
    {'z', "08480343"},
    {'0', "2B0905233355593B2B"},
    {'1', "092B23"},
    {'2', "092B3B59580353"},
    {'3', "0A1B4B5A584727 475654431304"},
    {'4', "434B0555"},
    {'5', "5B0B08485754431304"},
    {'6', "4B2B090513435456471706"},
    {'7', "0B5B23"},
    {'8', "17080A1B4B5A58471706041343545647"},
    {'9', "133355594B1B0A08174758"},
    {',', "1401"},
    {'.', "03"},
    {'&', "63191A2B3B4A490604133366"},
    {'+', "2428 0646"},
    {'-', "0636"},
};
constexpr std::string_view kBox = "030B4B4303";
constexpr double kBaseline = 3.0;
constexpr double kGap = 2.2;  // between glyphs
constexpr double kBlank = 4.5;

double digit(char c) {
    return c <= '9' ? c - '0' : c - 'A' + 10;
}

}  // namespace

StrokeGlyph strokeGlyph(char character) {
    StrokeGlyph glyph;
    if (character == ' ') {
        glyph.advance = kBlank;
        return glyph;
    }
    const auto* const row = std::find_if(std::begin(kFont), std::end(kFont),
                                         [=](const Row& r) { return r.character == character; });
    const std::string_view text = row != std::end(kFont) ? row->strokes : kBox;
    glyph.strokes.emplace_back();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ' ') {
            glyph.strokes.emplace_back();
            continue;
        }
        const Vec2 p{digit(text[i]), digit(text[i + 1]) - kBaseline};
        glyph.strokes.back().push_back(p);
        glyph.advance = std::max(glyph.advance, p.x);
        ++i;
    }
    glyph.advance += kGap;
    return glyph;
}

}  // namespace orvin::apps
