// The texts of this tree that tests read: sources, documents, examples.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

inline std::filesystem::path treeRoot()
{
    return std::filesystem::path(QX_TESTS_DIR).parent_path();
}

inline std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

inline std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
