// The text of a configuration item against a general JSON writer on the same content, and its growth. With the argument
// "growth", prints only the figures that growth.mjs asks for.
#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "config/config_info.h"
#include "rounds.h"

namespace {

using namespace OHOS::HiviewDFX;
using RapidWriter = rapidjson::Writer<rapidjson::StringBuffer>;

const std::vector<bool> FLAGS = {true, false, true};
const std::vector<int> MASKS = {1, 22, 333};
const std::vector<std::string> NAMES = {"ap", "cp"};

// One parameter of every type in turn.
ConfigInfo MakeItem(int params)
{
    ConfigInfo item("captureConfig");
    for (int i = 0; i < params; ++i) {
        const std::string name = "param" + std::to_string(i);
        switch (i % 6) {
        case 0:
            item.AddParam(name, i % 4 == 0);
            break;
        case 1:
            item.AddParam(name, i);
            break;
        case 2:
            item.AddParam(name, std::string("/data/log/modem"));
            break;
        case 3:
            item.AddParam(name, MASKS);
            break;
        case 4:
            item.AddParam(name, FLAGS);
            break;
        default:
            item.AddParam(name, NAMES);
            break;
        }
    }
    return item;
}

void Write(RapidWriter& writer, bool value)
{
    writer.Bool(value);
}

void Write(RapidWriter& writer, int value)
{
    writer.Int(value);
}

void Write(RapidWriter& writer, const std::string& value)
{
    writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
}

template <typename T>
void Write(RapidWriter& writer, const std::vector<T>& list)
{
    writer.StartArray();
    for (const T& element : list) {
        Write(writer, element);
    }
    writer.EndArray();
}

std::string RapidText(const ConfigInfo& item)
{
    rapidjson::StringBuffer buffer;
    RapidWriter writer(buffer);
    writer.StartObject();
    writer.Key("configKey");
    Write(writer, item.key);
    writer.Key("value");
    writer.StartObject();
    for (const ConfigInfoParam& param : item.params) {
        writer.Key(param.name.data(), static_cast<rapidjson::SizeType>(param.name.size()));
        switch (param.type) {
        case TYPE_BOOL:
            Write(writer, param.value.boolValue);
            break;
        case TYPE_INT:
            Write(writer, param.value.intValue);
            break;
        case TYPE_STRING:
            Write(writer, param.value.stringValue);
            break;
        case TYPE_BOOL_VECTOR:
            Write(writer, param.value.boolVector);
            break;
        case TYPE_INT_VECTOR:
            Write(writer, param.value.intVector);
            break;
        default:
            Write(writer, param.value.stringVector);
            break;
        }
    }
    writer.EndObject();
    writer.EndObject();
    return {buffer.GetString(), buffer.GetSize()};
}

auto Writing(const ConfigInfo& item)
{
    return [&item] {
        Bench::Keep(item.GetJsonParams().data());
    };
}

// One line of JSON for each number of parameters: the nanoseconds of the text, the least of several batches.
void PrintGrowth()
{
    constexpr int MOST = 1'000'000;
    constexpr int BATCHES = 9;
    for (int count = 10; count <= MOST; count *= 10) {
        const ConfigInfo item = MakeItem(count);
        const auto write = Writing(item);
        const long times = Bench::TimesPerBatch(write);
        double least = Bench::BatchNanoseconds(times, write);
        for (int i = 1; i < BATCHES; ++i) {
            least = std::min(least, Bench::BatchNanoseconds(times, write));
        }
        std::printf("{\"what\":\"texts\",\"count\":%d,\"nanoseconds\":%.0f}\n", count,
                    least / static_cast<double>(times));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && argv[1] == std::string_view("growth")) {
        PrintGrowth();
        return 0;
    }
    constexpr int FEW = 1'000;
    constexpr int SOME = 10'000;
    constexpr int MANY = 100'000;
    const ConfigInfo few = MakeItem(FEW);
    const ConfigInfo some = MakeItem(SOME);
    const ConfigInfo many = MakeItem(MANY);
    Bench::Compare(
        "text", Writing(some), SOME, [&some] { Bench::Keep(RapidText(some).data()); }, SOME);
    Bench::Compare("text-growth", Writing(many), MANY, Writing(few), FEW);
    return 0;
}
