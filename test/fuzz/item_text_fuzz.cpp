// The reference service's items: any text is accepted exactly when it has the frame, and an accepted item comes back as
// JSON that contains its key and its value.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <json/reader.h>

#include "service/reference/item_text.h"
#include "service/reference/reference_service.h"

namespace {

void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

// Independent of the parser: the text is put together again from its parts.
bool IsItem(const std::string& text, const std::string& key, const std::string& value)
{
    return text == R"({"configKey":")" + key + R"(","value":)" + value + "}" &&
           (key + R"(","value":)").find(R"(","value":)") == key.size();
}

bool HasFrame(const std::string& text)
{
    const std::string head = R"({"configKey":")";
    const std::string middle = R"(","value":)";
    if (text.compare(0, head.size(), head) != 0 || text.back() != '}') {
        return false;
    }
    const size_t at = text.find(middle, head.size());
    return at != std::string::npos && at + middle.size() < text.size();
}

// The answer to a query for `key`.
Json::Value Query(OHOS::Host::ReferenceService& service, const std::string& key)
{
    std::vector<std::string> keys = {key};
    std::vector<std::string> values;
    Require(service.GetModemLogConfig(keys, values) == 0 && values.size() == 1);
    Json::CharReaderBuilder builder;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value answer;
    const char* text = values[0].data();
    Require(reader->parse(text, text + values[0].size(), &answer, nullptr));
    return answer;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(data, data + size);
    OHOS::Host::ReferenceService service;
    const auto item = OHOS::Host::ParseItem(text);
    Require(item.has_value() == HasFrame(text));

    std::vector<std::string> configs = {text};
    bool result = false;
    const int32_t code = service.ChangeModemLogConfig(configs, result);
    Require(result == item.has_value() && (code == 0) == result);
    if (item) {
        const std::string key(item->key);
        const std::string value(item->value);
        Require(IsItem(text, key, value));
        const Json::Value answer = Query(service, key);
        Require(answer["configKey"].asString() == key && answer["value"].asString() == value);
    }
    // As a key, any text is quoted as JSON.
    if (!item || item->key != text) {
        const Json::Value answer = Query(service, text);
        Require(answer["configKey"].asString() == text && answer["value"].asString() == "{}");
    }
    return 0;
}
