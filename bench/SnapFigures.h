#pragma once

namespace quillet {

class FigureTable;

/// How long a window takes to its place after the keys were pressed, in the program at work on a
/// desktop of its own. Needs a QCoreApplication.
void measureSnapping(FigureTable& table);

} // namespace quillet
