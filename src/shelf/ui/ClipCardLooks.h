#pragma once

#include "shelf/AppIconStore.h"
#include "shelf/ClipPreviews.h"
#include "shelf/ui/ClipCardLook.h"

#include <QCache>

namespace quillet {

/// Makes the looks of cards out of items, and of what is known about their applications and files.
class ClipCardLooks {
public:
    ClipCardLooks(AppIconStore& applications, ClipPreviews& previews, const Workspace& workspace,
                  const Scheduler& scheduler);

    /// The look of the card at a position of the row, as far as it is known by now.
    ClipCardLook look(const ClipItem& item, int index);

    /// What assistive programs say of it.
    static QString accessibleName(const ClipItem& item, const ClipCardLook& look, int index,
                                  qsizetype count);

private:
    void addPreview(ClipCardLook& look, const ClipItem& item);
    void addFiles(ClipCardLook& look, const ClipItem& item);
    QImage fileIcon(const QString& path);

    AppIconStore& m_applications;
    ClipPreviews& m_previews;
    const Workspace& m_workspace;
    const Scheduler& m_scheduler;
    QCache<QString, QImage> m_fileIcons;
};

} // namespace quillet
