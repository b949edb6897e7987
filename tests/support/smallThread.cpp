// Threads with a stack of their own size.
#include "smallThread.h"

#include <pthread.h>

namespace
{

void* runWork(void* work)
{
    (*static_cast<const std::function<void()>*>(work))();
    return nullptr;
}

} // namespace

// The standard's threads take no stack size; those below it do, on every platform that we build for.
bool runOnStackOf(std::size_t bytes, const std::function<void()>& work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_t thread;
    const bool isRunning =
        pthread_attr_setstacksize(&attributes, bytes) == 0 &&
        pthread_create(&thread, &attributes, runWork, const_cast<std::function<void()>*>(&work)) == 0;
    pthread_attr_destroy(&attributes);
    return isRunning && pthread_join(thread, nullptr) == 0;
}
