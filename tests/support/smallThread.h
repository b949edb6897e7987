// A thread whose stack has a given size.
#pragma once

#include <cstddef>
#include <functional>

// Runs `work` on a thread with a stack of `bytes` and waits for its end. False when there is no such thread.
// `work` must not throw.
bool runOnStackOf(std::size_t bytes, const std::function<void()>& work);
