#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "scene/FileStream.h"
#include "scene/HandleStream.h"
#include "scene/MemoryStream.h"
#include "scene/PresetStream.h"
#include "tests/scene/Probe.h"
#include "toolkit/platform/Platform.h"

namespace orvin {
namespace {

std::vector<std::string> tokensOf(SceneStream& stream) {
    std::vector<std::string> tokens;
    std::string_view token;
    while (stream.nextToken(token) == kSuccess)
        tokens.emplace_back(token);
    return tokens;
}

/// The four ways to read one text, each checked against the same expectation.
class Stores {
  public:
    explicit Stores(const std::string& text) : text_(text) {
        file_ = platform::openTemporaryFile();
        std::fwrite(text.data(), 1, text.size(), file_);
        std::rewind(file_);
        handle_ = memory_.allocate(text.size());
        std::copy(text.begin(), text.end(), static_cast<char*>(*handle_));
    }
    ~Stores() { std::fclose(file_); }

    void forEach(const std::function<void(SceneStream&, const char*)>& check) {
        MemoryStream memory(nullptr, text_);
        check(memory, "memory");
        FileStream file(nullptr, file_, nullptr);
        check(file, "file");
        HandleStream handle(memory_, nullptr);
        ASSERT_EQ(handle.openRead(handle_, 0), kSuccess);
        check(handle, "handle");
    }

  private:
    std::string text_;
    std::FILE* file_;
    PlainHandleMemory memory_;
    Handle handle_;
};

TEST(Tokens, AreSplitAlikeInEveryStore) {
    struct Case {
        const char* caption;
        std::string text;
        std::vector<std::string> tokens;
    };
    const std::string longWord(6000, 'w');
    const Case cases[] = {
        {"white space", " a\tb\r\nc \n", {"a", "b", "c"}},
        {"no end of line", "a b", {"a", "b"}},
        {"comments", "#one two\na # b c\r d#e #\n", {"a", "d#e"}},
        {"comment at the end", "a #b", {"a"}},
        {"quotes", "\"a b\"\"c\" d\"e \"\"", {"a b", "c", "d\"e", ""}},
        {"hash in quotes", "\"# a\"", {"# a"}},
        {"line end in quotes", "x \"a\nb\" c", {"x", "a\nb", "c"}},
        {"escaped quote", R"("a\"b" "\"" c)", {"a\"b", "\"", "c"}},
        {"other backslashes",
         R"("C:\dir\n.tga" "a\\"b" \q)",
         {R"(C:\dir\n.tga)", R"(a\"b)", "\\q"}},
        {"unclosed quote", "a \"b c\n", {"a", "b c\n"}},
        {"lone quote at the end", "a \"", {"a", ""}},
        {"backslash at the end of an unclosed quote", "\"a\\", {"a\\"}},
        {"NUL is a byte like others", std::string("a\0b c", 5), {std::string("a\0b", 3), "c"}},
        {"nothing", "", {}},
    };
    for (const Case& c : cases)
        Stores(c.text).forEach([&](SceneStream& stream, const char* store) {
            SCOPED_TRACE(std::string(c.caption) + " in " + store);
            EXPECT_EQ(tokensOf(stream), c.tokens);
            EXPECT_FALSE(stream.hasMore());
            EXPECT_EQ(stream.position(), static_cast<std::int64_t>(c.text.size()) - 1);
        });
}

TEST(Tokens, SurviveEveryBlockBoundary) {
    // A pattern with every construct, shifted byte by byte over the ends of file blocks.
    const std::string pattern = "word \"q\\\"x\\y z\" #com ment\n-1.5 ";
    const std::vector<std::string> expected = {"word", "q\"x\\y z", "-1.5"};
    for (const std::size_t block : {4095U, 8190U})
        for (std::size_t shift = 0; shift <= pattern.size(); ++shift) {
            const std::string text = std::string(block - shift, ' ') + pattern;
            Stores(text).forEach([&](SceneStream& stream, const char* store) {
                if (std::string_view(store) == "handle") return;  // its line is too long: see below
                ASSERT_EQ(tokensOf(stream), expected) << store << " at " << block << "-" << shift;
            });
        }
}

TEST(Tokens, LongOnesAreCutAndTheRestIsDropped) {
    for (const std::string quote : {"", "\""}) {
        const std::string text = quote + std::string(200000, 'w') + quote + " next";
        std::FILE* const file = platform::openTemporaryFile();
        std::fwrite(text.data(), 1, text.size(), file);
        std::rewind(file);
        FileStream stream(nullptr, file, nullptr, FileStream::Files::kOwn);
        EXPECT_EQ(tokensOf(stream), (std::vector<std::string>{std::string(4095, 'w'), "next"}));
    }
    const std::string text = std::string(300, 'n') + " " + std::string("a\0b", 3);
    MemoryStream stream(nullptr, text);
    std::string name;
    EXPECT_EQ(stream.nextToken(name), kSuccess);
    EXPECT_EQ(name, std::string(255, 'n'));
    EXPECT_EQ(stream.nextToken(name), kSuccess);
    EXPECT_EQ(name, "a");
    EXPECT_EQ(stream.nextToken(name), kEndOfInput);
    EXPECT_EQ(stream.readText(name), kFailure);
}

TEST(Tokens, PositionIsTheLastByteConsumed) {
    MemoryStream stream(nullptr, "ab \"cd\" ef");
    std::string_view token;
    std::vector<std::int64_t> positions{stream.position()};
    while (stream.nextToken(token) == kSuccess)
        positions.push_back(stream.position());
    // Before all; the blank behind ab; the closing quote; the last byte.
    EXPECT_EQ(positions, (std::vector<std::int64_t>{-1, 2, 6, 9}));
}

TEST(Values, AreReadOrRefused) {
    MemoryStream stream(nullptr, "on off 12 -3 1e3 x 1 2 y 1e300 0.25 99999999999");
    int whole = -1;
    for (const int expected : {1, 0, 12, -3}) {
        EXPECT_EQ(stream.readInt(whole), kSuccess);
        EXPECT_EQ(whole, expected);
    }
    double number = 0.0;
    EXPECT_EQ(stream.readDouble(number), kSuccess);
    EXPECT_EQ(number, 1000.0);
    EXPECT_EQ(stream.readDouble(number), kFailure);
    Vec3 vector;
    EXPECT_EQ(stream.readVector3(vector), kFailure);  // ends at the y
    float channels[2];
    EXPECT_EQ(stream.readColor(channels), kSuccess);
    EXPECT_TRUE(std::isinf(channels[0]));
    EXPECT_EQ(channels[1], 0.25F);
    EXPECT_EQ(stream.readInt(whole), kFailure);
    EXPECT_EQ(stream.readInt(whole), kFailure);  // the end
}

TEST(RawBytes, FollowOneDelimiter) {
    const std::string bytes("\n \0\"#x", 6);
    for (const std::string key : {"Pixels\n", "\"Pixels\"\n"}) {
        Stores(key + bytes + "tail").forEach([&](SceneStream& stream, const char* store) {
            SCOPED_TRACE(store);
            std::string_view token;
            ASSERT_EQ(stream.nextToken(token), kSuccess);
            std::vector<std::uint8_t> read(4);
            ASSERT_EQ(stream.readBytes(read), kSuccess);
            EXPECT_EQ(std::string(read.begin(), read.end()), bytes.substr(0, 4));
            read.resize(2);
            ASSERT_EQ(stream.readBytes(read), kSuccess);
            EXPECT_EQ(std::string(read.begin(), read.end()), bytes.substr(4));
            ASSERT_EQ(stream.nextToken(token), kSuccess);
            EXPECT_EQ(token, "tail");
            EXPECT_EQ(stream.readBytes(read),
                      std::string_view(store) == "handle" ? kEndOfInput : kFailure);
        });
    }
}

// ---- writing

TEST(Lines, AreIndentedByTheStackAndEndOnce) {
    Probe root;
    MemoryStream stream(&root);
    stream.line().text("a ").number(1.5).character(' ').whole(-7).text("\n");
    EXPECT_EQ(stream.putLine(), kSuccess);
    stream.push(root);
    EXPECT_EQ(stream.putText("t", "x\"y"), kSuccess);
    const std::uint8_t bytes[] = {0, 255, 18};
    stream.line().hex(bytes);
    EXPECT_EQ(stream.putLine(), kSuccess);
    EXPECT_EQ(stream.text(), " a 1.500000 -7\n  t \"x\\\"y\"\n  00ff12\n");
}

TEST(Lines, ThatAreTooLongFailTheStream) {
    Probe root;
    MemoryStream stream(&root);
    EXPECT_EQ(stream.putWord("k", std::string(4092, 'x')), kSuccess);  // 1 + 2 + 4092 + LF
    EXPECT_FALSE(stream.writeFailed());
    EXPECT_EQ(stream.putWord("k", std::string(4093, 'x')), kFailure);
    EXPECT_TRUE(stream.writeFailed());
    EXPECT_EQ(stream.text().size(), 4096U);
}

TEST(Names, AreEscapedWithinTheirLimit) {
    EXPECT_EQ(quoteEscape("a\"b\\c"), "a\\\"b\\c");
    EXPECT_EQ(quoteEscape(std::string(300, 'n')), std::string(255, 'n'));
    // The quote at 253 and 254 fits, one that would need 255 ends the copy.
    EXPECT_EQ(quoteEscape(std::string(252, 'n') + "\"z"), std::string(252, 'n') + "\\\"z");
    EXPECT_EQ(quoteEscape(std::string(253, 'n') + "\"z"), std::string(253, 'n') + "\\\"");
    EXPECT_EQ(quoteEscape(std::string(254, 'n') + "\"z"), std::string(254, 'n'));
}

TEST(Texts, ComeBackFromEveryStoreAsTheyWere) {
    const std::string texts[] = {
        "",          "plain",           "two words",    "\"",       "a\"b\"",
        "line\nend", "C:\\x\\y.tga",    "ends\\",       "#",        "\\\"",
        "\\\\\"\"",  "**EndOfStream**", "tab\tand\rcr", "a\\b\"c\\"};
    MemoryStream writer(nullptr);
    for (const std::string& text : texts)
        ASSERT_EQ(writer.putText("t", text), kSuccess);
    Stores(writer.text()).forEach([&](SceneStream& stream, const char* store) {
        for (const std::string& text : texts) {
            std::string_view token;
            ASSERT_EQ(stream.nextToken(token), kSuccess) << store;
            ASSERT_EQ(stream.nextToken(token), kSuccess) << store;
            EXPECT_EQ(token, text) << store;
        }
    });
    // What can't be bare and ends in a backslash gains a blank: the one text that changes.
    MemoryStream odd(nullptr);
    odd.putText("t", "my folder\\");
    EXPECT_EQ(odd.text(), "t \"my folder\\ \"\n");
}

TEST(Blocks, AFailedBodyHasNoEnd) {
    Probe probe;
    probe.bodyResult = kFailure;
    MemoryStream stream(nullptr);
    EXPECT_EQ(stream.writeObject(probe), kFailure);
    EXPECT_EQ(stream.text(), "begin Probe\n key 0\n");
    EXPECT_EQ(stream.depth(), 0U);
}

TEST(FileStream, ReportsAFullDisk) {
    std::FILE* const full = std::fopen("/dev/full", "wb");
    if (full == nullptr) GTEST_SKIP() << "no such device here";
    Probe probe;
    FileStream stream(nullptr, nullptr, full, FileStream::Files::kOwn);
    stream.writeObject(probe);
    EXPECT_EQ(stream.close(), kFailure);
}

// ---- handles

TEST(HandleStream, GrowsInStepsAndIsTrimmed) {
    PlainHandleMemory memory;
    const Handle handle = memory.allocate(110);
    Probe probe;
    {
        HandleStream stream(memory, &probe);
        ASSERT_EQ(stream.openWrite(handle, 10), kSuccess);
        std::vector<std::size_t> sizes;
        for (int i = 0; i < 30; ++i) {
            ASSERT_EQ(stream.putInt("key", 1000 + i), kSuccess);  // 10 bytes
            sizes.push_back(memory.size(handle));
        }
        EXPECT_EQ(sizes[9], 110U);
        EXPECT_EQ(sizes[10], 210U);
        EXPECT_EQ(sizes[29], 310U);
        EXPECT_EQ(memory.lockCount(handle), 1);
        ASSERT_EQ(stream.finish(), kSuccess);
        EXPECT_EQ(stream.used(), 10 + 30 * 10 + kEndOfStream.size() + 1);
        EXPECT_EQ(memory.size(handle), stream.used() + 1);
    }
    EXPECT_EQ(memory.lockCount(handle), 0);

    Probe reader;
    HandleStream stream(memory, &reader);
    ASSERT_EQ(stream.openRead(handle, 10), kSuccess);
    while (stream.hasMore() && stream.runTopCommand() == kSuccess) {
    }
    EXPECT_EQ(reader.values, 30);
    EXPECT_EQ(reader.value, 1029);
    EXPECT_FALSE(stream.hasMore());  // the NUL behind the mark isn't read
    EXPECT_EQ(stream.openRead(handle, memory.size(handle) + 1), kFailure);
}

TEST(HandleStream, ARefusedGrowthIsLackOfMemory) {
    PlainHandleMemory memory;
    const Handle handle = memory.allocate(16);
    memory.setLargestBlock(20);
    {
        HandleStream stream(memory, nullptr);
        ASSERT_EQ(stream.openWrite(handle, 0), kSuccess);
        EXPECT_THROW(stream.putText("key", "much too long for it"), std::bad_alloc);
        EXPECT_TRUE(stream.writeFailed());
    }
    EXPECT_EQ(memory.lockCount(handle), 0);
}

TEST(HandleStream, CutsALineAt4096Bytes) {
    const std::string text = std::string(4090, ' ') + "abcdefghij lost\n#" +
                             std::string(5000, 'c') + "\n\"" + std::string(5000, 'q') +
                             "\" also lost\nnext";
    PlainHandleMemory memory;
    const Handle handle = memory.allocate(text.size());
    std::copy(text.begin(), text.end(), static_cast<char*>(*handle));
    HandleStream stream(memory, nullptr);
    ASSERT_EQ(stream.openRead(handle, 0), kSuccess);
    EXPECT_EQ(tokensOf(stream),
              (std::vector<std::string>{"abcdef", std::string(4095, 'q'), "next"}));
}

// ---- presets

TEST(PresetStream, ReadsStringByString) {
    const char* const table[] = {" begin Probe", "key 5 # note", "\"open", "\"", "",
                                 "never",        nullptr};
    PresetStream stream(nullptr, table);
    std::string_view token;
    ASSERT_EQ(stream.nextToken(token), kSuccess);
    EXPECT_EQ(stream.position(), 6);
    EXPECT_EQ(tokensOf(stream), (std::vector<std::string>{"Probe", "key", "5", "open", ""}));
    EXPECT_FALSE(stream.hasMore());
    std::uint8_t byte = 0;
    EXPECT_EQ(stream.readBytes({&byte, 1}), kFailure);
}

TEST(PresetStream, WritesSourceText) {
    Probe probe;
    PresetStream stream(&probe);
    testing::internal::CaptureStdout();
    stream.putText("name", "a\"b");
    stream.line().text("one\ntwo");
    stream.putLine();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\" name \\\"a\\\\\\\"b\\\"\",\n\" one\",\n");
    testing::internal::CaptureStderr();
    stream.line().text("aside\n");
    EXPECT_EQ(stream.putAuxLine(), kSuccess);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "aside\n");
}

}  // namespace
}  // namespace orvin
