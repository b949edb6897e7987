// How much memory the process has taken at most since an object of this class was made.
#pragma once

#include <fstream>
#include <string>

class peakMemory
{
public:
    peakMemory()
    {
        std::ofstream("/proc/self/clear_refs") << '5'; // the peak begins anew
        mBefore = read("VmRSS:");
    }

    // In bytes; 0 where the system does not tell, and where a sanitizer's own memory would be counted.
    std::size_t growth() const
    {
        const std::size_t peak = read("VmHWM:");
        return QX_SANITIZED || peak < mBefore ? 0 : peak - mBefore;
    }

private:
    static std::size_t read(const std::string& wanted)
    {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;) {
            std::size_t kibibytes = 0;
            if (word == wanted && status >> kibibytes)
                return kibibytes * 1024;
        }
        return 0;
    }

    std::size_t mBefore = 0;
};
