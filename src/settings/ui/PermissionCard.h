#pragma once

#include "app/look/Buttons.h"
#include "settings/Permissions.h"

namespace quillet {

/// One permission: what it is for, whether it is given, and, while it is not, how to give it. Why
/// it is not, is told to whoever points at it: it may be that nothing the user does gives it.
class PermissionCard : public QWidget {
    Q_OBJECT

public:
    PermissionCard(const Look& look, Permissions& permissions, Permissions::Kind kind,
                   QWidget* parent = nullptr);

    /// The height that the state of the permission asks for.
    QSize sizeHint() const override;

    /// Shows the state of the moment; to be called when it has changed, before the size is asked.
    void showState();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// A line of advice under the separator.
    struct HelpRow {
        QString symbol;
        QStringList lines;
        Button* button; ///< null for a warning
        int top;
        int height;
        int middle() const { return top + height / 2; }
    };

    void listHelp();
    void addHelp(const QString& symbol, const QString& text, Button* button);
    void placeButtons();
    void paintState(QPainter& painter) const;
    void paintHelp(QPainter& painter, const HelpRow& row) const;
    bool isGranted() const { return m_permissions.isGranted(m_kind); }

    Look m_look;
    Permissions& m_permissions;
    Permissions::Kind m_kind;
    Button m_continue;
    Button m_reveal;
    Button m_restart;
    std::vector<HelpRow> m_help;
};

} // namespace quillet
