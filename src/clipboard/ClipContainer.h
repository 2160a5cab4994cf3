#pragma once

#include "clipboard/ClipContext.h"
#include "clipboard/ClipFiles.h"
#include "clipboard/SqliteConnection.h"
#include "clipboard/WalCheckpointer.h"

#include <QFile>

namespace quillet {

/// The store of all items on disk: a database, and beside it a folder with the content that is too
/// large for it. Owns the connection; one
/// container of whatever process is open on a folder at a time.
class ClipContainer {
public:
    struct Opening {
        std::unique_ptr<ClipContainer> container; ///< null when the folder cannot be used
        QString error;
    };

    /// Opens the history in a folder, which is made where it does not exist. A history that is
    /// damaged or of a later version is kept beside and what can be read of it carried over.
    static Opening open(const QString& folder, Scheduler& scheduler);

    ClipContext& mainContext() { return m_context; }

private:
    ClipContainer(ClipFiles files, std::unique_ptr<QFile> lock, Scheduler& scheduler);
    bool prepare();
    void removeOrphans();

    ClipFiles m_files;
    std::unique_ptr<QFile> m_lock;
    SqliteConnection m_database;
    WalCheckpointer m_checkpointer;
    ClipContext m_context;
};

} // namespace quillet
