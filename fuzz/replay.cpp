// Plain main for a fuzz target: feeds it every file of the given folders, so that the kept inputs are tried
// in each test run and a crash can be followed in a debugger. No input at all is a failure.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

std::vector<std::filesystem::path> inputsIn(const std::filesystem::path& place)
{
    if (!std::filesystem::is_directory(place))
        return {place};
    std::vector<std::filesystem::path> inputs;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place))
        if (entry.is_regular_file())
            inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

bool replay(const std::filesystem::path& input)
{
    std::ifstream stream(input, std::ios::binary);
    if (!stream) {
        std::fprintf(stderr, "cannot read %s\n", input.string().c_str());
        return false;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::printf("%s\n", input.string().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    std::size_t count = 0;
    try {
        for (int i = 1; i < argc; ++i) {
            for (const auto& input : inputsIn(argv[i])) {
                if (!replay(input))
                    return 1;
                ++count;
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    std::printf("%zu inputs\n", count);
    return count == 0 ? 1 : 0;
}
