#include "filelist/FileListModel.h"

#include "filelist/FileListSupport.h"
#include "support/PdfBuilder.h"

#include <QMimeData>
#include <memory>

namespace quillfern {
namespace {

class Model : public testing::Test
{
  protected:
    [[nodiscard]] QVariant at(int row, int column, int role = Qt::DisplayRole) const
    {
        return model_.data(model_.index(row, column), role);
    }

    Scratch scratch_;
    FileList files_;
    std::atomic<bool> isProcessing_ = false;
    FileListModel model_{files_, isProcessing_};
};

TEST_F(Model, ShowsAFileAcrossItsColumns)
{
    files_.append({itemAt(scratch_.write(u"a.Pdf"_s, numberedPdf(3)))});
    const QStringList identifiers = words("isselected name pages sizeInKB type dateModified dateCreated "
                                          "dateAccessed location");
    ASSERT_EQ(model_.columnCount(), identifiers.size());
    for (int column = 0; column < model_.columnCount(); ++column)
        EXPECT_EQ(FileListModel::columnIdentifier(column), identifiers[column]);
    EXPECT_EQ(at(0, FileListModel::NameColumn), u"a.Pdf"_s);
    EXPECT_EQ(at(0, FileListModel::PagesColumn), 3);
    EXPECT_EQ(at(0, FileListModel::SizeColumn), u"4 KB"_s);
    EXPECT_EQ(at(0, FileListModel::TypeColumn), u"Pdf"_s);
    EXPECT_EQ(at(0, FileListModel::LocationColumn), scratch_.path());
    EXPECT_TRUE(at(0, FileListModel::DateModifiedColumn).toString().endsWith(u'M')) << "a 12-hour clock";
    for (int column = 0; column < model_.columnCount(); ++column) {
        const auto alignment = at(0, column, Qt::TextAlignmentRole).value<Qt::Alignment>();
        EXPECT_EQ(alignment.testFlag(Qt::AlignRight), column == FileListModel::SizeColumn);
        const bool checkable = model_.flags(model_.index(0, column)).testFlag(Qt::ItemIsUserCheckable);
        EXPECT_EQ(checkable, column == FileListModel::IsSelectedColumn);
    }
    EXPECT_FALSE(model_.data(model_.index(1, 0)).isValid());
}

TEST_F(Model, ChecksByTheBoxAloneAndNeverWhileBusy)
{
    files_.append(itemsNamed(words("a.pdf b.pdf")));
    int edits = 0;
    QObject::connect(&model_, &FileListModel::checkMarkEdited, [&] { ++edits; });
    const auto set = [&](int column, Qt::CheckState state, int role = Qt::CheckStateRole) {
        return model_.setData(model_.index(1, column), QVariant::fromValue(state), role);
    };
    EXPECT_TRUE(set(0, Qt::Unchecked));
    EXPECT_FALSE(files_.at(1).isSelected());
    EXPECT_TRUE(files_.at(0).isSelected());
    EXPECT_EQ(at(1, 0, Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Unchecked);
    EXPECT_FALSE(set(1, Qt::Checked));
    EXPECT_FALSE(set(0, Qt::Checked, Qt::EditRole));
    isProcessing_ = true;
    EXPECT_FALSE(set(0, Qt::Checked));
    EXPECT_FALSE(files_.at(1).isSelected());
    EXPECT_EQ(edits, 1);
}

TEST_F(Model, DoesNotSortWhileBusyAndKeepsTheOrderWithoutAColumn)
{
    files_.append(itemsNamed(words("b.pdf a.pdf")));
    isProcessing_ = true;
    model_.sort(FileListModel::NameColumn, Qt::AscendingOrder);
    EXPECT_EQ(namesOf(files_), words("b.pdf a.pdf"));
    EXPECT_FALSE(files_.order().has_value());
    isProcessing_ = false;
    model_.sort(FileListModel::NameColumn, Qt::AscendingOrder);
    EXPECT_EQ(namesOf(files_), words("a.pdf b.pdf"));
    model_.sort(-1);
    EXPECT_EQ(namesOf(files_), words("a.pdf b.pdf"));
    EXPECT_FALSE(files_.order().has_value());
    files_.sort({u"name"_s, true});
    isProcessing_ = true;
    model_.sort(-1);
    EXPECT_FALSE(files_.order().has_value()) << "or a running request would sort moved rows back";
}

TEST_F(Model, OffersWholeRowsToOtherProgramsInListOrder)
{
    files_.append({itemAt(u"/d/a b.pdf"_s), itemAt(u"/d/2.pdf"_s), itemAt(pathText("/d/latin\xE9.pdf"))});
    const std::unique_ptr<QMimeData> data(
        model_.mimeData({model_.index(2, 1), model_.index(0, 1), model_.index(2, 4), model_.index(0, 8)}));
    EXPECT_EQ(data->data(u"text/uri-list"_s), "file:///d/a%20b.pdf\r\nfile:///d/latin%E9.pdf\r\n");
    EXPECT_TRUE(model_.flags(model_.index(0, 3)).testFlag(Qt::ItemIsDragEnabled));
}

TEST_F(Model, TakesDropsOfFilesFromElsewhere)
{
    files_.append(itemsNamed(words("a.pdf")));
    QList<FilePath> dropped;
    QObject::connect(&model_, &FileListModel::filesDropped,
                     [&](const QList<FilePath>& paths) { dropped = paths; });
    const QUrl page(u"https://example.org/z.pdf"_s);
    QMimeData mixed;
    mixed.setUrls({asPath(u"/x/y.pdf"_s).url(), page, asPath(u"/x"_s).url()});
    QMimeData web;
    web.setUrls({page});
    QMimeData text;
    text.setText(u"/x/y.pdf"_s);
    const std::unique_ptr<QMimeData> own(model_.mimeData({model_.index(0, 1)}));
    FileList otherFiles;
    otherFiles.append(itemsNamed(words("o.pdf")));
    FileListModel otherWindow(otherFiles, isProcessing_);
    const std::unique_ptr<QMimeData> others(otherWindow.mimeData({otherWindow.index(0, 1)}));

    const Rows<const QMimeData*, bool, qsizetype> cases = {{&mixed, true, 2},
                                                           {&web, true, 0},
                                                           {&text, false, 0},
                                                           {own.get(), false, 0},
                                                           {others.get(), true, 1}};
    for (const auto& [data, accepted, urls] : cases) {
        dropped.clear();
        EXPECT_EQ(model_.canDropMimeData(data, Qt::CopyAction, -1, -1, {}), accepted);
        // The drop is never reported as taken: the rows come later, and a source that moves files must not
        // delete them.
        EXPECT_FALSE(model_.dropMimeData(data, Qt::CopyAction, -1, -1, {}));
        EXPECT_EQ(dropped.size(), urls);
    }
    isProcessing_ = true;
    dropped.clear();
    EXPECT_FALSE(model_.canDropMimeData(&mixed, Qt::CopyAction, -1, -1, {}));
    model_.dropMimeData(&mixed, Qt::CopyAction, -1, -1, {});
    EXPECT_TRUE(dropped.isEmpty());
}

} // namespace
} // namespace quillfern
