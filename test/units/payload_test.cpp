#include "payload/payload.h"

#include <cstdint>
#include <iomanip>
#include <sstream>

#include <gtest/gtest.h>

namespace OHOS::HiviewDFX {

namespace {

// What a new stream shows of the parts, written one after the other.
template <typename... Parts>
std::string TextOf(const Parts&... parts)
{
    std::ostringstream stream;
    (stream << ... << parts);
    return stream.str();
}

template <typename T>
using List = std::vector<T>;

// This unit links before the payload's, so it is initialised before it.
const std::string g_textAtLoad = TextOf(Payload().Add("early", 1));

// One value of each kind.
TEST(Payload, WritesEveryKind)
{
    const std::pair<Value, std::string> cases[] = {
        {Value(int8_t{-5}), "-5"},
        {Value(int16_t{-300}), "-300"},
        {Value(INT32_MIN), "-2147483648"},
        {Value(INT64_MIN), "-9223372036854775808"},
        {Value(uint8_t{65}), "65"},
        {Value(uint16_t{65535}), "65535"},
        {Value(UINT32_MAX), "4294967295"},
        {Value(UINT64_MAX), "18446744073709551615"},
        {Value(0.1F), "0.1"},
        {Value(1e100 / 3), "3.33333e+99"},
        {Value(R"(a"b\c)"), R"("a\"b\\c")"},
        {Value(Payload().Add("x", 1)), R"({"x":1})"},
        {Value(List<int8_t>{-128, 65}), "[-128,65]"},
        {Value(List<int16_t>{-1, 2}), "[-1,2]"},
        {Value(List<int32_t>{-70000}), "[-70000]"},
        {Value(List<int64_t>{INT64_MAX, 0}), "[9223372036854775807,0]"},
        {Value(List<uint8_t>{1, 200}), "[1,200]"},
        {Value(List<uint16_t>{65535}), "[65535]"},
        {Value(List<uint32_t>{4000000000, 1}), "[4000000000,1]"},
        {Value(List<uint64_t>{UINT64_MAX}), "[18446744073709551615]"},
        {Value(List<float>{0.5F, 1}), "[0.5,1]"},
        {Value(List<double>{1e-9, 123456789}), "[1e-09,1.23457e+08]"},
        {Value(List<std::string>{R"(a"b\c)", ""}), R"(["a"b\c",""])"},
        {Value(List<Payload>{Payload().Add("x", 1), Payload()}), R"([{"x":1},{}])"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(TextOf(value), text);
        EXPECT_EQ(TextOf(Payload().Add("a", value)), R"({"a":)" + text + "}");
    }
}

TEST(Payload, WritesPartsOneAfterTheOther)
{
    const auto& hex = std::hex;
    const Payload list = Payload().Add("a", List<int>{255});
    EXPECT_EQ(g_textAtLoad, R"({"early":1})");
    EXPECT_EQ(TextOf(Payload().Add("twice", 1).Add("twice", "x").Add("", 3)), R"({"twice":1,"twice":"x","":3})");
    EXPECT_EQ(TextOf(Payload().Add(R"(k")", R"(\s)").Add(R"(\)", "plain")), R"({"k\"":"\\s","\\":"plain"})");
    EXPECT_EQ(TextOf(Payload().Add("e", List<int>{}).Add("s", List<std::string>{})), R"({"e":[],"s":[]})");
    // No kind or no content, and content of another kind.
    EXPECT_EQ(TextOf(Value(), Value(ValueType::INT32, {}), Value(static_cast<ValueType>(24), 1)), "nullnullnull");
    EXPECT_EQ(TextOf(Payload().Add("a", Value(ValueType::INT32, 2.5)).Add("b", Value(ValueType::INT8, 1)), 1),
              R"({"a":,"b":}1)");
    EXPECT_EQ(
        TextOf(Value(ValueType::UINT8, int8_t{1}), Value(ValueType::STRING, 1), Value(ValueType::STRING_ARRAY, 1)), "");
    // What follows the stream, outside of a payload.
    EXPECT_EQ(TextOf(hex, Value(int8_t{-5}), Value(uint8_t{200})), "fffffffbc8");
    EXPECT_EQ(TextOf(hex, List<signed char>{-5, 65}, List<unsigned char>{200}), "[fffb,41][c8]");
    EXPECT_EQ(TextOf(std::setprecision(1), Value(.12), List<float>{.12F}), "0.1[0.1]");
    EXPECT_EQ(TextOf(std::setw(5), Value("a"), std::setw(6), Value("b\"")), R"(  "a" "b\"")");
    EXPECT_EQ(TextOf(std::setw(3), Value(List<int>{1, 2}), Value(3)), "  [1,2]3");
    EXPECT_EQ(TextOf(hex, list, 16, List<Payload>{list}), R"({"a":[255]}10[{"a":[255]}])");
}

// Writing fails at the end of a vector that is not in a payload.
TEST(Payload, IsWrittenToAStreamThatCannotSeek)
{
    struct Pipe : std::stringbuf {
        pos_type seekoff(off_type, std::ios::seekdir, std::ios::openmode) override
        {
            return -1;
        }
    } pipe;
    std::ostream stream(&pipe);
    stream << Payload().Add("a", List<int>{1}) << List<int>{2} << 3;
    EXPECT_EQ(pipe.str(), R"({"a":[1]}[2,)");
    EXPECT_TRUE(stream.fail());
}

} // namespace

} // namespace OHOS::HiviewDFX
