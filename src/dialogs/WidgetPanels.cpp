#include "dialogs/WidgetPanels.h"

#include "platform/system/FileFacts.h"
#include "platform/system/Folders.h"
#include "platform/system/NativePath.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QStandardPaths>

namespace quillfern {

namespace {

QWidget* windowOf(QObject* over)
{
    auto* const widget = qobject_cast<QWidget*>(over);
    return widget ? widget->window() : nullptr;
}

/// Qt's folder dialog returns one folder only, although its views let several be selected.
class OpenDialog final : public QFileDialog
{
  public:
    using QFileDialog::QFileDialog;

    /// Comes before anything else is set, because that goes to the desktop's dialog where there is one.
    void letPickSeveral()
    {
        setOption(DontUseNativeDialog);
        setFileMode(Directory);
        for (const char* const name : {"listView", "treeView"})
            if (auto* const view = findChild<QAbstractItemView*>(QLatin1String(name))) {
                view->setSelectionMode(QAbstractItemView::ExtendedSelection);
                view_ = view;
            }
    }

    /// The folders that are selected in the view, unless another one is typed. The dialog itself reads
    /// its line of text, where a quote in a name looks like the quotes around a name.
    [[nodiscard]] QStringList pickedFolders() const
    {
        QStringList paths;
        const auto* const line = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (view_ && !(line && line->isModified()))
            for (const QModelIndex& row : view_->selectionModel()->selectedRows())
                if (row.parent() == view_->rootIndex())
                    paths.append(row.data(QFileSystemModel::FilePathRole).toString());
        return paths.isEmpty() ? selectedFiles() : paths;
    }

    void accept() override
    {
        if (view_ && pickedFolders() != selectedFiles())
            done(Accepted); // QFileDialog::accept() would read the line of text instead
        else
            QFileDialog::accept();
    }

  private:
    QAbstractItemView* view_ = nullptr; ///< our own child; none where the desktop's dialog is used
};

} // namespace

void WidgetPanels::open(QObject* over, const desktop::OpenPanel& panel,
                        std::function<void(const QList<FilePath>&)> chosen)
{
    const QString kind =
        panel.folders ? QStringLiteral("folders") : QStringLiteral("open ") + panel.types.join(u' ');
    auto* const dialog = new OpenDialog(windowOf(over), panel.message);
    if (panel.folders && panel.multiple)
        dialog->letPickSeveral();
    else if (panel.folders)
        dialog->setFileMode(QFileDialog::Directory);
    else
        dialog->setFileMode(panel.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    prepare(*dialog, kind);
    if (panel.folders) {
        dialog->setOption(QFileDialog::ShowDirsOnly);
    } else {
        QStringList patterns = panel.types;
        if (panel.anyCase) // for the desktops' dialogs, which compare with case
            for (const QString& type : panel.types)
                patterns.append(type.toUpper());
        dialog->setNameFilter(nameFilter(patterns));
        if (!panel.anyCase) dialog->setFilter(dialog->filter() | QDir::CaseSensitive);
    }
    QObject::connect(
        dialog, &QDialog::accepted, dialog, [this, dialog, kind, panel, chosen = std::move(chosen)] {
            QList<FilePath> paths;
            for (const QString& text : panel.folders ? dialog->pickedFolders() : dialog->selectedFiles())
                paths.append(FilePath::fromText(text));
            if (!panel.folders && !panel.types.isEmpty())
                paths.removeIf([&](const FilePath& path) {
                    return !panel.types.contains(path.extension(),
                                                 panel.anyCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
                });
            if (paths.isEmpty()) return;
            remember(kind, paths.constLast());
            chosen(paths);
        });
    dialog->open();
}

void WidgetPanels::save(QObject* over, const desktop::SavePanel& panel,
                        std::function<void(const FilePath&)> chosen)
{
    const QString kind = QStringLiteral("save ") + panel.type;
    auto* const dialog = new QFileDialog(windowOf(over), panel.message);
    prepare(*dialog, kind);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setNameFilter(nameFilter({panel.type}));
    dialog->setDefaultSuffix(panel.type);
    dialog->selectFile(panel.name);
    QObject::connect(dialog, &QDialog::accepted, dialog,
                     [this, dialog, kind, panel, chosen = std::move(chosen)] {
                         FilePath path = FilePath::fromText(dialog->selectedFiles().value(0));
                         if (path.isEmpty()) return;
                         // The dialog takes the text after a point for an extension, as in "Version 1.2", and
                         // then adds no extension.
                         const QString ending = u'.' + panel.type;
                         if (!path.name().endsWith(ending, Qt::CaseInsensitive)) {
                             path = path.parent().child(path.name() + ending);
                             if (!mayReplace(dialog->parentWidget(), path)) return;
                         }
                         remember(kind, path);
                         chosen(path);
                     });
    dialog->open();
}

void WidgetPanels::prepare(QFileDialog& dialog, const QString& kind) const
{
    FilePath folder = lastFolders_.value(kind);
    if (fileKind(folder) != FileKind::Folder)
        folder = FilePath::fromText(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    if (fileKind(folder) != FileKind::Folder) folder = homeFolder();
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setOption(QFileDialog::HideNameFilterDetails); // the types can be a long list
    dialog.setDirectory(folder.text());
}

void WidgetPanels::remember(const QString& kind, const FilePath& path)
{
    lastFolders_.insert(kind, path.parent());
}

QString WidgetPanels::nameFilter(const QStringList& types)
{
    if (types.isEmpty()) return tr("All files") + QStringLiteral(" (*)");
    QStringList patterns;
    QStringList distinct;
    for (const QString& type : types) {
        patterns.append(QStringLiteral("*.") + type);
        if (!distinct.contains(type, Qt::CaseInsensitive)) distinct.append(type);
    }
    QString name = tr("Supported files");
    if (distinct.size() == 1) {
        const bool isText = distinct.constFirst().compare(QLatin1String("txt"), Qt::CaseInsensitive) == 0;
        name = isText ? tr("Text files") : tr("%1 files").arg(distinct.constFirst().toUpper());
    }
    return QStringLiteral("%1 (%2)").arg(name, patterns.join(u' '));
}

bool WidgetPanels::mayReplace(QWidget* over, const FilePath& path)
{
    if (fileKind(path) == FileKind::Missing) return true;
    return QMessageBox::warning(
               over, QString(),
               tr("%1 already exists.\nDo you want to replace it?").arg(readableName(path.name())),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

} // namespace quillfern
