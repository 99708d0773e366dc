#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace ondavia::testing {

/// What a process that will be killed says it has stored, a line each. A line is written once the store has
/// kept what it names, so that whoever reads the log may ask for all of it.
class AcknowledgedLog final {
public:
    explicit AcknowledgedLog(const char* file)
        : m_file(::open(file, O_WRONLY | O_CREAT | O_APPEND, 0600)) {}

    void append(const std::string& text) const {
        const std::string line = text + "\n";
        if (::write(m_file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
            std::abort();
        }
    }

    /// Only whole lines: the kill may have cut the last one.
    static std::vector<std::string> read(const std::filesystem::path& file) {
        std::ifstream stream(file);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        std::vector<std::string> lines;
        for (std::size_t begin = 0, end = 0; (end = text.find('\n', begin)) != std::string::npos;
             begin = end + 1) {
            lines.push_back(text.substr(begin, end - begin));
        }
        return lines;
    }

private:
    int m_file;
};

} // namespace ondavia::testing
