#pragma once

#include <QString>

namespace quillet {

/// Where the history lies within the data folder.
struct ClipFiles {
    QString folder;

    QString database() const { return folder + QStringLiteral("/clips.sqlite"); }
    QString blobs() const { return folder + QStringLiteral("/blobs"); }

    QString lock() const { return folder + QStringLiteral("/lock"); }

    /// A new database in the making; complete once the old one is out of the way.
    QString rescued() const { return folder + QStringLiteral("/clips-rescued.sqlite"); }
};

} // namespace quillet
