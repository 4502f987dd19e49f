// Replaces `new`, so that a test can make it fail.
#ifndef TEST_CPP_FAILING_NEW_H
#define TEST_CPP_FAILING_NEW_H

namespace ZelkTest {

// How often `new` still succeeds on this thread; any number of times while it is negative.
extern thread_local int g_allocationsLeft;

} // namespace ZelkTest

#endif // TEST_CPP_FAILING_NEW_H
