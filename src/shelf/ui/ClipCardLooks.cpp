#include "shelf/ui/ClipCardLooks.h"
#include "shelf/CardTexts.h"

#include <QCoreApplication>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype filesShown = 4;
constexpr qsizetype fileIconsKept = 200;
constexpr int fileIconPixels = 44;

} // namespace

ClipCardLooks::ClipCardLooks(AppIconStore& applications, ClipPreviews& previews,
                             const Workspace& workspace, const Scheduler& scheduler)
    : m_applications(applications),
      m_previews(previews),
      m_workspace(workspace),
      m_scheduler(scheduler),
      m_fileIcons(fileIconsKept) {}

ClipCardLook ClipCardLooks::look(const ClipItem& item, int index) {
    ClipCardLook look;
    look.kind = item.kind();
    look.tint = m_applications.tint(item.sourceBundleID());
    look.icon = m_applications.icon(item.sourceBundleID());
    look.label = kindLabel(look.kind);
    look.date = relativeDate(item.createdAt(), m_scheduler.now());
    look.badge = quickPasteBadge(index);
    look.isPinned = item.isPinned();
    if (look.kind == ClipItem::Kind::file)
        addFiles(look, item);
    else
        addPreview(look, item);
    return look;
}

void ClipCardLooks::addPreview(ClipCardLook& look, const ClipItem& item) {
    const auto preview = m_previews.preview(item);
    if (!preview)
        return;
    look.text = preview->text;
    switch (look.kind) {
    case ClipItem::Kind::text:
    case ClipItem::Kind::file:
        look.footer = characterFooter(preview->characters);
        return;
    case ClipItem::Kind::link:
        look.host = linkHost(look.text);
        look.footer = look.label;
        return;
    case ClipItem::Kind::color:
        look.swatch = colorFromHex(look.text).value_or(Qt::gray);
        look.footer = look.label;
        return;
    case ClipItem::Kind::image:
        look.thumbnail = preview->thumbnail;
        look.footer = imageFooter(preview->pixels);
        return;
    }
}

void ClipCardLooks::addFiles(ClipCardLook& look, const ClipItem& item) {
    const QStringList& paths = item.filePaths();
    for (const QString& path : paths.first(std::min(filesShown, paths.size())))
        look.files.push_back({path.section(u'/', -1), fileIcon(path)});
    look.furtherFiles = paths.size() - static_cast<qsizetype>(look.files.size());
    look.footer = fileFooter(paths.size());
}

QImage ClipCardLooks::fileIcon(const QString& path) {
    if (const QImage* known = m_fileIcons.object(path))
        return *known;
    const QImage icon = m_workspace.icon(path, fileIconPixels);
    if (!icon.isNull())
        m_fileIcons.insert(path, std::make_unique<QImage>(icon).release());
    return icon;
}

QString ClipCardLooks::accessibleName(const ClipItem& item, const ClipCardLook& look, int index,
                                      qsizetype count) {
    const auto tr = [](const char* text) { return QCoreApplication::translate("ClipCard", text); };
    QStringList parts;
    parts.append(item.sourceAppName() ? tr("%1 from %2").arg(look.label, *item.sourceAppName())
                                      : look.label);
    parts.append(look.date);
    if (look.isPinned)
        parts.append(tr("pinned"));
    parts.append(tr("%1 of %2").arg(index + 1).arg(count));
    return parts.join(u", "_s);
}

} // namespace quillet
