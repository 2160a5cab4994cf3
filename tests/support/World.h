#pragma once

#include "clipboard/ClipboardStore.h"
#include "clipboard/ClipContainer.h"
#include "imaging/Png.h"
#include "platform/memory/MemoryPasteboard.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemorySoundPlayer.h"
#include "platform/memory/MemoryWorkspace.h"
#include "settings/Sounds.h"

#include <QTemporaryDir>

namespace quillet {

/// A picture of one colour.
inline QByteArray plainPng(QSize size = {60, 40}, const QColor& color = Qt::darkCyan) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return encodePng(image);
}

/// Can keep background work waiting, as a busy machine does.
class BusyScheduler : public MemoryScheduler {
public:
    void background(Task work, Task done) override {
        if (m_isBusy)
            m_waiting.emplace_back(std::move(work), std::move(done));
        else
            MemoryScheduler::background(std::move(work), std::move(done));
    }

    void holdBackground() { m_isBusy = true; }

    void releaseBackground() {
        m_isBusy = false;
        for (auto& [work, done] : std::exchange(m_waiting, {}))
            MemoryScheduler::background(std::move(work), std::move(done));
    }

private:
    bool m_isBusy = false;
    std::vector<std::pair<Task, Task>> m_waiting;
};

/// A desktop in memory with the clipboard history at work on it, stored in a temporary folder.
class World {
public:
    World() {
        sounds.registerDefaults();
        launch();
    }

    /// Quits Quillet and starts it again over the same data and preferences.
    void relaunch() {
        quit();
        launch();
    }

    void quit() {
        store.reset();
        container.reset();
    }

    void launch() {
        auto opening = ClipContainer::open(dataFolder(), scheduler);
        if (!opening.container)
            qFatal("The history did not open: %s", qPrintable(opening.error));
        container = std::move(opening.container);
        store = std::make_unique<ClipboardStore>(container->mainContext(), pasteboard, preferences,
                                                 scheduler, workspace, sounds);
        store->start();
        letPoll();
    }

    /// Lets time pass until whatever was copied has been noticed and recorded.
    void letPoll() { scheduler.advance(std::chrono::seconds(1)); }

    void copy(std::vector<MemoryPasteboard::Item> items) {
        pasteboard.copyFrom(std::move(items));
        letPoll();
    }
    void copy(const QString& text) { copy({{PasteboardType::string, text.toUtf8()}}); }

    const std::shared_ptr<ClipItem>& newest() const { return store->items().front(); }

    /// The texts of the history, newest first; null where an item has none.
    QStringList texts() const {
        QStringList texts;
        for (const auto& item : store->items())
            texts.append(item->text().value_or(QString()));
        return texts;
    }

    size_t soundsPlayed() const { return soundPlayer.plays.size(); }

    QString dataFolder() const { return m_folder.filePath(QStringLiteral("data")); }

    BusyScheduler scheduler;
    MemoryPreferences preferences;
    MemoryPasteboard pasteboard;
    MemoryWorkspace workspace;
    MemorySoundPlayer soundPlayer{scheduler};
    Sounds sounds{preferences, soundPlayer, scheduler};

private:
    QTemporaryDir m_folder;

public:
    std::unique_ptr<ClipContainer> container;
    std::unique_ptr<ClipboardStore> store;
};

} // namespace quillet
