// Copying JSON replies into JavaScript objects.
#ifndef ZELKLOGSERVICE_CONFIG_JSON_TO_OBJECT_H
#define ZELKLOGSERVICE_CONFIG_JSON_TO_OBJECT_H

#include <string>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// Sets one property of `object` per member of the JSON object `text`: null, booleans, numbers and strings (up to their
// first NUL). They are set in ascending byte order of the names; JavaScript still lists names that look like integers
// first. Arrays and objects among the members are left out, and a text that is not a JSON object sets nothing; neither
// is logged. A text that cannot be parsed is logged and sets nothing.
//
// JavaScript thread only. The status of Node-API calls is ignored: a member that cannot be set is missing.
//
// Throws what jsoncpp throws; properties set before stay. It throws for a text nested too deeply, and for a member that
// is an integer beyond 32 bits (signed if negative, unsigned otherwise) but within 64; one beyond 64 bits is a double.
// Integers inside arrays and objects are not read.
void ConvertJsonToObject(napi_env env, std::string text, napi_value object);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CONFIG_JSON_TO_OBJECT_H
