#include "payload/payload.h"

#include <array>
#include <functional>
#include <iomanip>
#include <limits>
#include <sstream>
#include <streambuf>
#include <thread>

#include <gtest/gtest.h>

namespace OHOS::HiviewDFX {
namespace {

template <typename T>
std::string TextOf(const T& content)
{
    std::ostringstream stream;
    stream << content;
    return stream.str();
}

template <typename T>
using Limits = std::numeric_limits<T>;

// This unit links before the payload's, hence is initialised before it.
const std::string g_textAtLoad = TextOf(Payload().Add("early", 1));

TEST(PayloadTest, CanBeWrittenByAnEarlierStaticInitialiser)
{
    EXPECT_EQ(g_textAtLoad, R"({"early":1})");
}

TEST(PayloadTest, WritesEveryKind)
{
    const struct {
        Value value;
        std::string text;
    } cases[] = {
        {Value(int8_t{-5}), "-5"},
        {Value(int16_t{-300}), "-300"},
        {Value(Limits<int32_t>::min()), "-2147483648"},
        {Value(Limits<int64_t>::min()), "-9223372036854775808"},
        {Value(uint8_t{65}), "65"},
        {Value(Limits<uint16_t>::max()), "65535"},
        {Value(Limits<uint32_t>::max()), "4294967295"},
        {Value(Limits<uint64_t>::max()), "18446744073709551615"},
        {Value(0.1F), "0.1"},
        {Value(1e100 / 3), "3.33333e+99"},
        {Value(R"(a"b\c)"), R"("a\"b\\c")"},
        {Value(Payload().Add("x", 1)), R"({"x":1})"},
        {Value(std::vector<int8_t>{-128, 65}), "[-128,65]"},
        {Value(std::vector<int16_t>{-1, 2}), "[-1,2]"},
        {Value(std::vector<int32_t>{-70000}), "[-70000]"},
        {Value(std::vector<int64_t>{Limits<int64_t>::max(), 0}), "[9223372036854775807,0]"},
        {Value(std::vector<uint8_t>{1, 200}), "[1,200]"},
        {Value(std::vector<uint16_t>{65535}), "[65535]"},
        {Value(std::vector<uint32_t>{4000000000, 1}), "[4000000000,1]"},
        {Value(std::vector<uint64_t>{Limits<uint64_t>::max()}), "[18446744073709551615]"},
        {Value(std::vector<float>{0.5F, 1}), "[0.5,1]"},
        {Value(std::vector<double>{1e-9, 123456789}), "[1e-09,1.23457e+08]"},
        {Value(std::vector<std::string>{R"(a"b\c)", ""}), R"(["a"b\c",""])"},
        {Value(std::vector<Payload>{Payload().Add("x", 1), Payload()}), R"([{"x":1},{}])"},
    };
    int kind = 0;
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(static_cast<int>(value.type), kind++);
        EXPECT_EQ(TextOf(value), text);
        EXPECT_EQ(TextOf(Payload().Add("a", value)), std::string(R"({"a":)").append(text).append("}"));
    }
}

TEST(PayloadTest, WritesTheCornersOfAPayload)
{
    const struct {
        Payload payload;
        std::string text;
    } cases[] = {
        {Payload(), "{}"},
        {Payload().Add("a", 1).Add("b", std::string("x")), R"({"a":1,"b":"x"})"},
        {Payload().Add("twice", 1).Add("twice", 2).Add("", 3), R"({"twice":1,"twice":2,"":3})"},
        {Payload().Add(R"(k")", R"(\s)").Add(R"(\)", "plain"), R"({"k\"":"\\s","\\":"plain"})"},
        {Payload().Add("e", std::vector<int>{}).Add("s", std::vector<std::string>{}), R"({"e":[],"s":[]})"},
        {Payload().Add("null", Value()).Add("kind", Value(ValueType::INT32, {})), R"({"null":null,"kind":null})"},
        {Payload().Add("none", Value(ValueType::NONE, 1)).Add("24", Value(static_cast<ValueType>(24), 1)),
         R"({"none":null,"24":null})"},
        {Payload().Add("a", Value(ValueType::INT32, 2.5)).Add("b", Value(ValueType::STRING, 1)), R"({"a":,"b":})"},
        {Payload().Add("a", Value(ValueType::INT8, 1)).Add("b", Value(ValueType::UINT8, int8_t{1})), R"({"a":,"b":})"},
        {Payload().Add("a", Value(ValueType::STRING_ARRAY, 1)).Add("b", Value(ValueType::UINT8_ARRAY, 1)),
         R"({"a":,"b":})"},
        {Payload().Add("a", Payload().Add("b", Payload().Add("c", Payload()))), R"({"a":{"b":{"c":{}}}})"},
    };
    for (const auto& [payload, text] : cases) {
        EXPECT_EQ(TextOf(payload), text);
    }
}

TEST(PayloadTest, FollowsTheFormattingOfItsStreamOutsideOfAPayload)
{
    const struct {
        std::function<void(std::ostream&)> write;
        std::string text;
    } cases[] = {
        {[](std::ostream& out) { out << std::hex << Value(int8_t{-5}) << Value(uint8_t{200}); }, "fffffffbc8"},
        {[](std::ostream& out) {
             out << std::hex << std::vector<signed char>{-5, 65};
         },
         "[fffb,41]"},
        {[](std::ostream& out) { out << std::showpos << std::vector<unsigned char>{200} << Value(5); }, "[200]+5"},
        {[](std::ostream& out) { out << std::setprecision(3) << Value(2.0 / 3) << std::vector<float>{1.23456F}; },
         "0.667[1.23]"},
        {[](std::ostream& out) { out << std::setw(5) << Value("a") << std::setw(6) << Value("b\""); },
         R"(  "a" "b\"")"},
        {[](std::ostream& out) {
             out << std::setw(3) << std::vector<int>{1, 2} << Value(3);
         },
         "  [1,2]3"},
        {[](std::ostream& out) { out << std::hex << Payload().Add("a", 255).Add("b", std::vector<int>{16}) << 16; },
         R"({"a":255,"b":[16]}10)"},
    };
    for (const auto& [write, text] : cases) {
        std::ostringstream stream;
        write(stream);
        EXPECT_EQ(stream.str(), text);
    }
}

// A pipe: takes text, cannot seek.
struct Pipe : std::streambuf {
    int_type overflow(int_type c) override
    {
        text += traits_type::to_char_type(c);
        return c;
    }
    std::string text;
};

TEST(PayloadTest, LeavesAVectorOpenOnAStreamThatCannotSeek)
{
    const Value numbers(std::vector<int>{1, 2});
    const struct {
        std::function<void(std::ostream&)> write;
        std::string text;
        bool fails;
    } cases[] = {
        {[&](std::ostream& out) { out << numbers << "more"; }, "[1,2,", true},
        {[](std::ostream& out) { out << std::vector<unsigned char>{1} << "more"; }, "[1,", true},
        {[](std::ostream& out) { out << Value(std::vector<std::string>{"x"}); }, R"(["x",)", true},
        {[](std::ostream& out) { out << std::vector<int>{} << Value(std::vector<std::string>{}); }, "[][]", false},
        {[&](std::ostream& out) { out << Payload().Add("a", numbers); }, R"({"a":[1,2]})", false},
        {[&](std::ostream& out) { out << std::vector<Payload>{Payload().Add("a", numbers)}; }, R"([{"a":[1,2]},)",
         true},
    };
    for (const auto& [write, text, fails] : cases) {
        Pipe pipe;
        std::ostream stream(&pipe);
        write(stream);
        EXPECT_EQ(pipe.text, text);
        EXPECT_EQ(stream.rdstate(), fails ? std::ios_base::failbit : std::ios_base::goodbit) << text;
    }
}

TEST(PayloadTest, WritesNothingToAFailedStream)
{
    std::ostringstream stream("kept", std::ios_base::ate);
    stream.setstate(std::ios_base::failbit);
    stream << Payload().Add("a", 1) << Value() << Value("x") << std::vector<int>{1};
    stream.clear();
    stream << "!";
    EXPECT_EQ(stream.str(), "kept!");
}

TEST(PayloadTest, WritesFromManyThreadsAtOnce)
{
    const Payload payload =
        Payload().Add("n", std::vector<int>{1, 2}).Add("p", Payload().Add("s", "x\"").Add("d", 0.5));
    std::array<int, 4> equal{};
    std::vector<std::thread> threads;
    threads.reserve(equal.size());
    for (int& count : equal) {
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                count += TextOf(payload) == R"({"n":[1,2],"p":{"s":"x\"","d":0.5}})" ? 1 : 0;
            }
        });
    }
    std::for_each(threads.begin(), threads.end(), [](std::thread& thread) { thread.join(); });
    EXPECT_EQ(equal, (std::array<int, 4>{500, 500, 500, 500}));
}

} // namespace
} // namespace OHOS::HiviewDFX
