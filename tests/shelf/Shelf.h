#pragma once

#include "app/look/CommandKeys.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryHotKeys.h"
#include "platform/memory/MemoryKeySynthesis.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryScreens.h"
#include "shelf/ui/ShelfController.h"
#include "support/World.h"

namespace quillet {

/// The shelf on a desktop in memory.
struct Shelf {
    World world;
    MemoryPanels panels;
    MemoryScreens screens;
    MemoryKeySynthesis keys;
    MemoryAccess access;
    Theme theme;
    ThumbnailCache thumbnails;
    AppIconStore applications{world.workspace};
    QTemporaryDir folder;
    DragFiles dragFiles{folder.filePath(QStringLiteral("drag"))};
    MemoryHotKeys keyboard{world.scheduler};
    CommandKeys commandKeys{keyboard};
    int setupGuides = 0;

    ShelfView::Services services{
        *world.store, world.pasteboard, world.workspace, world.sounds,
        applications, thumbnails,       dragFiles,       {theme, world.scheduler, panels}};
    Toast toast{services.look, screens};
    ShelfController controller{{services, screens, keys, access, toast}, [this] { ++setupGuides; }};

    MemoryPanel& panel() { return *panels.panelOf(controller.window()); }
    ShelfModel& model() { return controller.model(); }
    ShelfView& view() { return *controller.window().findChild<ShelfView*>(); }

    void advance(int milliseconds) {
        world.scheduler.advance(std::chrono::milliseconds(milliseconds));
    }
};

} // namespace quillet
