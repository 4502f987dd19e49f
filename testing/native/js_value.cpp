#include "js_value.h"

#include "napi/util/handle_scope.h"

namespace OHOS::Host {

namespace {

struct Maker {
    napi_env env;
    napi_value made = nullptr;

    void operator()(Nothing)
    {
        napi_get_undefined(env, &made);
    }
    void operator()(bool value)
    {
        napi_get_boolean(env, value, &made);
    }
    void operator()(int64_t value)
    {
        napi_create_bigint_int64(env, value, &made);
    }
    void operator()(const std::string& text)
    {
        napi_create_string_utf8(env, text.data(), text.size(), &made);
    }
    void operator()(const std::vector<std::string>& texts)
    {
        napi_create_array_with_length(env, texts.size(), &made);
        for (size_t i = 0; i < texts.size(); ++i) {
            const HiviewDFX::HandleScope scope(env);
            napi_set_element(env, made, static_cast<uint32_t>(i), ToJs(env, texts[i]));
        }
    }
};

std::string TextFromJs(napi_env env, napi_value value)
{
    bool isBytes = false;
    napi_is_typedarray(env, value, &isBytes);
    if (isBytes) {
        size_t size = 0;
        void* bytes = nullptr;
        napi_get_typedarray_info(env, value, nullptr, &size, &bytes, nullptr, nullptr);
        return size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size);
    }
    size_t size = 0;
    napi_get_value_string_utf8(env, value, nullptr, 0, &size);
    std::string text(size, '\0');
    napi_get_value_string_utf8(env, value, text.data(), size + 1, &size);
    return text;
}

std::vector<std::string> TextsFromJs(napi_env env, napi_value array)
{
    uint32_t length = 0;
    napi_get_array_length(env, array, &length);
    std::vector<std::string> texts;
    texts.reserve(length);
    for (uint32_t i = 0; i < length; ++i) {
        const HiviewDFX::HandleScope scope(env);
        napi_value element = nullptr;
        napi_get_element(env, array, i, &element);
        texts.push_back(TextFromJs(env, element));
    }
    return texts;
}

} // namespace

napi_value ToJs(napi_env env, const Value& value)
{
    Maker maker{env};
    std::visit(maker, value);
    return maker.made;
}

napi_value ToJs(napi_env env, const std::string& text)
{
    Maker maker{env};
    maker(text);
    return maker.made;
}

Value FromJs(napi_env env, napi_value value)
{
    napi_valuetype type = napi_undefined;
    napi_typeof(env, value, &type);
    if (type == napi_boolean) {
        bool isTrue = false;
        napi_get_value_bool(env, value, &isTrue);
        return isTrue;
    }
    if (type == napi_bigint) {
        int64_t number = 0;
        bool isLossless = false;
        napi_get_value_bigint_int64(env, value, &number, &isLossless);
        return number;
    }
    if (type == napi_string) {
        return TextFromJs(env, value);
    }
    if (type != napi_object) {
        return {};
    }
    bool isArray = false;
    napi_is_array(env, value, &isArray);
    return isArray ? Value(TextsFromJs(env, value)) : Value(TextFromJs(env, value));
}

} // namespace OHOS::Host
