#pragma once

#include <optional>
#include <QStringList>
#include <QUuid>
#include <variant>

namespace quillet {

enum class Verb {
    start,   ///< be the running Quillet, or tell it that it was started again
    service, ///< the same without a word to the user; for verbs and for the session bus
    status,
    clipList,
    clipCopy,
    clipShow,
    clipPin,
    clipDelete,
    clipClear,
    shelfShow,
    shelfHide,
    shelfToggle,
    snap,
    awakeOn,
    awakeOff,
    awakeToggle,
    awakeAllowDisplaySleep,
    dark,
    icons,
    hidden,
    displaySleep,
    keyboardLock,
    stats,
    setup,
    quit,
    help,
    version
};

/// Which clip is meant: its place in the history, newest first, from 1, or its id.
using ClipReference = std::variant<int, QUuid>;

/// What a command line asks for. Fields that the verb has no use for keep their defaults.
struct Command {
    Verb verb = Verb::start;
    std::optional<ClipReference> clip{};
    std::optional<int> limit{};
    QString choice{}; ///< one of the words that the verb offers; empty where it may be left out
    bool json = false;
    bool plain = false;
    bool keepPinned = false;
    bool watch = false;
    QString topic{}; ///< of help: the first word of the verbs to explain; empty for all
    bool operator==(const Command&) const = default;
};

/// One line for the user, without the program's name.
struct UsageError {
    QString text;
};

std::variant<Command, UsageError> parseCommandLine(const QStringList& arguments);

QString helpText(const QString& topic);

} // namespace quillet
