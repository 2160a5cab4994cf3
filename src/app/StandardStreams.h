#pragma once

#include <QByteArray>
#include <QString>

namespace quillet {

/// One line on standard error, under the program's name.
void printError(const QString& line);

/// The same without the name, for a message with a wording of its own.
void printPlainError(const QString& line);

/// False when standard output did not take all of it. A reader that has seen enough and closed
/// its end is no error worth a word; any other gets a line on standard error.
bool printOutput(const QByteArray& bytes);

/// The same for a file's whole content.
bool copyToStandardOutput(int file);

} // namespace quillet
