// The text of an item, and how its parameters are copied.
#include "config/config_info.h"

#include <cmath>
#include <cstring>
#include <locale>

#include <gtest/gtest.h>

#include "host/hilog/capture.h"

namespace OHOS::HiviewDFX {

namespace {

using Value = ConfigInfoParamValue;
using Strings = std::vector<std::string>;

// A parameter "v", as constructed.
ConfigInfoParam Param(int type)
{
    return {"v", static_cast<ConfigInfoParamType>(type)};
}

// A parameter "v" that holds `value`.
template <typename T>
ConfigInfoParam Param(int type, T Value::*member, const std::common_type_t<T>& value)
{
    ConfigInfoParam param = Param(type);
    param.value.*member = value;
    return param;
}

std::string TextOf(const std::list<ConfigInfoParam>& params)
{
    ConfigInfo info("k");
    info.params.insert(info.params.end(), params.begin(), params.end());
    return info.GetJsonParams();
}

template <typename Write, typename Values>
std::string Streamed(Write write, const Values& values)
{
    std::stringstream stream("before", std::ios::in | std::ios::out | std::ios::ate);
    (ConfigInfo("").*write)(stream, values);
    return stream.str();
}

TEST(ConfigInfo, NothingIsEscapedMergedOrRepaired)
{
    ConfigInfo info("k\"\\\n");
    info.AddParam("n\"", std::string("a\"b\\c"));
    info.AddParam("n\"", Strings{});
    info.AddParam("", Strings{"a", "b"});
    EXPECT_EQ(info.GetJsonParams(),
              "{\"configKey\":\"k\"\\\n\",\"value\":{\"n\"\":\"a\"b\\c\",\"n\"\":[]\"\":[a,\"b\"]}}");
}

// A value's text is complete before another parameter, and loses its last character at the end of the item.
TEST(ConfigInfo, ValueTextByType)
{
    struct Grouping : std::numpunct<char> {
        std::string do_grouping() const override
        {
            return "\3";
        }
    };
    const std::pair<ConfigInfoParam, std::string> cases[] = {
        {Param(TYPE_CHAR, &Value::charValue, 'x'), "\"x\","},
        {Param(TYPE_SHORT, &Value::shortValue, -32768), "-32768,"},
        {Param(TYPE_INT, &Value::intValue, INT32_MIN), "-2147483648,"},
        {Param(TYPE_LONG, &Value::longValue, INT64_MIN), "-9223372036854775808,"},
        {Param(TYPE_FLOAT, &Value::floatValue, 1e-7F), "0,"},
        {Param(TYPE_DOUBLE, &Value::doubleValue, 1e-7), "0,"},
        {Param(TYPE_BOOL_VECTOR, &Value::boolVector, {false, true, true}), "[false,true,\"1\"],"},
        {Param(TYPE_CHAR_VECTOR, &Value::charVector, {'x', 'y'}), "[x,\"y\"],"},
        {Param(TYPE_SHORT_VECTOR, &Value::shortVector, {-1, 0, 32767}), "[-1,0,\"32767\"],"},
        {Param(TYPE_LONG_VECTOR, &Value::longVector, {1, INT64_MAX}), "[1,\"9223372036854775807\"],"},
        {Param(TYPE_FLOAT_VECTOR, &Value::floatVector, {0.1F, 2.5e-7F, 16777216}), "[0.1,0,16777216],"},
        {Param(TYPE_DOUBLE_VECTOR, &Value::doubleVector,
               {1.5, 100, 0, -0.0, 2.5e-7, 0.0000005000001, 9.9999999, 10.010, 16777217, HUGE_VAL}),
         "[1.5,100,0,-0,0,0.000001,10,10.01,16777217,inf],"},
        {Param(TYPE_STRING_VECTOR, &Value::stringVector, {"", "a,b", "\""}), "[,a,b,\"\"\"],"},
        // As constructed, and without a value.
        {Param(TYPE_STRING), "\"\","},
        {Param(TYPE_FLOAT_VECTOR), "[]"},
        {Param(TYPE_INT_VECTOR), "[]"},
        {Param(TYPE_NONE), "[],"},
        {Param(-1), "\"\","},
        {Param(17), "\"\","},
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    for (const auto& [param, text] : cases) {
        const std::string start = R"({"configKey":"k","value":{"v":)";
        EXPECT_EQ(TextOf({param}), start + text.substr(0, text.size() - 1) + "}}");
        EXPECT_EQ(TextOf({param, Param(TYPE_INT)}), start + text + R"("v":0}})");
        const bool isScalar = param.type >= TYPE_BOOL && param.type <= TYPE_STRING;
        EXPECT_EQ(Streamed(&ConfigInfo::AddVectorToJson, param), isScalar ? "before\"\"," : "before" + text);
    }
    std::locale::global(before);
}

// What they write is what an item has.
TEST(ConfigInfo, StreamWritersAppendToTheirStream)
{
    using Info = ConfigInfo;
    EXPECT_EQ(Streamed(&Info::ConvertBoolVectorToJson, std::vector<bool>{true, false}), "before[true,\"0\"],");
    EXPECT_EQ(Streamed(&Info::ConvertVectorToJson<char>, std::vector<char>{'x', 'y'}), "before[x,\"y\"],");
    EXPECT_EQ(Streamed(&Info::ConvertVectorToJson<int16_t>, std::vector<int16_t>{-1, 2}), "before[-1,\"2\"],");
    EXPECT_EQ(Streamed(&Info::ConvertVectorToJson<int32_t>, std::vector<int32_t>{3}), "before[\"3\"],");
    EXPECT_EQ(Streamed(&Info::ConvertVectorToJson<int64_t>, std::vector<int64_t>{4, 5}), "before[4,\"5\"],");
    EXPECT_EQ(Streamed(&Info::ConvertVectorToJson<std::string>, Strings{"a", "b"}), "before[a,\"b\"],");
    EXPECT_EQ(Streamed(&Info::ConvertFloatVectorToJson, std::vector<float>{1.5F, 2}), "before[1.5,2],");
    EXPECT_EQ(Streamed(&Info::ConvertDecimalsVectorToJson, std::vector<double>{0.1, -0.0}), "before[0.1,-0],");
}

TEST(ConfigInfoParam, CopyReportsATypeUpToZero)
{
    Strings lines;
    Host::SetLogCapture([&lines](const Host::LogRecord& record) { lines.push_back(record.message); });
    for (const int type : {INT32_MIN, 0, 1, 7, 8, 16, 17}) {
        lines.clear();
        const ConfigInfoParam param = Param(type);
        std::stringstream stream;
        ConfigInfo("k").AddVectorToJson(stream, param); // Takes a copy.
        EXPECT_EQ(lines, Strings(type > 0 ? 0 : 1, "InitBaseTypeValue: ERROR TYPE")) << type;
    }
    Host::SetLogCapture({});
}

TEST(ConfigInfoParam, ScalarsStartAtZeroWhateverWasThere)
{
    alignas(ConfigInfoParam) unsigned char memory[sizeof(ConfigInfoParam)];
    const Strings texts = {"false", std::string("\"\0\"", 3), "0", "0", "0", "0", "0"};
    for (int type = TYPE_BOOL; type <= TYPE_DOUBLE; ++type) {
        std::memset(memory, 0x5a, sizeof(memory));
        auto* param = new (memory) ConfigInfoParam("v", static_cast<ConfigInfoParamType>(type));
        EXPECT_EQ(TextOf({*param}), R"({"configKey":"k","value":{"v":)" + texts[type - TYPE_BOOL] + "}}");
        param->~ConfigInfoParam();
    }
}

} // namespace

} // namespace OHOS::HiviewDFX
