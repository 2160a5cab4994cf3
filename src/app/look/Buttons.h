#pragma once

#include "app/look/ButtonPainting.h"
#include "app/look/ControlTracker.h"

#include <QLabel>
#include <QPushButton>

namespace quillet {

/// A button with a word on it. The widget is larger than the button by the shadow's reach.
class Button : public QPushButton {
    Q_OBJECT

public:
    Button(const Look& look, ButtonKind kind, const QString& text, QWidget* parent = nullptr,
           ButtonSize size = ButtonSize::medium);

    static constexpr int margin = 2;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    Look m_look;
    ButtonKind m_kind;
    ButtonSize m_size;
    ControlTracker m_tracker;
};

/// A button with a symbol on it; `help` is its tooltip and its name for those who do not see it.
class SymbolButton : public QPushButton {
    Q_OBJECT

public:
    SymbolButton(const Look& look, const QString& symbol, const QString& help,
                 QWidget* parent = nullptr, double fontSize = 12);

    void setSymbol(const QString& symbol);
    QSize sizeHint() const override { return {28, 28}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    Look m_look;
    QString m_symbol;
    double m_fontSize;
    ControlTracker m_tracker;
};

/// One of several filters. Checkable; who is checked is its owner's business.
class Chip : public QPushButton {
    Q_OBJECT

public:
    Chip(const Look& look, const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void nextCheckState() override {} // clicks report; the owner decides

private:
    Look m_look;
    ControlTracker m_tracker;
};

/// A shortcut as printed on keys.
class KeyCap : public QLabel {
    Q_OBJECT

public:
    KeyCap(const Look& look, const QString& keys, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Look m_look;
};

} // namespace quillet
