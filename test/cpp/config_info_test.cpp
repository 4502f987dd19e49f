#include "config/config_info.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <locale>
#include <memory>
#include <new>

#include <gtest/gtest.h>

#include "hilog/capture.h"

namespace OHOS::HiviewDFX {

namespace {

using Value = ConfigInfoParamValue;
using Strings = std::vector<std::string>;

template <typename T>
ConfigInfoParam Param(ConfigInfoParamType type, T Value::*member, const T& value)
{
    ConfigInfoParam param("v", type);
    param.value.*member = value;
    return param;
}

ConfigInfoParam Empty(int type)
{
    return {"v", static_cast<ConfigInfoParamType>(type)};
}

std::string TextOf(const ConfigInfoParam& param)
{
    ConfigInfo info("k");
    info.params.push_back(param);
    return info.GetJsonParams();
}

class ConfigInfoTest : public testing::Test {
public:
    ConfigInfoTest()
    {
        Host::SetLogCapture([this](const Host::LogRecord& record) { lines.push_back(record); });
    }
    ~ConfigInfoTest() override
    {
        Host::SetLogCapture({});
    }

protected:
    // The messages since the last call; each must be an error line of the module.
    Strings TakeLines()
    {
        Strings messages;
        for (const Host::LogRecord& line : lines) {
            EXPECT_EQ(line.level, LOG_ERROR);
            EXPECT_EQ(line.domain, 0xD002D19U);
            EXPECT_EQ(line.tag, "ZELK_SERVICE");
            messages.push_back(line.message);
        }
        lines.clear();
        return messages;
    }

    std::vector<Host::LogRecord> lines;
};

TEST_F(ConfigInfoTest, ItemAsTextAndInTheLog)
{
    ConfigInfo info("captureConfig");
    info.AddParam("enable", true);
    info.AddParam("level", 3);
    info.AddParam("path", std::string("/data/log"));
    info.AddParam("masks", std::vector<int>{1, 2, 3});
    info.AddParam("flags", std::vector<bool>{true, false, true});
    info.AddParam("names", Strings{"a", "b"});
    const std::string text = R"({"configKey":"captureConfig","value":{"enable":true,"level":3,"path":"/data/log",)"
                             R"("masks":[1,2,"3"],"flags":[true,false,"1"],"names":[a,"b"]}})";
    EXPECT_EQ(info.GetJsonParams(), text);
    EXPECT_EQ(info.GetJsonParams(), text);
    const std::string line = "GetJsonParams ostringstream " + text;
    EXPECT_EQ(TakeLines(), (Strings{line, line}));
}

TEST_F(ConfigInfoTest, NothingIsEscapedMergedOrRepaired)
{
    EXPECT_EQ(ConfigInfo("k").GetJsonParams(), R"({"configKey":"k","value":}})");

    ConfigInfo info("k\"\\\n");
    info.AddParam("n\"", std::string("a\"b\\c"));
    info.AddParam("e", Strings{});
    info.AddParam("n\"", false);
    info.AddParam("", std::vector<int>{});
    EXPECT_EQ(info.GetJsonParams(), "{\"configKey\":\"k\"\\\n\",\"value\":{\"n\"\":\"a\"b\\c\",\"e\":[]\"n\"\":false,"
                                    "\"\":[}}");
}

// Each value's text stands whole before another parameter and loses its last character at the end of the item.
TEST_F(ConfigInfoTest, ValueTextByType)
{
    const struct {
        ConfigInfoParam param;
        std::string text;
    } cases[] = {
        {Empty(TYPE_NONE), "[],"},
        {Param(TYPE_BOOL, &Value::boolValue, true), "true,"},
        {Param(TYPE_CHAR, &Value::charValue, 'x'), "\"x\","},
        {Param<int16_t>(TYPE_SHORT, &Value::shortValue, -32768), "-32768,"},
        {Param(TYPE_INT, &Value::intValue, std::numeric_limits<int32_t>::min()), "-2147483648,"},
        {Param(TYPE_LONG, &Value::longValue, std::numeric_limits<int64_t>::min()), "-9223372036854775808,"},
        {Param(TYPE_FLOAT, &Value::floatValue, 0.1F), "0.1,"},
        {Param(TYPE_DOUBLE, &Value::doubleValue, 0.000001), "0.000001,"},
        {Param<std::string>(TYPE_STRING, &Value::stringValue, "é"), "\"é\","},
        {Param(TYPE_BOOL_VECTOR, &Value::boolVector, {false}), "[\"0\"],"},
        {Param(TYPE_BOOL_VECTOR, &Value::boolVector, {false, true, true}), "[false,true,\"1\"],"},
        {Param(TYPE_CHAR_VECTOR, &Value::charVector, {'x', 'y'}), "[x,\"y\"],"},
        {Param(TYPE_SHORT_VECTOR, &Value::shortVector, {-1, 0, 32767}), "[-1,0,\"32767\"],"},
        {Param(TYPE_INT_VECTOR, &Value::intVector, {5}), "[\"5\"],"},
        {Param(TYPE_LONG_VECTOR, &Value::longVector, {1, std::numeric_limits<int64_t>::max()}),
         "[1,\"9223372036854775807\"],"},
        {Param(TYPE_FLOAT_VECTOR, &Value::floatVector, {1.5F, 2.0F}), "[1.5,2],"},
        {Param(TYPE_DOUBLE_VECTOR, &Value::doubleVector, {1e20, -0.25}), "[100000000000000000000,-0.25],"},
        {Param(TYPE_STRING_VECTOR, &Value::stringVector, {"", "a,b", "\""}), "[,a,b,\"\"\"],"},
        {Empty(-1), "\"\","},
        {Empty(17), "\"\","},
        // As constructed.
        {Empty(TYPE_BOOL), "false,"},
        {Empty(TYPE_CHAR), std::string("\"\0\",", 4)},
        {Empty(TYPE_LONG), "0,"},
        {Empty(TYPE_DOUBLE), "0,"},
        {Empty(TYPE_STRING), "\"\","},
        {Empty(TYPE_BOOL_VECTOR), "[]"},
        {Empty(TYPE_INT_VECTOR), "[]"},
        {Empty(TYPE_FLOAT_VECTOR), "[]"},
        {Empty(TYPE_STRING_VECTOR), "[]"},
    };
    for (const auto& [param, text] : cases) {
        SCOPED_TRACE(testing::Message() << "type " << param.type);
        const std::string start = R"({"configKey":"k","value":{"v":)";
        EXPECT_EQ(TextOf(param), start + text.substr(0, text.size() - 1) + "}}");

        ConfigInfo info("k");
        info.params.push_back(param);
        info.AddParam("z", 1);
        EXPECT_EQ(info.GetJsonParams(), start + text + R"("z":1}})");
    }
}

TEST_F(ConfigInfoTest, DecimalsHaveNoZerosAtTheEnd)
{
    const struct {
        double value;
        std::string text;
    } cases[] = {
        {1.5, "1.5"},
        {2.0, "2"},
        {100.0, "100"},
        {0.25, "0.25"},
        {0.0, "0"},
        {-0.0, "-0"},
        {1e-7, "0"},
        {2.5e-7, "0"},
        {-2.5e-7, "-0"},
        {0.0000005000001, "0.000001"},
        {1.0000004, "1"},
        {9.9999999, "10"},
        {10.010, "10.01"},
        {0.1F, "0.1"},
        {16777216.0, "16777216"},
        {1e20, "100000000000000000000"},
        {-1e300, "-" + std::to_string(1e300).substr(0, 301)},
        {std::numeric_limits<double>::infinity(), "inf"},
    };
    for (const auto& [value, text] : cases) {
        std::stringstream doubles;
        ConfigInfo("").ConvertDecimalsVectorToJson(doubles, {1.0, value});
        EXPECT_EQ(doubles.str(), "[1," + text + "],");
        const std::string item = R"({"configKey":"k","value":{"v":)" + text + "}}";
        EXPECT_EQ(TextOf(Param(TYPE_DOUBLE, &Value::doubleValue, value)), item);
        if (std::abs(value) < 1e20) { // A float has other digits from here on.
            std::stringstream floats;
            ConfigInfo("").ConvertFloatVectorToJson(floats, {1.0F, static_cast<float>(value)});
            EXPECT_EQ(floats.str(), "[1," + text + "],");
        }
    }
}

TEST_F(ConfigInfoTest, LongItemIsWholeInTextAndLog)
{
    for (const int count : {255, 256, 257, 512, 10000}) {
        ConfigInfo info("k");
        std::string text = R"({"configKey":"k","value":{)";
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(i);
            info.AddParam(number, i);
            text.append("\"").append(number).append("\":").append(number).append(",");
        }
        text.back() = '}';
        text += '}';
        EXPECT_TRUE(info.GetJsonParams() == text) << count;
        EXPECT_TRUE(TakeLines() == Strings{"GetJsonParams ostringstream " + text}) << count;
    }
}

TEST_F(ConfigInfoTest, NumbersIgnoreTheLocale)
{
    struct Grouping : std::numpunct<char> {
        std::string do_grouping() const override
        {
            return "\3";
        }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    const std::string text = TextOf(Param(TYPE_INT, &Value::intValue, 1234567));
    std::locale::global(before);
    EXPECT_EQ(text, R"({"configKey":"k","value":{"v":1234567}})");
}

TEST_F(ConfigInfoTest, OnlyTagsUpToZeroReportTheirCopy)
{
    const std::string report = "InitBaseTypeValue: ERROR TYPE";
    for (const int type : {std::numeric_limits<int>::min(), -1, 0}) {
        const ConfigInfoParam param = Empty(type);
        EXPECT_EQ(TakeLines(), Strings{}) << type;
        const ConfigInfoParam copy(param);
        EXPECT_EQ(copy.type, type);
        EXPECT_EQ(copy.value.type, type);
        EXPECT_EQ(TakeLines(), Strings{report}) << type;

        std::stringstream stream;
        ConfigInfo("k").AddVectorToJson(stream, copy);
        EXPECT_EQ(TakeLines(), Strings{report}) << type;
    }
    for (int type = TYPE_BOOL; type <= TYPE_STRING_VECTOR + 1; ++type) {
        const ConfigInfoParam param = Empty(type);
        const ConfigInfoParam copy(param);
        EXPECT_EQ(copy.value.type, type);
        EXPECT_EQ(TakeLines(), Strings{}) << type;
    }
}

TEST_F(ConfigInfoTest, CopyOwnsItsStorage)
{
    const Strings wanted{std::string(100, 'a'), "b"};
    auto original = std::make_unique<ConfigInfoParam>(Param(TYPE_STRING_VECTOR, &Value::stringVector, wanted));
    const ConfigInfoParam copy(*original);
    original->value.stringVector[0][0] = 'x';
    original.reset();
    EXPECT_EQ(copy.name, "v");
    EXPECT_EQ(copy.value.stringVector, wanted);
    static_assert(!std::is_copy_assignable_v<ConfigInfoParam> && !std::is_copy_assignable_v<Value>);
}

TEST_F(ConfigInfoTest, ScalarsStartAtZeroWhateverWasThere)
{
    for (int type = TYPE_BOOL; type <= TYPE_DOUBLE; ++type) {
        alignas(Value) unsigned char memory[sizeof(Value)];
        std::memset(memory, 0x5a, sizeof(memory));
        auto* value = new (memory) Value(static_cast<ConfigInfoParamType>(type));
        const size_t sizes[] = {sizeof(bool), 1, 2, 4, 8, sizeof(float), sizeof(double)};
        const unsigned char zeros[8] = {};
        EXPECT_EQ(std::memcmp(&value->longValue, zeros, sizes[type - TYPE_BOOL]), 0) << type;
        value->~Value();
    }
}

} // namespace

} // namespace OHOS::HiviewDFX
