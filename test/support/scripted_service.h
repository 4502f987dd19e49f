// A log service that answers as it is told and remembers what it was asked.
#ifndef TEST_SUPPORT_SCRIPTED_SERVICE_H
#define TEST_SUPPORT_SCRIPTED_SERVICE_H

#include <json/value.h>

namespace ZelkTest {

// `script`: {"Operation": {"code": 0, "answer": text, list of texts or boolean, "delay": milliseconds}, ..}. An
// operation that is not named answers code 0 and touches nothing. With "latin1": true in an entry, each character of
// its answer stands for one byte. Null: there is no service.
void SetScriptedService(const Json::Value& script);

// The service of the environment again.
void UnsetScriptedService();

// What was asked since the last call: [["Operation", arguments..], ..].
Json::Value TakeRequests();

// How often a proxy was asked for since the last call.
int TakeProxyCount();

} // namespace ZelkTest

#endif // TEST_SUPPORT_SCRIPTED_SERVICE_H
