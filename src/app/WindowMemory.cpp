#include "app/WindowMemory.h"

#include "app/MainWindow.h"
#include "ui_MainWindow.h"

#include <QHeaderView>
#include <QScreen>

namespace quillfern {

namespace {

QString key()
{
    return QStringLiteral("WINDOW");
}
QString geometryKey()
{
    return QStringLiteral("geometry");
}
QString splitterKey()
{
    return QStringLiteral("splitter");
}
QString filesKey()
{
    return QStringLiteral("fileColumns");
}
QString stampsKey()
{
    return QStringLiteral("stampColumns");
}

} // namespace

void WindowMemory::restore(MainWindow& window) const
{
    const auto stored = defaults_.value(key());
    const Record* record = stored ? stored->as<Record>() : nullptr;
    const QSize room = window.screen()->availableSize();
    if (!record) {
        window.resize(QSize(1240, 800).boundedTo(room - QSize(20, 60)).expandedTo(window.minimumSize()));
        return;
    }
    // Each of these refuses bytes that are not its own.
    const auto bytes = [&](const QString& name) { return record->bytes(name).value_or(QByteArray()); };
    window.restoreGeometry(bytes(geometryKey()));
    window.ui().splitter->restoreState(bytes(splitterKey()));
    window.ui().mainTableView->horizontalHeader()->restoreState(bytes(filesKey()));
    window.ui().stampsTableView->horizontalHeader()->restoreState(bytes(stampsKey()));
}

void WindowMemory::remember(MainWindow& window)
{
    Record record;
    record.set(geometryKey(), window.saveGeometry());
    record.set(splitterKey(), window.ui().splitter->saveState());
    record.set(filesKey(), window.ui().mainTableView->horizontalHeader()->saveState());
    record.set(stampsKey(), window.ui().stampsTableView->horizontalHeader()->saveState());
    defaults_.setValue(key(), record);
}

} // namespace quillfern
