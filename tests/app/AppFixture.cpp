#include "app/AppFixture.h"

#include "app/TableRows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>

namespace quillfern {

AppTest::AppTest() : folders(scratch.path(QStringLiteral("home")))
{
    QDir().mkpath(outFolder());
    QDir().mkpath(scratch.path(QStringLiteral("home")));
}

AppTest::~AppTest() = default;

void AppTest::start()
{
    app_.reset();
    app_ = std::make_unique<QuillfernAppDelegate>(
        AppServices{clock, folders, *store, mainThread, desktop, panels, alerts,
                    qEnvironmentVariable("QUILLFERN_BIN_DIR") + QStringLiteral("/quillfern-render"),
                    asPath(scratch.path(QStringLiteral("help.pdf"))), makeProcessors, filesAtOnce});
    QApplication::setActiveWindow(&window());
    QTest::qWait(1); // the window's first layout
}

void AppTest::quit()
{
    app_->applicationShouldTerminate();
    EXPECT_TRUE(app_->stop(20'000));
    app_.reset();
}

void AppTest::waitFor(const std::function<bool()>& condition, const char* what)
{
    EXPECT_TRUE(QTest::qWaitFor(condition, 60'000)) << what;
}

bool AppTest::drop(const QStringList& paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(asPath(path).url());
    data.setUrls(urls);
    QWidget* viewport = ui().mainTableView->viewport();
    const QPoint place(20, 20);
    // With Shift the source proposes a move.
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(viewport, &enter);
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(viewport, &move);
    if (!move.isAccepted()) return false;
    EXPECT_EQ(move.dropAction(), Qt::CopyAction) << "files must never be moved away from where they are";
    QDropEvent dropped(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(viewport, &dropped);
    EXPECT_TRUE(!dropped.isAccepted() || dropped.dropAction() == Qt::CopyAction);
    return true;
}

void AppTest::fill(const QStringList& paths)
{
    const int before = files().count();
    ASSERT_TRUE(drop(paths));
    waitFor([&] { return files().count() > before && !app_->isProcessing(); }, "no files came");
}

QString AppTest::pdf(const char* name, int pages) const
{
    return scratch.write(QString::fromUtf8(name), numberedPdf(pages));
}

QStringList AppTest::names()
{
    QStringList list;
    for (const FileItem* item : files().items())
        list.append(item->name());
    return list;
}

std::vector<int> AppTest::selectedFiles()
{
    return selectedRows(*ui().mainTableView);
}

void AppTest::select(const std::vector<int>& rows)
{
    selectRows(*ui().mainTableView, rows);
}

void AppTest::type(QLineEdit& field, const char* text)
{
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, QString::fromUtf8(text));
}

QDialog* AppTest::openDialog()
{
    for (QDialog* dialog : window().findChildren<QDialog*>())
        if (dialog->isVisible()) return dialog;
    return nullptr;
}

QDialog* AppTest::sheet()
{
    QDialog* dialog = openDialog();
    return dialog && dialog->objectName() == QLatin1String("ProgressSheet") ? dialog : nullptr;
}

void AppTest::press(const QWidget& in, const char* button)
{
    auto* found = in.findChild<QAbstractButton*>(QString::fromLatin1(button));
    ASSERT_NE(found, nullptr) << button;
    ASSERT_TRUE(found->isEnabled()) << button;
    // Only a part of a check box's width reacts to clicks.
    QTest::mouseClick(found, Qt::LeftButton, {},
                      QPoint(std::min(9, found->width() / 2), found->height() / 2));
}

} // namespace quillfern
