// What tests have to know of the sanitizer they run under.
#pragma once

#include <gtest/gtest.h>

// For tests that fill the stack: the thread sanitizer records the whole call stack with each allocation.
#if defined(__SANITIZE_THREAD__)
#define QX_SKIP_DEEP_STACK GTEST_SKIP() << "records the whole call stack with each allocation"
#else
#define QX_SKIP_DEEP_STACK static_cast<void>(0)
#endif
