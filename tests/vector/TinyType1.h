// Builds Type 1 fonts of a few glyphs, right or wrong, for tests and for the seeds of fuzzing; and
// takes the segments of others apart.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/vector/GlyphLoops.h"
#include "toolkit/Numbers.h"
#include "vector/font/Type1Reader.h"

namespace orvin::test {

/// The way back of the cipher: `lead` in front, then the text.
inline std::string encrypted(const std::string& plain, std::uint16_t key, std::size_t lead) {
    std::string cipher;
    std::uint16_t state = key;
    for (const char c : std::string(lead, 'x') + plain) {
        const int coded = (static_cast<std::uint8_t>(c) ^ (state >> 8)) & 255;
        cipher += static_cast<char>(coded);
        state =
            static_cast<std::uint16_t>((static_cast<unsigned>(coded) + state) * 52845U + 22719U);
    }
    return cipher;
}

inline std::string hex(const std::string& bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto c = static_cast<std::uint8_t>(bytes[i]);
        text += kDigits[c >> 4];
        text += kDigits[c & 15];
        if (i % 32 == 31) text += '\n';
    }
    return text;
}

/// A number of a charstring, in its shortest form.
inline std::string num(int v) {
    const auto c = [](int byte) { return std::string(1, static_cast<char>(byte)); };
    if (v >= -107 && v <= 107) return c(v + 139);
    if (v >= 108 && v <= 1131) return c(247 + (v - 108) / 256) + c((v - 108) % 256);
    if (v <= -108 && v >= -1131) return c(251 + (-v - 108) / 256) + c((-v - 108) % 256);
    const auto u = static_cast<std::uint32_t>(v);
    return c(255) + c(static_cast<int>(u >> 24)) + c(static_cast<int>(u >> 16 & 255)) +
           c(static_cast<int>(u >> 8 & 255)) + c(static_cast<int>(u & 255));
}

/// A charstring from words, as t1disasm writes them: "0 500 hsbw 10 20 rmoveto endchar". A word
/// that is neither a number nor an operator's name is taken as bytes in hexadecimal.
inline std::string charstring(const std::string& words) {
    static const std::map<std::string, std::string> kOperators = {
        {"hstem", "\1"},
        {"vstem", "\3"},
        {"vmoveto", "\4"},
        {"rlineto", "\5"},
        {"hlineto", "\6"},
        {"vlineto", "\7"},
        {"rrcurveto", "\10"},
        {"closepath", "\11"},
        {"callsubr", "\12"},
        {"return", "\13"},
        {"hsbw", "\15"},
        {"endchar", "\16"},
        {"rmoveto", "\25"},
        {"hmoveto", "\26"},
        {"vhcurveto", "\36"},
        {"hvcurveto", "\37"},
        {"vstem3", "\14\1"},
        {"hstem3", "\14\2"},
        {"seac", "\14\6"},
        {"sbw", "\14\7"},
        {"div", "\14\14"},
        {"pop", "\14\21"},
        {"callothersubr", "\14\20"},
        {"setcurrentpoint", "\14\41"},
        {"dotsection", std::string("\14\0", 2)}};
    std::string code;
    for (std::size_t at = 0; at < words.size();) {
        const std::size_t end = std::min(words.find(' ', at), words.size());
        const std::string word = words.substr(at, end - at);
        at = end + 1;
        if (word.empty()) continue;
        int value = 0;
        if (const auto op = kOperators.find(word); op != kOperators.end()) {
            code += op->second;
        } else if (word[0] == '#') {
            for (std::size_t i = 1; i + 1 < word.size(); i += 2)
                code += static_cast<char>(std::stoi(word.substr(i, 2), nullptr, 16));
        } else if (readWhole(word, value)) {
            code += num(value);
        }
    }
    return code;
}

inline std::string pfbSegment(int type, const std::string& bytes) {
    std::string header = {'\x80', static_cast<char>(type)};
    for (unsigned i = 0; i < 4; ++i)
        header += static_cast<char>(bytes.size() >> 8 * i & 255);
    return header + bytes;
}

struct TinyType1 {
    std::string firstLine = "%!PS-AdobeFont-1.0: Tiny 001.001";
    std::string encoding = "/Encoding StandardEncoding def";
    std::string lenIV;                                        // "/lenIV 0 def", say
    std::size_t lead = 4;                                     // bytes in front of each charstring
    std::vector<std::string> subrs;                           // words, by number
    std::vector<std::pair<std::string, std::string>> glyphs;  // name and words
    std::string eexecLead = "";
    int claimedSubrs = -1;
    int claimedGlyphs = -1;

    std::string clearText() const {
        return firstLine + "\n/FontName /Tiny def\n" + encoding + "\ncurrentfile eexec\n";
    }
    std::string privateText() const {
        const auto entry = [this](const std::string& words) {
            const std::string bytes = encrypted(charstring(words), 4330, lead);
            return std::to_string(bytes.size()) + " RD " + bytes;
        };
        const auto count = [](int claimed, std::size_t real) {
            return std::to_string(claimed < 0 ? static_cast<int>(real) : claimed);
        };
        std::string text = "dup /Private 9 dict dup begin\n" + lenIV + "\n";
        if (!subrs.empty()) text += "/Subrs " + count(claimedSubrs, subrs.size()) + " array\n";
        for (std::size_t i = 0; i < subrs.size(); ++i)
            text += "dup " + std::to_string(i) + " " + entry(subrs[i]) + " NP\n";
        text +=
            "ND\n2 index /CharStrings " + count(claimedGlyphs, glyphs.size()) + " dict dup begin\n";
        for (const auto& [name, words] : glyphs)
            text += "/" + name + " " + entry(words) + " ND\n";
        return text + "end\nend\nreadonly put\nmark currentfile closefile\n";
    }
    std::string cipherText() const { return encrypted(privateText(), 55665, 4); }
    static std::string trailer() { return std::string(64, '0') + "\ncleartomark\n"; }

    std::string pfa() const { return clearText() + hex(cipherText()) + "\n" + trailer(); }
    std::string pfb() const {
        return pfbSegment(1, clearText()) + pfbSegment(2, cipherText()) + pfbSegment(1, trailer()) +
               "\x80\x03";
    }
};

inline FontFile parsedType1(const std::string& bytes) {
    return parsedBy<Type1Reader>(FontFile::Kind::kType1, bytes);
}

/// Points as "x,y" with a "~" behind control points; contours divided by " | ".
inline std::string written(const Loops& contours) {
    std::string text;
    for (const auto& points : contours) {
        if (!text.empty()) text += " | ";
        for (std::size_t i = 0; i < points.size(); ++i)
            text += (i == 0 ? "" : " ") + std::to_string(points[i].x) + "," +
                    std::to_string(points[i].y) + (points[i].onCurve != 0 ? "" : "~");
    }
    return text;
}

}  // namespace orvin::test
