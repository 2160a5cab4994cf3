#include "platform/linux/proc/KernelFile.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace quillet {

std::optional<std::string_view> KernelFile::read(std::span<char> buffer) {
    if (m_descriptor >= 0) {
        if (const auto text = readOpened(buffer))
            return text;
        close();
    }
    m_descriptor = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    return m_descriptor >= 0 ? readOpened(buffer) : std::nullopt;
}

std::optional<std::string_view> KernelFile::readOpened(std::span<char> buffer) const {
    // Long files come in pieces, of which each read gives one.
    std::size_t size = 0;
    while (size < buffer.size()) {
        const ssize_t piece = ::pread(m_descriptor, buffer.data() + size, buffer.size() - size,
                                      static_cast<off_t>(size));
        if (piece < 0)
            return std::nullopt;
        if (piece == 0)
            break;
        size += static_cast<std::size_t>(piece);
    }
    return std::string_view(buffer.data(), size);
}

void KernelFile::close() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

std::string_view takeWord(std::string_view& text) {
    constexpr std::string_view space = " \t\n";
    const std::size_t begin = std::min(text.find_first_not_of(space), text.size());
    const std::size_t end = std::min(text.find_first_of(space, begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return word;
}

std::optional<std::string_view> lineOf(std::string_view text, std::string_view word) {
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (takeWord(line) == word)
            return line;
    }
    return std::nullopt;
}

} // namespace quillet
