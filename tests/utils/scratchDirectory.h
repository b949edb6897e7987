// A directory of its own for a test, taken away with all it holds.
#pragma once

#include <qxString.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class scratchDirectory
{
public:
    scratchDirectory()
    {
        mPath = std::filesystem::canonical(std::filesystem::temp_directory_path()) /
                ("qx" + std::to_string(std::random_device()()));
        std::filesystem::create_directory(mPath);
    }
    scratchDirectory(const scratchDirectory&) = delete;
    scratchDirectory& operator=(const scratchDirectory&) = delete;
    ~scratchDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    std::filesystem::path path(const std::string& name) const { return mPath / name; }

    // Names as the library takes them; `name` is UTF-8.
    qx::string name() const { return qx::string::fromUtf8(mPath.string()); }
    qx::string name(const std::string& entry) const { return qx::string::fromUtf8(path(entry).string()); }

    void write(const std::string& entry, const std::string& content) const
    {
        std::ofstream(path(entry), std::ios::binary) << content;
    }

    std::string read(const std::string& entry) const
    {
        std::ifstream stream(path(entry), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

private:
    std::filesystem::path mPath;
};
