#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>

/// A file being written that does not fail silently.
class OutputFile
{
public:
    explicit OutputFile(const std::filesystem::path &path)
        : path_(path),
          stream_(path, std::ios::binary | std::ios::trunc)
    {
        check();
    }

    template <typename Text>
    OutputFile &operator<<(const Text &text)
    {
        stream_ << text;
        return *this;
    }

    /// @throws std::runtime_error when not everything has reached the file.
    void close()
    {
        stream_.close();
        check();
    }

private:
    void check() const
    {
        if (!stream_)
            throw std::runtime_error("Cannot write " + path_.string());
    }

    std::filesystem::path path_;
    std::ofstream stream_;
};
