// Configuration items from JavaScript objects.
#ifndef ZELKLOGSERVICE_CONFIG_NAPI_ZELK_CONFIG_INFO_BUILD_H
#define ZELKLOGSERVICE_CONFIG_NAPI_ZELK_CONFIG_INFO_BUILD_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/config_info.h"
#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// Turns the properties of one JavaScript object into the parameters of one item:
//
//   boolean, number, string            TYPE_BOOL, TYPE_INT (as Node-API converts it), TYPE_STRING
//   array of booleans, of numbers      TYPE_BOOL_VECTOR, TYPE_INT_VECTOR
//   array of strings                   TYPE_STRING_VECTOR without elements: the strings do not reach the service
//   empty array, array of nulls        nothing
//   object                             nothing
//   any other value, any other array   nothing, with a log line; for the array `errorCode` becomes 7
//
// Problems become log lines and a smaller item; nothing is thrown. An exception of the caller's own getter or proxy
// stays pending: from then on nothing can be read, so everything that follows, even further elements, is empty.
// JavaScript thread only; a builder is for one item.
class NapiZelkConfigInfoBuild {
public:
    // Shares ownership of the item with the caller.
    explicit NapiZelkConfigInfoBuild(const std::shared_ptr<ConfigInfo>& item);

    // Adds one parameter per usable own property of `object`, in property order, and returns the item.
    std::shared_ptr<ConfigInfo> BuildChangeConfig(napi_env env, napi_value object);
    void AddParamToList(napi_env env, const std::string& name, napi_value value);
    void AddArrayParamToList(napi_env env, const std::string& name, napi_value value);

    // 7 once an array could not be used. Part of the class's interface, though nothing in the module reads it.
    int32_t errorCode = 0;
    std::shared_ptr<ConfigInfo> configInfo;
};

// The item that one object {configKey, value} describes.
std::shared_ptr<ConfigInfo> BuildConfigInfo(napi_env env, napi_value object);

// Appends one item per element of `array`, each an object {configKey, value}. Every element yields an item, at worst
// one with the key "" and no parameters. A value that is not an array is logged and appends nothing. There is no limit
// on the number of elements, and JavaScript waits while they are read: an element costs about a microsecond, as much
// again per property, and the memory of its item.
void FillConfigInfoVector(napi_env env, napi_value array, std::vector<std::shared_ptr<ConfigInfo>>& items);

// Appends one string per element of `array`, "" for an element that is not a string of 1 to MAX_STRING_LENGTH bytes. A
// value that is not an array is logged and appends nothing.
void FillStringVector(napi_env env, napi_value array, std::vector<std::string>& strings);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CONFIG_NAPI_ZELK_CONFIG_INFO_BUILD_H
