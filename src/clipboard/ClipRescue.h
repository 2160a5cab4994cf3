#pragma once

#include "clipboard/ClipFiles.h"
#include "clipboard/ClipItem.h"

#include <QDateTime>
#include <vector>

namespace quillet {

/// Tells whether a history can be used, and starts over from what can be read of one that cannot.
namespace ClipRescue {

enum class Health {
    healthy,
    damaged,    ///< not a database, or one that contradicts itself
    newer,      ///< written by a later version of this program
    unavailable ///< cannot be read at present
};

/// Examines the database without changing anything.
Health examine(const ClipFiles& files, QString& problem);

/// Keeps the database beside, with the date in its name, and puts a fresh one in its place that
/// has every row that can be read. Files of clips that are not among those rows are kept with it.
/// False when the disk did not allow it; everything is still there then.
bool startOver(const ClipFiles& files, Health health, const QDateTime& now);

/// Ends a rescue that a crash interrupted.
void finishInterrupted(const ClipFiles& files);

/// Every row that can be read of a database, damaged or not.
std::vector<ClipItem::Fields> readableRows(const QString& databasePath, const QString& blobFolder);

} // namespace ClipRescue

} // namespace quillet
