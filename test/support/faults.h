// The plan of Node-API calls that are to fail.
#ifndef TEST_SUPPORT_FAULTS_H
#define TEST_SUPPORT_FAULTS_H

#include <json/value.h>

namespace ZelkTest {

// `plan`: [{"name": the Node-API function, or "" for any, "nth": which use of it, "status": 9 unless named,
// "wordless": true for an error without a message}, ..].
void SetFaults(const Json::Value& plan);

// The module's Node-API calls since the plan was made, unless it is empty: [["name", status, "file function"], ..].
Json::Value ReadTrace();

} // namespace ZelkTest

#endif // TEST_SUPPORT_FAULTS_H
