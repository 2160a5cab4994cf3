#include "app/StandardStreams.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

bool complain(const char* what) {
    if (errno != EPIPE)
        printError(QString::fromUtf8(what) + QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

bool writeOutput(const char* bytes, size_t count) {
    while (count > 0) {
        const ssize_t written = write(STDOUT_FILENO, bytes, count);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return complain("cannot write the output: ");
        bytes += written;
        count -= size_t(written);
    }
    return true;
}

} // namespace

void printError(const QString& line) {
    printPlainError(u"quillet: "_s + line);
}

void printPlainError(const QString& line) {
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
}

bool printOutput(const QByteArray& bytes) {
    return writeOutput(bytes.constData(), size_t(bytes.size()));
}

bool copyToStandardOutput(int file) {
    std::array<char, 64 * 1024> block;
    off_t position = 0;
    // The file's own position belongs to the process that opened it.
    for (;;) {
        const ssize_t count = pread(file, block.data(), block.size(), position);
        if (count < 0)
            return complain("cannot read the output: ");
        if (count == 0)
            return true;
        if (!writeOutput(block.data(), size_t(count)))
            return false;
        position += count;
    }
}

} // namespace quillet
