#include "hotkeys/Shortcut.h"

#include <algorithm>
#include <array>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

struct KeyName {
    quint16 keyCode;
    QStringView name;
};

constexpr auto specialKeys = std::to_array<KeyName>({
    {49, u"Space"}, {36, u"↩"},    {48, u"⇥"},    {51, u"⌫"},   {53, u"⎋"},   {123, u"←"},
    {124, u"→"},    {126, u"↑"},   {125, u"↓"},   {122, u"F1"}, {120, u"F2"}, {99, u"F3"},
    {118, u"F4"},   {96, u"F5"},   {97, u"F6"},   {98, u"F7"},  {100, u"F8"}, {101, u"F9"},
    {109, u"F10"},  {103, u"F11"}, {111, u"F12"},
});

/// So that a shifted digit goes by its digit. The codes of this row are not consecutive.
constexpr auto keyCodeNames = std::to_array<KeyName>({
    {18, u"1"},
    {19, u"2"},
    {20, u"3"},
    {21, u"4"},
    {23, u"5"},
    {22, u"6"},
    {26, u"7"},
    {28, u"8"},
    {25, u"9"},
    {29, u"0"},
});

struct Modifier {
    qint64 bit;
    quint64 flag;
    char16_t glyph;
};

/// In the order in which they are written.
constexpr auto modifierKeys = std::to_array<Modifier>({
    {ModifierKey::controlKey, ModifierFlag::control, u'⌃'},
    {ModifierKey::optionKey, ModifierFlag::option, u'⌥'},
    {ModifierKey::shiftKey, ModifierFlag::shift, u'⇧'},
    {ModifierKey::cmdKey, ModifierFlag::command, u'⌘'},
});

template<size_t count>
QString find(const std::array<KeyName, count>& table, quint16 keyCode) {
    const auto row = std::ranges::find(table, keyCode, &KeyName::keyCode);
    return row != table.end() ? row->name.toString() : QString();
}

QString nameFor(const KeyDown& event) {
    if (const QString name = find(specialKeys, event.keyCode); !name.isNull())
        return name;
    if (const QString digit = find(keyCodeNames, event.keyCode); !digit.isNull())
        return digit;
    return event.charactersIgnoringModifiers ? event.charactersIgnoringModifiers->toUpper()
                                             : u"?"_s;
}

std::optional<qint64> integer(const QJsonValue& value) {
    // toInteger() answers with its default for whatever is not a whole number in range.
    const qint64 number = value.toInteger(0);
    return number == value.toInteger(1) ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<Shortcut> Shortcut::fromEvent(const KeyDown& event) {
    qint64 mask = 0;
    for (const Modifier& modifier : modifierKeys) {
        if (event.modifierFlags & modifier.flag)
            mask |= modifier.bit;
    }
    if (!(mask & (ModifierKey::cmdKey | ModifierKey::optionKey | ModifierKey::controlKey)))
        return {};
    return Shortcut{event.keyCode, mask, nameFor(event)};
}

std::optional<Shortcut> Shortcut::fromJson(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto keyCode = integer(object["keyCode"_L1]);
    const auto modifiers = integer(object["modifiers"_L1]);
    const QJsonValue keyName = object["keyName"_L1];
    if (!keyCode || !modifiers || !keyName.isString())
        return {};
    return Shortcut{*keyCode, *modifiers, keyName.toString()};
}

QByteArray Shortcut::toJson() const {
    const QJsonObject object{
        {u"keyCode"_s, keyCode}, {u"modifiers"_s, modifiers}, {u"keyName"_s, keyName}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString Shortcut::display() const {
    QString text;
    for (const Modifier& modifier : modifierKeys) {
        if (modifiers & modifier.bit)
            text += modifier.glyph;
    }
    return text + keyName;
}

} // namespace quillet
