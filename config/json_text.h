// Parsing JSON texts of the log service.
#ifndef ZELKLOGSERVICE_CONFIG_JSON_TEXT_H
#define ZELKLOGSERVICE_CONFIG_JSON_TEXT_H

#include <string>

#include <json/value.h>

namespace OHOS::HiviewDFX {

// False when `text` cannot be parsed. Comments are skipped. Takes time proportional to the length of `text`.
// Throws what jsoncpp throws for a text that is nested too deeply.
bool ParseJson(const std::string& text, Json::Value& root);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_CONFIG_JSON_TEXT_H
