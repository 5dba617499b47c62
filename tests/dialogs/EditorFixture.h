#pragma once

#include "config/StampListOperations.h"
#include "dialogs/StampEditors.h"
#include "support/Fakes.h"
#include "support/Widgets.h"

#include <QApplication>
#include <QCheckBox>
#include <QTest>
#include <memory>

namespace quillfern {

/// Editors over a configuration, whose owner keeps the stamps that are not in the list.
class EditorFixture : public testing::Test, public StampHost, public NumberingDelegate
{
  protected:
    void SetUp() override { number.setDelegate(this); }
    void TearDown() override
    {
        number.stamps.clear();
        held.clear();
        editors.removeOrphans();
        settle();
        for (const QWidget* window : QApplication::topLevelWidgets())
            EXPECT_FALSE(window->inherits("quillfern::StampEditorWindow")) << "a window outlives its stamp";
    }

    void addStamp(IStampItem& stamp) override
    {
        ++added;
        for (const auto& each : held)
            if (each.get() == &stamp) StampListOperations(number).addStamp(each);
    }
    void removeStamp(IStampItem& stamp) override
    {
        ++removed;
        StampListOperations(number, [this](const IStampItem& gone) {
            editors.removehandlers(gone);
        }).removeStamp(stamp, {});
        held.clear(); // the stamp is gone when this returns
    }
    void stampRenamed(IStampItem&) override { ++renamed; }
    void PropertyChanged(Numbering&) override { ++told; }

    /// A stamp that is not in the list, or is.
    template <class Stamp>
    Stamp& newStamp(bool listed = false)
    {
        auto stamp = std::make_shared<Stamp>();
        if (listed)
            number.stamps.push_back(stamp);
        else
            held.push_back(stamp);
        return *stamp;
    }

    /// The stamp of newStamp() as its owner holds it.
    std::shared_ptr<IStampItem> owner(const IStampItem& stamp) const
    {
        for (const StampList* list : {&number.stamps, &held})
            for (const auto& each : *list)
                if (each.get() == &stamp) return each;
        throw std::runtime_error("nobody holds this stamp");
    }

    /// Opens the editor of a stamp and returns its active window.
    template <class Window, class Stamp>
    Window& edit(Stamp& stamp)
    {
        main.show();
        main.activateWindow();
        QCoreApplication::processEvents();
        editors.edit(owner(stamp));
        QCoreApplication::processEvents();
        const auto active = [] { return dynamic_cast<Window*>(QApplication::activeWindow()); };
        if (!QTest::qWaitFor([&] { return active() != nullptr; }))
            throw std::runtime_error("no editor came up");
        told = renamed = 0;
        return *active();
    }

    static void type(QWidget& field, const char* keys)
    {
        field.setFocus();
        QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&field, QString::fromUtf8(keys));
    }
    static void click(QWidget& button)
    {
        // A check box is wider than the part of it that can be clicked.
        const QPoint mark(8, button.height() / 2);
        QTest::mouseClick(&button, Qt::LeftButton, {}, qobject_cast<QCheckBox*>(&button) ? mark : QPoint());
    }

    /// Handles posted events and deferred deletions.
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    Numbering number;
    FakePanels panels;
    FakeAlerts alerts;
    QWidget main; ///< the active window when an editor is opened
    StampEditors editors{number, *this, panels, alerts, nullptr};
    StampList held;
    int told = 0;    ///< changes that the preview shows
    int renamed = 0; ///< changes that lists show
    int added = 0;
    int removed = 0;
};

} // namespace quillfern
