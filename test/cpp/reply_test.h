// Shared by the test of the reply conversion and the library under test.
#ifndef TEST_CPP_REPLY_TEST_H
#define TEST_CPP_REPLY_TEST_H

#include <string>

// Whether the service's text becomes an item.
using Conversion = bool (*)(const std::string& text);

__attribute__((visibility("default"))) void TakeConversion(Conversion conversion);

#endif // TEST_CPP_REPLY_TEST_H
