#pragma once

#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace quillet {

/// A file in which the kernel tells figures: opened at the first reading, kept open, and read anew
/// from its start each time. Opened again when it stood for something that went away.
class KernelFile {
public:
    explicit KernelFile(std::filesystem::path path) : m_path(std::move(path)) {}
    ~KernelFile() { close(); }
    KernelFile(const KernelFile&) = delete;
    KernelFile& operator=(const KernelFile&) = delete;

    /// What it says now, as far as that fits the buffer; absent where it cannot be read.
    std::optional<std::string_view> read(std::span<char> buffer);

    /// For files that hold one number. Absent also where there is something else.
    template<typename Number>
    std::optional<Number> readNumber(int base = 10);

private:
    std::optional<std::string_view> readOpened(std::span<char> buffer) const;
    void close();

    std::filesystem::path m_path;
    int m_descriptor = -1;
};

/// Takes the next word off the text; empty at its end.
std::string_view takeWord(std::string_view& text);

/// The rest of the line that begins with this word.
std::optional<std::string_view> lineOf(std::string_view text, std::string_view word);

/// Absent unless the word is nothing but a number that fits.
template<typename Number>
std::optional<Number> toNumber(std::string_view word, int base = 10) {
    Number number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number, base);
    if (error != std::errc() || end != word.data() + word.size())
        return std::nullopt;
    return number;
}

template<typename Number>
std::optional<Number> KernelFile::readNumber(int base) {
    std::array<char, 64> buffer;
    auto text = read(buffer);
    if (!text)
        return std::nullopt;
    std::string_view word = takeWord(*text);
    if (base == 16 && word.starts_with("0x"))
        word.remove_prefix(2);
    return toNumber<Number>(word, base);
}

} // namespace quillet
