#include "store/numbered_store.hpp"

#include <gtest/gtest.h>

#include "core/base64.hpp"
#include "core/faults/guarded_buffer.hpp"
#include "store/exports.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Lines = std::vector<std::string>;

class NumberedStore : public testing::Test {
  protected:
    NumberedStore() { std::filesystem::remove("/home/root/system.log"); }

    StandIn program{"qvplugin"};
};

/// What qvreaddb gives for a buffer of that size, in which nothing else may change.
struct Read {
    int status;
    std::string text; ///< "untouched" for a buffer that is just that

    bool operator==(const Read&) const = default;
};

void PrintTo(const Read& read, std::ostream* stream) {
    *stream << read.status << ' ' << read.text.size() << ' ' << read.text.substr(0, 80);
}

Read read(unsigned key, unsigned size) {
    GuardedBuffer buffer(size);
    const std::string before = buffer.bytes();
    const int status = qvreaddb(key, buffer.data(), size);
    EXPECT_TRUE(buffer.guards_are_whole());
    if (buffer.bytes() == before) return {status, "untouched"};
    const std::string text = buffer.data();
    EXPECT_EQ(buffer.bytes(), text + '\0' + before.substr(text.size() + 1));
    return {status, text};
}

const Read nothing{-2, "untouched"};
const Read no_base64{-1, "untouched"};

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

} // namespace

TEST_F(NumberedStore, ReadsWhatTheProgramPrints) {
    program.prints("eyd2JzonMSd9\n");
    EXPECT_EQ(read(87, 10240), (Read{0, "{'v':'1'}"}));
    EXPECT_EQ(recorded_command_details(), (std::vector<RecordedCommand>{{"qvplugin 0 87", true}}));
    EXPECT_EQ(program.calls(), (StandIn::Calls{{"0", "87"}}));
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(NumberedStore, TextMustBeShorterThanTheBuffer) {
    const std::string fits(10239, 'x');
    program.prints({base64::encode(fits), base64::encode(fits + "x")});
    EXPECT_EQ(read(87, 10240), (Read{0, fits}));
    EXPECT_EQ(read(87, 10240), nothing);
    program.prints("YWJj");
    EXPECT_EQ(read(87, 4), (Read{0, "abc"}));
    EXPECT_EQ(read(87, 3), nothing);
    EXPECT_EQ(read(87, 0), nothing);
    EXPECT_EQ(qvreaddb(87, nullptr, 0), -2);
    EXPECT_EQ(qvreaddb(87, nullptr, 100), -2);
}

TEST_F(NumberedStore, NothingPrintedIsNothingStored) {
    program.exits_with(1);
    EXPECT_EQ(read(87, 100), nothing);
    program.prints("\n"); // the empty value, of a program that ends its lines
    EXPECT_EQ(read(87, 100), (Read{0, ""}));
    program.prints("").prints_errors("YWJj\n");
    capture_stderr([] { EXPECT_EQ(read(87, 100), nothing); });
}

TEST_F(NumberedStore, WithoutTheProgramThereIsNothing) {
    const ScriptedOs system;
    EXPECT_EQ(read(87, 100), nothing);
    EXPECT_EQ(system.record, Lines{"capture 102400 qvplugin 0 87"});
}

TEST_F(NumberedStore, OutputThatIsNoBase64IsRefusedByItsLengthOnly) {
    for (const char* const text :
         {"a", "ab", "YWJ", "YWJjZ", "YWJj\nYWJj\n", " YWJj", "{'a':'b'}", "\xff\xfe\xfd"}) {
        program.prints(text);
        EXPECT_EQ(read(87, 100), no_base64) << text;
    }
    // Deliberate: characters outside the alphabet count as zero and are not noticed.
    program.prints("????");
    EXPECT_EQ(read(87, 100), (Read{0, ""}));
    program.prints("YWJj\r\n\r\n");
    EXPECT_EQ(read(87, 100), (Read{0, "abc"}));
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(NumberedStore, TextAndOutputEndAtANul) {
    program.prints(base64::encode(std::string("ab\0cd", 5)));
    EXPECT_EQ(read(87, 4), (Read{0, "ab"})); // the length that counts is that of the text
    program.runs("printf 'YWJj\\0ZGVm'");
    EXPECT_EQ(read(87, 100), (Read{0, "abc"}));
    program.runs("printf '\\0YWJj'");
    EXPECT_EQ(read(87, 100), nothing);
}

TEST_F(NumberedStore, OfMuchOutputTheFirst102400BytesCount) {
    program.prints(repeated("YWJj", 51'200)); // 204,800 bytes
    EXPECT_EQ(read(87, 102'400), (Read{0, repeated("abc", 25'600)}));
    EXPECT_EQ(read(87, 76'801), (Read{0, repeated("abc", 25'600)}));
    EXPECT_EQ(read(87, 76'800), nothing);
    EXPECT_EQ(read(87, 10'240), nothing);
}

TEST_F(NumberedStore, EveryByteComesThrough) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
    program.prints(base64::encode(bytes));
    EXPECT_EQ(read(87, 1000), (Read{0, bytes}));
    EXPECT_EQ(qvwritedb(87, bytes.c_str()), 0);
    EXPECT_EQ(program.calls().back(), (StandIn::Arguments{"1", "87", base64::encode(bytes)}));
}

TEST_F(NumberedStore, KeysAreDecimalNumbers) {
    for (const auto& [key, word] : {std::pair(0U, "0"), {23U, "23"}, {2147483647U, "2147483647"}}) {
        program.forget_calls();
        EXPECT_EQ(read(key, 10), nothing);
        EXPECT_EQ(qvwritedb(key, "a"), 0);
        EXPECT_EQ(program.calls(), (StandIn::Calls{{"0", word}, {"1", word, "YQ=="}}));
    }
    // Deliberate: a key above is written as a negative number.
    program.forget_calls();
    EXPECT_EQ(read(4294967295U, 10), nothing);
    EXPECT_EQ(program.calls(), (StandIn::Calls{{"0", "-1"}}));
}

TEST_F(NumberedStore, WritesTheEncodedText) {
    EXPECT_EQ(qvwritedb(90, "hdxcamera=on"), 0);
    EXPECT_EQ(qvwritedb(90, ""), 0);
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{{"qvplugin 1 90 aGR4Y2FtZXJhPW9u", false},
                                            {"qvplugin 1 90 ", false}}));
    EXPECT_EQ(program.calls(), (StandIn::Calls{{"1", "90", "aGR4Y2FtZXJhPW9u"}, {"1", "90"}}));
}

TEST_F(NumberedStore, WritingTellsOnlyWhatNeverReachedTheProgram) {
    program.exits_with(3);
    EXPECT_EQ(qvwritedb(90, "a"), 0);
    forget_commands();
    EXPECT_EQ(qvwritedb(90, nullptr), -2);
    EXPECT_EQ(recorded_commands(), Lines{});
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(NumberedStore, TextsAsLongAsACommandLineHoldsAreWritten) {
    for (const std::size_t size : {10'239UL, 10'240UL, 76'000UL, 76'782UL, 76'788UL}) {
        program.forget_calls();
        const std::string value(size, 'v');
        EXPECT_EQ(qvwritedb(90, value.c_str()), 0) << size;
        ASSERT_EQ(program.calls().size(), 1U) << size;
        EXPECT_TRUE(program.calls().front().at(2) == base64::encode(value)) << size;
    }
    forget_commands();
    EXPECT_EQ(qvwritedb(90, std::string(76'789, 'v').c_str()), -1);
    EXPECT_EQ(qvwritedb(90, std::string(100'000, 'v').c_str()), -1);
    EXPECT_EQ(recorded_commands(), Lines{});
    EXPECT_EQ(log_lines(), (Lines{"[ERROR] @qvwritedb value of 90 too long: 76789 bytes",
                                  "[ERROR] @qvwritedb value of 90 too long: 100000 bytes"}));
}

TEST_F(NumberedStore, InsideTheLibraryNoValueIsTheEmptyText) {
    program.prints({"YWJj", "", "ab", "\n"});
    EXPECT_EQ(store::numbered_text(23, 1024), "abc");
    EXPECT_EQ(store::numbered_text(23, 1024), "");
    EXPECT_EQ(store::numbered_text(23, 1024), "");
    EXPECT_EQ(store::numbered_text(23, 1024), "");
    std::string text = "kept";
    EXPECT_EQ(store::read_numbered(23, 0, text), store::ReadOutcome::none_or_too_long);
    EXPECT_EQ(text, "kept");
}

} // namespace qvtc::test
