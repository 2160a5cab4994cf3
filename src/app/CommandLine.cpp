#include "app/CommandLine.h"

#include "app/Printable.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

enum Option : unsigned { none = 0, json = 1, limit = 2, plain = 4, keepPinned = 8, watch = 16 };
enum class Operand { none, clip, choice, choiceOrNone };

struct Row {
    Verb verb;
    QStringList words;
    Operand operand;
    unsigned options;
    QString synopsis;
    QString help;          ///< empty: not for people
    QStringList choices{}; ///< the words that may stand as the operand
};

QStringList switching() {
    return {u"on"_s, u"off"_s, u"toggle"_s};
}

const QList<Row>& rows() {
    static const QList<Row> table{
        {Verb::status,
         {u"status"_s},
         Operand::none,
         none,
         u"status"_s,
         u"say as JSON what runs and what it can do here"_s},
        {Verb::clipList,
         {u"clip"_s, u"list"_s},
         Operand::none,
         json | limit,
         u"clip list [--json] [--limit N]"_s,
         u"show the history, newest first"_s},
        {Verb::clipCopy,
         {u"clip"_s, u"copy"_s},
         Operand::clip,
         plain,
         u"clip copy ID|N [--plain]"_s,
         u"put a clip back on the clipboard"_s},
        {Verb::clipShow,
         {u"clip"_s, u"show"_s},
         Operand::clip,
         none,
         u"clip show ID|N"_s,
         u"write a clip's bytes to standard output"_s},
        {Verb::clipPin,
         {u"clip"_s, u"pin"_s},
         Operand::clip,
         none,
         u"clip pin ID|N"_s,
         u"pin a clip, or unpin it"_s},
        {Verb::clipDelete,
         {u"clip"_s, u"delete"_s},
         Operand::clip,
         none,
         u"clip delete ID|N"_s,
         u"forget a clip"_s},
        {Verb::clipClear,
         {u"clip"_s, u"clear"_s},
         Operand::none,
         keepPinned,
         u"clip clear [--keep-pinned]"_s,
         u"forget all clips"_s},
        {Verb::shelfShow,
         {u"shelf"_s, u"show"_s},
         Operand::none,
         none,
         u"shelf show"_s,
         u"open the shelf on the screen with the pointer"_s},
        {Verb::shelfHide,
         {u"shelf"_s, u"hide"_s},
         Operand::none,
         none,
         u"shelf hide"_s,
         u"close it"_s},
        {Verb::shelfToggle,
         {u"shelf"_s},
         Operand::none,
         none,
         u"shelf"_s,
         u"open it, or close it where it is open"_s},
        {Verb::snap,
         {u"snap"_s},
         Operand::choice,
         none,
         u"snap left|right|top|bottom|maximize|center|restore|next-display"_s,
         u"move and size the active window"_s,
         {u"left"_s, u"right"_s, u"top"_s, u"bottom"_s, u"maximize"_s, u"center"_s, u"restore"_s,
          u"next-display"_s}},
        {Verb::awakeOn,
         {u"awake"_s, u"on"_s},
         Operand::choiceOrNone,
         none,
         u"awake on [30m|1h|2h|4h]"_s,
         u"keep awake, for that long or until switched off"_s,
         {u"30m"_s, u"1h"_s, u"2h"_s, u"4h"_s}},
        {Verb::awakeOff,
         {u"awake"_s, u"off"_s},
         Operand::none,
         none,
         u"awake off"_s,
         u"sleep as usual"_s},
        {Verb::awakeToggle,
         {u"awake"_s, u"toggle"_s},
         Operand::none,
         none,
         u"awake toggle"_s,
         u"the other of the two"_s},
        {Verb::awakeAllowDisplaySleep,
         {u"awake"_s, u"--allow-display-sleep"_s},
         Operand::choice,
         none,
         u"awake --allow-display-sleep on|off"_s,
         u"whether the screen may turn off meanwhile"_s,
         {u"on"_s, u"off"_s}},
        {Verb::dark,
         {u"dark"_s},
         Operand::choice,
         none,
         u"dark on|off|toggle"_s,
         u"the desktop's dark appearance"_s,
         switching()},
        {Verb::icons,
         {u"icons"_s},
         Operand::choice,
         none,
         u"icons on|off|toggle"_s,
         u"icons on the desktop"_s,
         switching()},
        {Verb::hidden,
         {u"hidden"_s},
         Operand::choice,
         none,
         u"hidden on|off|toggle"_s,
         u"hidden files in the file manager"_s,
         switching()},
        {Verb::displaySleep,
         {u"display-sleep"_s},
         Operand::none,
         none,
         u"display-sleep"_s,
         u"turn the screen off now"_s},
        {Verb::keyboardLock,
         {u"keyboard-lock"_s},
         Operand::none,
         none,
         u"keyboard-lock"_s,
         u"lock the keyboard for 45 seconds, to clean it"_s},
        {Verb::stats,
         {u"stats"_s},
         Operand::none,
         json | watch,
         u"stats [--json] [--watch]"_s,
         u"show processor, memory, network and battery"_s},
        {Verb::setup, {u"setup"_s}, Operand::none, none, u"setup"_s, u"open the setup guide"_s},
        {Verb::quit, {u"quit"_s}, Operand::none, none, u"quit"_s, u"end the running Quillet"_s},
        {Verb::version,
         {u"--version"_s},
         Operand::none,
         none,
         u"--version"_s,
         u"print the version"_s},
        {Verb::service, {u"--service"_s}, Operand::none, none, {}, {}},
    };
    return table;
}

QStringList verbsOfGroup(const QString& group) {
    QStringList verbs;
    for (const Row& row : rows()) {
        if (row.words.size() == 2 && row.words.first() == group)
            verbs << row.words.last();
    }
    return verbs;
}

UsageError unknownVerb(const QStringList& arguments) {
    const QString first = arguments.first();
    const QStringList group = verbsOfGroup(first);
    if (!group.isEmpty())
        return {u"\"%1\" needs one of: %2"_s.arg(first, group.join(u", "_s))};
    if (first.startsWith(u'-'))
        return {u"unknown option \"%1\" (see quillet --help)"_s.arg(printable(first))};
    return {u"unknown verb \"%1\" (see quillet --help)"_s.arg(printable(first))};
}

std::optional<int> wholeNumberFromOne(const QString& text) {
    const bool digits =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    const int number = digits ? text.toInt() : 0;
    return number >= 1 ? std::optional(number) : std::nullopt;
}

std::optional<ClipReference> clipReference(const QString& text) {
    if (const auto number = wholeNumberFromOne(text))
        return *number;
    const QUuid id = QUuid::fromString(text);
    // The parser of ids overlooks what follows a complete one.
    const QString lower = text.toLower();
    if (!id.isNull() && (id.toString() == lower || id.toString(QUuid::WithoutBraces) == lower))
        return id;
    return std::nullopt;
}

/// Consumes the words after a verb.
class Reader {
public:
    Reader(const Row& row, const QStringList& words) : m_row(row), m_words(words) {
        m_command.verb = row.verb;
    }

    std::variant<Command, UsageError> read() {
        while (!m_words.isEmpty() && m_error.isEmpty()) {
            const QString word = m_words.takeFirst();
            if (word.startsWith(u'-'))
                readOption(word);
            else
                readOperand(word);
        }
        if (m_error.isEmpty() && m_row.operand == Operand::clip && !m_command.clip)
            m_error = u"\"%1\" needs the number or the id of a clip"_s.arg(name());
        if (m_error.isEmpty() && m_row.operand == Operand::choice && m_command.choice.isEmpty())
            m_error = u"\"%1\" needs one of: %2"_s.arg(name(), m_row.choices.join(u", "_s));
        if (!m_error.isEmpty())
            return UsageError{m_error};
        return m_command;
    }

private:
    QString name() const { return m_row.words.join(u' '); }
    bool accepts(Option option) const { return (m_row.options & option) != 0; }

    void readOption(const QString& word) {
        if (word == u"--json"_s && accepts(json))
            m_command.json = true;
        else if (word == u"--plain"_s && accepts(plain))
            m_command.plain = true;
        else if (word == u"--keep-pinned"_s && accepts(keepPinned))
            m_command.keepPinned = true;
        else if (word == u"--watch"_s && accepts(watch))
            m_command.watch = true;
        else if (word == u"--limit"_s && accepts(limit))
            readLimit(m_words.isEmpty() ? QString() : m_words.takeFirst());
        else if (word.startsWith(u"--limit="_s) && accepts(limit))
            readLimit(word.section(u'=', 1));
        else
            m_error = u"\"%1\" has no option \"%2\""_s.arg(name(), printable(word));
    }

    void readLimit(const QString& text) {
        m_command.limit = wholeNumberFromOne(text);
        if (!m_command.limit)
            m_error = u"\"--limit\" needs a whole number from 1"_s;
    }

    void readOperand(const QString& word) {
        if (m_row.operand == Operand::none || m_command.clip || !m_command.choice.isEmpty()) {
            m_error = u"\"%1\" has no use for \"%2\""_s.arg(name(), printable(word));
            return;
        }
        if (!m_row.choices.isEmpty())
            return readChoice(word);
        m_command.clip = clipReference(word);
        if (!m_command.clip)
            m_error = u"\"%1\" is neither the number nor the id of a clip"_s.arg(printable(word));
    }

    void readChoice(const QString& word) {
        if (m_row.choices.contains(word))
            m_command.choice = word;
        else
            m_error = u"\"%1\" needs one of: %2"_s.arg(name(), m_row.choices.join(u", "_s));
    }

    const Row& m_row;
    QStringList m_words;
    Command m_command;
    QString m_error;
};

/// What is too long for its column has a line of its own.
QString helpLine(const QString& synopsis, const QString& help) {
    constexpr int column = 35;
    const QString line = u"  quillet %1%2%3\n"_s;
    const QString gap = synopsis.size() < column ? QString() : u'\n' + QString(column + 10, u' ');
    return line.arg(synopsis, -column).arg(gap, help);
}

} // namespace

std::variant<Command, UsageError> parseCommandLine(const QStringList& arguments) {
    if (arguments.isEmpty())
        return Command{};
    if (arguments.contains(u"--help"_s) || arguments.contains(u"-h"_s)) {
        Command help{.verb = Verb::help};
        if (!verbsOfGroup(arguments.first()).isEmpty())
            help.topic = arguments.first();
        else if (!arguments.first().startsWith(u'-') &&
                 std::ranges::none_of(rows(), [&](const Row& row) {
                     return row.words.first() == arguments.first();
                 }))
            return unknownVerb(arguments);
        return help;
    }
    for (const Row& row : rows()) {
        if (arguments.first(std::min(arguments.size(), row.words.size())) == row.words)
            return Reader(row, arguments.sliced(row.words.size())).read();
    }
    return unknownVerb(arguments);
}

QString helpText(const QString& topic) {
    QString text;
    if (topic.isEmpty())
        text = u"Quillet keeps the history of your clipboard, and more tools at hand.\n\n"_s +
               helpLine({}, u"start, and stay"_s);
    for (const Row& row : rows()) {
        if (!row.help.isEmpty() && (topic.isEmpty() || row.words.first() == topic))
            text += helpLine(row.synopsis, row.help);
    }
    return text +
           u"\nN counts from 1, newest first; ID is the id that \"clip list --json\" shows.\n"
           "Exit status: 0 done, 1 failed, 2 usage.\n"_s;
}

} // namespace quillet
