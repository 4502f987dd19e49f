// Copying JSON replies onto JavaScript objects.
#ifndef ZELKLOGSERVICE_CONFIG_JSON_TO_OBJECT_H
#define ZELKLOGSERVICE_CONFIG_JSON_TO_OBJECT_H

#include <string>

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// Sets one property of `object` per member of the JSON object `text`, in ascending byte order of the names: null,
// booleans, numbers and strings (up to their first NUL). Arrays and objects among the members are left out, and a text
// that is no JSON object sets nothing; neither is logged. A text that cannot be parsed is logged and sets nothing.
//
// JavaScript thread only. No Node-API call's status is looked at: a member that cannot be set is missing. What jsoncpp
// throws goes through: a Json::Exception for an integer that does not fit 32 bits, signed for a negative one, unsigned
// for any other, and for a text nested too deep. Properties set before it stay.
void ConvertJsonToObject(napi_env env, std::string text, napi_value object);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CONFIG_JSON_TO_OBJECT_H
