#include "bench/peers/lines.h"

#include <fstream>
#include <stdexcept>

std::vector<std::string> read_lines(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("Cannot read " + std::string(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (!line.empty())
            lines.push_back(line);
    }
    return lines;
}
