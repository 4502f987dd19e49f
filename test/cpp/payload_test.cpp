#include "payload/payload.h"

#include <iomanip>
#include <limits>
#include <sstream>

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
constexpr T MOST = std::numeric_limits<T>::max();
template <typename T>
using List = std::vector<T>;

// This unit links before the payload's, so it is initialised before it.
const std::string g_textAtLoad = TextOf(Payload().Add("early", 1));

// One value of each kind, in the order of their numbers.
TEST(Payload, WritesEveryKind)
{
    const std::pair<Value, std::string> cases[] = {
        {Value(int8_t{-5}), "-5"},
        {Value(int16_t{-300}), "-300"},
        {Value(-MOST<int32_t> - 1), "-2147483648"},
        {Value(-MOST<int64_t> - 1), "-9223372036854775808"},
        {Value(uint8_t{65}), "65"},
        {Value(MOST<uint16_t>), "65535"},
        {Value(MOST<uint32_t>), "4294967295"},
        {Value(MOST<uint64_t>), "18446744073709551615"},
        {Value(0.1F), "0.1"},
        {Value(1e100 / 3), "3.33333e+99"},
        {Value(R"(a"b\c)"), R"("a\"b\\c")"},
        {Value(Payload().Add("x", 1)), R"({"x":1})"},
        {Value(List<int8_t>{-128, 65}), "[-128,65]"},
        {Value(List<int16_t>{-1, 2}), "[-1,2]"},
        {Value(List<int32_t>{-70000}), "[-70000]"},
        {Value(List<int64_t>{MOST<int64_t>, 0}), "[9223372036854775807,0]"},
        {Value(List<uint8_t>{1, 200}), "[1,200]"},
        {Value(List<uint16_t>{65535}), "[65535]"},
        {Value(List<uint32_t>{4000000000, 1}), "[4000000000,1]"},
        {Value(List<uint64_t>{MOST<uint64_t>}), "[18446744073709551615]"},
        {Value(List<float>{0.5F, 1}), "[0.5,1]"},
        {Value(List<double>{1e-9, 123456789}), "[1e-09,1.23457e+08]"},
        {Value(List<std::string>{R"(a"b\c)", ""}), R"(["a"b\c",""])"},
        {Value(List<Payload>{Payload().Add("x", 1), Payload()}), R"([{"x":1},{}])"},
    };
    int kind = 0;
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(static_cast<int>(value.type), kind++) << text;
        EXPECT_EQ(TextOf(value), text);
        EXPECT_EQ(TextOf(Payload().Add("a", value)), R"({"a":)" + text + "}");
    }
}

TEST(Payload, WritesNullOrNothingForContentThatDoesNotFit)
{
    const std::pair<Value, std::string> cases[] = {
        // No kind or no content.
        {Value(), "null"},
        {Value(ValueType::INT32, {}), "null"},
        {Value(ValueType::NONE, 1), "null"},
        {Value(static_cast<ValueType>(24), 1), "null"},
        // Content of another kind.
        {Value(ValueType::INT32, 2.5), ""},
        {Value(ValueType::INT8, 1), ""},
        {Value(ValueType::UINT8, int8_t{1}), ""},
        {Value(ValueType::STRING, 1), ""},
        {Value(ValueType::STRING_ARRAY, 1), ""},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(TextOf(value), text);
        EXPECT_EQ(TextOf(Payload().Add("a", value)), R"({"a":)" + text + "}");
    }
}

TEST(Payload, KeepsOrderAndEscapesKeys)
{
    const std::pair<Payload, std::string> cases[] = {
        {Payload(), "{}"},
        {Payload().Add("twice", 1).Add("twice", "x").Add("", 3), R"({"twice":1,"twice":"x","":3})"},
        {Payload().Add(R"(k")", R"(\s)").Add(R"(\)", "plain"), R"({"k\"":"\\s","\\":"plain"})"},
        {Payload().Add("e", List<int>{}).Add("s", List<std::string>{}), R"({"e":[],"s":[]})"},
        {Payload().Add("a", Payload().Add("b", Payload())), R"({"a":{"b":{}}})"},
    };
    for (const auto& [payload, text] : cases) {
        EXPECT_EQ(TextOf(payload), text);
    }
    EXPECT_EQ(g_textAtLoad, R"({"early":1})");
}

// A buffer that cannot seek.
struct Pipe : std::stringbuf {
    pos_type seekoff(off_type, std::ios::seekdir, std::ios::openmode) override
    {
        return -1;
    }
};

// `onPipe` is what a pipe gets, where writing fails at the end of a vector.
template <typename... Parts>
void ExpectWritten(const std::string& text, const std::string& onPipe, const Parts&... parts)
{
    std::ostringstream stream;
    (stream << ... << parts);
    EXPECT_EQ(stream.str(), text);
    Pipe pipe;
    std::ostream pipeStream(&pipe);
    (pipeStream << ... << parts);
    EXPECT_EQ(pipe.str(), onPipe);
    EXPECT_EQ(pipeStream.fail(), onPipe != text);
}

TEST(Payload, FollowsItsStreamOutsideOfAPayload)
{
    const auto& hex = std::hex;
    const Payload list = Payload().Add("a", List<int>{255});
    ExpectWritten("fffffffbc8", "fffffffbc8", hex, Value(int8_t{-5}), Value(uint8_t{200}));
    ExpectWritten("[fffb,41][c8]", "[fffb,41,", hex, List<signed char>{-5, 65}, List<unsigned char>{200});
    ExpectWritten("0.1[0.1]", "0.1[0.1,", std::setprecision(1), Value(.12), List<float>{.12F});
    ExpectWritten(R"(  "a" "b\"")", R"(  "a" "b\"")", std::setw(5), Value("a"), std::setw(6), Value("b\""));
    ExpectWritten("  [1,2]3", "  [1,2,", std::setw(3), Value(List<int>{1, 2}), Value(3));
    ExpectWritten(R"([][]["x"])", R"([][]["x",)", List<int>{}, Value(List<std::string>{}),
                  Value(List<std::string>{"x"}));
    ExpectWritten(R"({"a":[255]}10[{"a":[255]}])", R"({"a":[255]}10[{"a":[255]},)", hex, list, 16, List<Payload>{list});
}

} // namespace

} // namespace OHOS::HiviewDFX
