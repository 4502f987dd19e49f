// The text of a configuration item against general JSON writers on the same content, and its growth.
#include <string>
#include <vector>

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <json/json.h>
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

template <typename List>
Json::Value ListToJson(const List& list)
{
    Json::Value array(Json::arrayValue);
    for (const auto& element : list) {
        array.append(Json::Value(element));
    }
    return array;
}

Json::Value ValueToJson(const ConfigInfoParam& param)
{
    switch (param.type) {
    case TYPE_BOOL:
        return param.value.boolValue;
    case TYPE_INT:
        return param.value.intValue;
    case TYPE_STRING:
        return param.value.stringValue;
    case TYPE_BOOL_VECTOR:
        return ListToJson(param.value.boolVector);
    case TYPE_INT_VECTOR:
        return ListToJson(param.value.intVector);
    default:
        return ListToJson(param.value.stringVector);
    }
}

// jsoncpp writes a tree. Making it is not measured.
Json::Value ItemToJson(const ConfigInfo& item)
{
    Json::Value root;
    root["configKey"] = item.key;
    Json::Value& value = root["value"];
    for (const ConfigInfoParam& param : item.params) {
        value[param.name] = ValueToJson(param);
    }
    return root;
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

} // namespace

int main()
{
    constexpr int PARAMS = 10'000;
    const ConfigInfo item = MakeItem(PARAMS);
    const Json::Value tree = ItemToJson(item);
    Json::StreamWriterBuilder compact;
    compact["indentation"] = "";

    const auto product = [&item] {
        Bench::Keep(item.GetJsonParams().data());
    };
    const auto stream = [&] {
        Bench::Keep(Json::writeString(compact, tree).data());
    };
    const auto fast = [&tree] {
        Bench::Keep(Json::FastWriter().write(tree).data());
    };
    const auto rapid = [&item] {
        Bench::Keep(RapidText(item).data());
    };
    Bench::Compare("text-jsoncpp", product, PARAMS, stream, PARAMS);
    Bench::Compare("text-jsoncpp-fast", product, PARAMS, fast, PARAMS);
    Bench::Compare("text-rapidjson", product, PARAMS, rapid, PARAMS);

    constexpr int FEW = 1'000;
    constexpr int MANY = 100'000;
    const ConfigInfo fewParams = MakeItem(FEW);
    const ConfigInfo manyParams = MakeItem(MANY);
    Bench::Compare(
        "text-growth", [&] { Bench::Keep(manyParams.GetJsonParams().data()); }, MANY,
        [&] { Bench::Keep(fewParams.GetJsonParams().data()); }, FEW);
    Bench::Compare(
        "text-growth-rapidjson", [&] { Bench::Keep(RapidText(manyParams).data()); }, MANY,
        [&] { Bench::Keep(RapidText(fewParams).data()); }, FEW);
    return 0;
}
