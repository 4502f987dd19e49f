// The service's answers to configuration queries as a JavaScript array.
#ifndef ZELKLOGSERVICE_NAPI_CALLS_CONFIG_REPLY_H
#define ZELKLOGSERVICE_NAPI_CALLS_CONFIG_REPLY_H

#include <string>
#include <vector>

#include <json/value.h>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// What a function does with an item's "value" beyond copying it. Called for every item with the member, or with a null
// value when it is missing. May throw what jsoncpp throws.
using ExpandValue = void (*)(napi_env env, const Json::Value& value, napi_value item);

// Makes one object per text, in order, with the string members "configKey" and "value" as string properties; members of
// another type are left out. A text that is not a JSON object counts as one without members. `expandValue` may be null.
//
// False when a text cannot be parsed, or when reading it throws: then the caller must abandon the whole reply.
// JavaScript thread only. Failing Node-API calls are ignored, except for the two string properties, where they throw.
bool ConfigReplyToArray(napi_env env, const std::vector<std::string>& texts, ExpandValue expandValue,
                        napi_value* array);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_CALLS_CONFIG_REPLY_H
