#include "app/AppFixture.h"

#include "app/TableRows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

namespace quillfern {

AppTest::AppTest() : folders(scratch.path(u"home"_s))
{
    QDir().mkpath(outFolder());
    QDir().mkpath(scratch.path(u"home"_s));
}

AppTest::~AppTest() = default;

void AppTest::start()
{
    app_.reset();
    app_ = std::make_unique<QuillfernAppDelegate>(
        AppServices{clock, folders, *store, mainThread, desktop, panels, alerts,
                    qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern-render"_s,
                    asPath(scratch.path(u"help.pdf"_s)), makeProcessors, filesAtOnce});
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
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(asPath(path).url());
    return dropOn(*ui().mainTableView->viewport(), urls);
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
    return dialog && dialog->objectName() == "ProgressSheet"_L1 ? dialog : nullptr;
}

std::shared_ptr<TextStamp> AppTest::addStamp(const char* format)
{
    auto stamp = std::make_shared<TextStamp>();
    stamp->number.numberFormat = QString::fromUtf8(format);
    stamp->setMarginAnchor(MarginAnchor::BottomMiddle);
    number().stamps.push_back(stamp);
    number().endUpdate(true);
    return stamp;
}

void AppTest::convert()
{
    ui().outputFolderPath->setText(outFolder());
    press(window(), "convertBtn");
    ASSERT_NE(sheet(), nullptr);
    QApplication::setActiveWindow(sheet());
}

void AppTest::waitForEnd()
{
    waitFor([this] { return sheet() && partOf<QAbstractButton>(*sheet(), "closeProcessBtn").isEnabled(); },
            "the job does not end");
}

void AppTest::press(const QWidget& in, const char* button)
{
    auto& found = partOf<QAbstractButton>(in, button);
    ASSERT_TRUE(found.isEnabled()) << button;
    // Only a part of a check box's width reacts to clicks.
    QTest::mouseClick(&found, Qt::LeftButton, {}, QPoint(std::min(9, found.width() / 2), found.height() / 2));
}

} // namespace quillfern
