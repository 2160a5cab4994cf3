#pragma once

#include <QString>

namespace quillet {

/// Text from elsewhere made fit for one line of a terminal: runs of white space, line ends and
/// control characters become one space, characters that change direction or have no shape go.
QString printable(QStringView text);

/// How much room printable text takes in a line of a terminal.
int columns(QStringView text);

/// Printable text for at most `length` columns, with an ellipsis where there was more. Looks at
/// no more of the text than it needs.
QString preview(QStringView text, int length);

} // namespace quillet
