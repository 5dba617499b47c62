#include "app/WindowMemory.h"

#include "app/CustomTableView.h"
#include "app/FilesPane.h"
#include "app/MainWindow.h"
#include "app/StampsPane.h"

#include <QHeaderView>
#include <QScreen>
#include <QSplitter>

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
    const store::Record* record = stored ? stored->as<store::Record>() : nullptr;
    const QSize room = window.screen()->availableSize();
    if (!record) {
        window.resize(QSize(1240, 800).boundedTo(room - QSize(20, 60)).expandedTo(window.minimumSize()));
        return;
    }
    // Each of these restore functions returns false for bytes that another function has saved.
    const auto bytes = [&](const QString& name) { return record->bytes(name).value_or(QByteArray()); };
    window.restoreGeometry(bytes(geometryKey()));
    window.splitter().restoreState(bytes(splitterKey()));
    window.filesPane().table().horizontalHeader()->restoreState(bytes(filesKey()));
    window.stampsPane().table().horizontalHeader()->restoreState(bytes(stampsKey()));
}

void WindowMemory::remember(MainWindow& window)
{
    store::Record record;
    record.set(geometryKey(), window.saveGeometry());
    record.set(splitterKey(), window.splitter().saveState());
    record.set(filesKey(), window.filesPane().table().horizontalHeader()->saveState());
    record.set(stampsKey(), window.stampsPane().table().horizontalHeader()->saveState());
    defaults_.setValue(key(), record);
}

} // namespace quillfern
