#pragma once

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace quillfern {

/// A part of a window by its name, which has to be there.
template <class Widget>
Widget& partOf(const QWidget& window, const char* name)
{
    auto* found = window.findChild<Widget*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("the window has no ") + name);
    return *found;
}

/// Drops data on a widget, from a source that proposes to move them, as with Shift held down. Returns whether
/// the widget accepts the drag; fails the test when it takes the data away from where they are.
inline bool dropOn(QWidget& widget, const QMimeData& data,
                   Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
{
    const QPoint place(20, 20);
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier);
    enter.ignore();
    QApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted()) return false;
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier);
    move.setDropAction(enter.dropAction());
    move.accept();
    QApplication::sendEvent(&widget, &move);
    if (!move.isAccepted()) return false;
    EXPECT_EQ(move.dropAction(), Qt::CopyAction) << "what is dropped must never be moved away";
    QDropEvent dropped(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(&widget, &dropped);
    EXPECT_TRUE(!dropped.isAccepted() || dropped.dropAction() == Qt::CopyAction);
    return true;
}

inline bool dropOn(QWidget& widget, const QList<QUrl>& urls)
{
    QMimeData data;
    data.setUrls(urls);
    return dropOn(widget, data);
}

} // namespace quillfern
