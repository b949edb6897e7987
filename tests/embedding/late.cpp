// Opens the libraries that it is told and asks the last of them for its answer, also on a thread that was
// there before.
#include <dlfcn.h>

#include <cstdio>
#include <future>

int main(int count, char** names)
{
    std::promise<int (*)()> found;
    std::future<int> answered =
        std::async(std::launch::async, [asked = found.get_future()]() mutable { return asked.get()(); });
    void* library = nullptr;
    for (int i = 1; i < count; ++i) {
        library = dlopen(names[i], RTLD_NOW);
        if (!library) {
            std::fprintf(stderr, "%s\n", dlerror());
            std::_Exit(1);
        }
    }
    auto* const answer = reinterpret_cast<int (*)()>(dlsym(library, "answer"));
    found.set_value(answer);
    std::printf("%d and %d\n", answered.get(), answer());
    return 0;
}
