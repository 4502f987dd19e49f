#ifndef TEST_SUPPORT_FAULTS_H
#define TEST_SUPPORT_FAULTS_H

#include <json/value.h>

namespace ZelkTest {

void SetFaults(const Json::Value& plan);

// The module's Node-API calls since the plan was made: [["name", status], ..].
Json::Value ReadTrace();

} // namespace ZelkTest

#endif // TEST_SUPPORT_FAULTS_H
