#include "app/ClipVerbs.h"

#include "app/ClipListing.h"
#include "clipboard/ClipboardStore.h"

#include <algorithm>
#include <ranges>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

using Clip = std::shared_ptr<ClipItem>;

const QString unreadable = u"the content of this clip cannot be read"_s;

Clip find(const ClipItems& clips, const ClipReference& reference) {
    if (const auto* number = std::get_if<int>(&reference)) {
        const auto index = size_t(*number) - 1;
        return index < clips.size() ? clips[index] : nullptr;
    }
    const auto found = std::ranges::find_if(
        clips, [&](const Clip& clip) { return clip->id() == std::get<QUuid>(reference); });
    return found != clips.end() ? *found : nullptr;
}

QString missing(const ClipReference& reference, size_t count) {
    if (std::holds_alternative<QUuid>(reference))
        return u"no clip has this id"_s;
    return u"there is no clip %1; the history has %2"_s.arg(std::get<int>(reference)).arg(count);
}

VerbResult list(const Command& command, const ClipItems& clips) {
    const size_t count = command.limit ? size_t(*command.limit) : clips.size();
    ClipSnapshot snapshot;
    for (const Clip& clip : clips | std::views::take(count))
        snapshot.push_back(*clip);
    VerbResult result = VerbResult::done();
    result.slowOutput = [json = command.json, snapshot = std::move(snapshot)] {
        return json ? clipsAsJson(snapshot) : clipsAsLines(snapshot);
    };
    return result;
}

VerbResult show(const ClipItem& clip) {
    if (clip.kind() == ClipItem::Kind::file)
        return VerbResult::done(clip.filePaths().join(u'\n').toUtf8());
    const auto source =
        clip.kind() == ClipItem::Kind::image ? clip.imageSource() : clip.textSource();
    const QByteArray content = source ? source() : QByteArray();
    if (content.isNull())
        return VerbResult::failed(unreadable);
    return VerbResult::done(content);
}

/// The history has changed in any case; what is not on disk is written with the next change.
VerbResult outcome(const ClipboardStore& store) {
    return store.hasUnsavedChanges()
               ? VerbResult::failed(u"the change could not be written to the disk yet"_s)
               : VerbResult::done();
}

} // namespace

VerbResult runClipVerb(const Command& command, ClipboardStore& store) {
    if (command.verb == Verb::clipList)
        return list(command, store.items());
    if (command.verb == Verb::clipClear) {
        store.clear(command.keepPinned);
        return outcome(store);
    }

    const Clip clip = find(store.items(), *command.clip);
    if (!clip)
        return VerbResult::failed(missing(*command.clip, store.items().size()));
    if (command.verb == Verb::clipShow)
        return show(*clip);
    if (command.verb == Verb::clipCopy && !clip->isContentReadable())
        return VerbResult::failed(unreadable);
    if (command.verb == Verb::clipCopy && !store.copyToPasteboard(clip, command.plain))
        return VerbResult::failed(u"another program does not let go of the clipboard"_s);
    if (command.verb == Verb::clipPin)
        store.togglePin(clip);
    if (command.verb == Verb::clipDelete)
        store.deleteItem(clip);
    return outcome(store);
}

} // namespace quillet
