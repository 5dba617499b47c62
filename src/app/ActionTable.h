#pragma once

#include "app/WindowActions.h"

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <array>
#include <span>

namespace quillfern {

/// The keys of a command: those that the desktop has for a standard command, or up to two of its own.
struct ActionKeys
{
    constexpr ActionKeys() = default;
    constexpr explicit ActionKeys(QKeySequence::StandardKey key) : standard(key) {}
    constexpr explicit ActionKeys(QKeyCombination first, QKeyCombination second = Qt::Key_unknown)
        : own{first, second}
    {
    }
    [[nodiscard]] QList<QKeySequence> sequences() const;

    QKeySequence::StandardKey standard = QKeySequence::UnknownKey;
    std::array<QKeyCombination, 2> own = {Qt::Key_unknown, Qt::Key_unknown};
};

/// One command. Texts are source texts of the context "quillfern::Actions".
struct ActionRow
{
    QAction* WindowActions::*member;
    const char* name; ///< the action's object name
    const char* icon; ///< for themedIcon(); empty for none
    const char* text;
    const char* tip;
    ActionKeys keys;
    Needs needs;
    std::array<Spot, 3> spots;
    const char* shortText = nullptr; ///< under its picture in the toolbar
    int tag = 0;
    bool isOfFilesTable = false; ///< its keys work in the table of files only
};

[[nodiscard]] std::span<const ActionRow> actionTable();

} // namespace quillfern
