#include "filelist/FileListCommands.h"

#include "filelist/FileListSupport.h"
#include "filelist/IncludeSubfolders.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

namespace quillfern {
namespace {

using Rows = std::vector<int>;

class Commands : public testing::Test, public FileListView
{
  public:
    void resetView(bool idle) override
    {
        EXPECT_TRUE(idle);
        notes_.append(QStringLiteral("reset"));
    }
    void updateTotalLabel() override { notes_.append(QStringLiteral("totals")); }
    bool confirm(const QString& message) override
    {
        EXPECT_EQ(message, QStringLiteral("Are you sure to remove all file(s)?"));
        notes_.append(QStringLiteral("asked"));
        return answer_;
    }
    void selectRows(const std::vector<int>& rows) override { selected_ = rows; }
    void selectMovedRows(const std::vector<int>& rows, int scrollTo) override
    {
        selected_ = rows;
        scrolledTo_ = scrollTo;
    }
    void applyPassword(const QList<FilePath>& paths, const QString& password) override
    {
        for (const FilePath& path : paths)
            notes_.append(path.name() + u' ' + password);
    }

  protected:
    Commands() { files_.append(itemsNamed(words("a.pdf b.tif c.PDF d.jpg e.TIFF"))); }

    [[nodiscard]] QString marks() const
    {
        QString text;
        for (int row = 0; row < files_.count(); ++row)
            text += files_.at(row).isSelected() ? u'x' : u'-';
        return text;
    }

    FileList files_;
    FakeDesktop desktop_;
    FileListCommands commands_{files_, *this, desktop_};
    QStringList notes_;
    Rows selected_;
    int scrolledTo_ = -1;
    bool answer_ = true;
};

const QStringList changed = {QStringLiteral("reset"), QStringLiteral("totals")};

TEST_F(Commands, MarksByTag)
{
    const std::vector<std::tuple<int, Rows, const char*, const char*>> cases = {
        {2, {1, 3}, "x-x-x", "selection"},
        {1, {1}, "xxx-x", "selection"},
        {3, {0, 1, 3}, "--xxx", "selection"},
        {7, {0, 1}, "--xxx", "selection"},
        {3, {}, "xx---", "all"},
        {1, {}, "xxxxx", "all"},
        {2, {}, "-----", "all"},
        {0, {}, "-----", "all"},
        {1, {}, "-----", "selection"},
    };
    for (const auto& [tag, rows, expected, which] : cases) {
        notes_.clear();
        if (QByteArray(which) == "all")
            commands_.checkUncheckInvertAll(tag);
        else
            commands_.checkUncheckInvertSelection(tag, rows);
        EXPECT_EQ(marks(), QString::fromLatin1(expected)) << which << ' ' << tag;
        EXPECT_EQ(notes_, changed);
    }
    notes_.clear();
    commands_.invertMarks({4});
    EXPECT_EQ(marks(), QStringLiteral("----x"));
    EXPECT_EQ(notes_, QStringList{QStringLiteral("totals")}) << "the space bar leaves the controls alone";
}

TEST_F(Commands, SelectsAndRemovesByTag)
{
    commands_.selectDeselectRemoveAll(1, {});
    EXPECT_EQ(selected_, (Rows{0, 1, 2, 3, 4}));
    commands_.selectDeselectRemoveAll(2, {1, 2});
    EXPECT_EQ(selected_, Rows{0}) << "not an empty selection";
    EXPECT_TRUE(notes_.isEmpty());
    commands_.selectDeselectRemoveAll(4, {0, 4});
    EXPECT_EQ(namesOf(files_), words("b.tif c.PDF d.jpg"));
    EXPECT_EQ(notes_, changed);
    notes_.clear();
    answer_ = false;
    commands_.selectDeselectRemoveAll(3, {});
    EXPECT_EQ(files_.count(), 3);
    EXPECT_EQ(notes_, QStringList{QStringLiteral("asked")});
    answer_ = true;
    commands_.selectDeselectRemoveAll(3, {});
    EXPECT_TRUE(files_.empty());
    commands_.selectDeselectRemoveAll(2, {});
    EXPECT_TRUE(selected_.empty());
}

TEST_F(Commands, RemoveTellsOfAChangeOnlyWhenThereIsOne)
{
    commands_.removeFiles({});
    EXPECT_TRUE(notes_.isEmpty());
    commands_.removeFiles({1, 2, 3});
    EXPECT_EQ(namesOf(files_), words("a.pdf e.TIFF"));
    EXPECT_EQ(notes_, changed);
}

TEST_F(Commands, MovesSelectAndScroll)
{
    commands_.moveDown({0, 1, 3});
    EXPECT_EQ(namesOf(files_), words("c.PDF a.pdf b.tif e.TIFF d.jpg"));
    EXPECT_EQ(selected_, (Rows{1, 2, 4}));
    EXPECT_EQ(scrolledTo_, 4);
    EXPECT_FALSE(commands_.canMoveDown(selected_));
    commands_.moveDown(selected_);
    EXPECT_EQ(namesOf(files_), words("c.PDF a.pdf b.tif e.TIFF d.jpg")) << "the last row blocks them all";
    commands_.moveUp({1, 2, 4});
    EXPECT_EQ(namesOf(files_), words("a.pdf b.tif c.PDF d.jpg e.TIFF"));
    EXPECT_EQ(scrolledTo_, 0);
    EXPECT_FALSE(commands_.canMoveUp(selected_));
    EXPECT_FALSE(commands_.canMoveUp({}));
    EXPECT_TRUE(commands_.canMoveUp({1}));
}

TEST_F(Commands, TellsWhatIsSelected)
{
    const std::vector<std::tuple<Rows, bool, bool>> cases = {{{}, false, false},   {{3}, false, false},
                                                             {{1}, false, true},   {{3, 4}, false, true},
                                                             {{2, 3}, true, true}, {{0}, true, true}};
    for (const auto& [rows, pdf, multiPage] : cases) {
        EXPECT_EQ(commands_.containsPDFFiles(rows), pdf);
        EXPECT_EQ(commands_.containsMultiPageFiles(rows), multiPage);
    }
}

TEST_F(Commands, PasswordsGoToTheSelectedPdfFilesOnly)
{
    commands_.updatePDFReadPassword(std::nullopt, {0, 2});
    EXPECT_TRUE(notes_.isEmpty());
    commands_.updatePDFReadPassword(QStringLiteral("secret"), {0, 1, 2, 4});
    EXPECT_EQ(notes_, (QStringList{QStringLiteral("a.pdf secret"), QStringLiteral("c.PDF secret")}));
}

TEST_F(Commands, TheDesktopIsHandedThePaths)
{
    commands_.openFiles({0, 1});
    commands_.openEnclodingFolder({1, 3});
    commands_.getInfo({2});
    const QStringList paths = words("/nowhere/a.pdf /nowhere/b.tif");
    EXPECT_EQ(desktop_.opened, paths);
    EXPECT_EQ(desktop_.revealed, QList<QStringList>{words("/nowhere/b.tif /nowhere/d.jpg")});
    EXPECT_EQ(desktop_.shownProperties, QList<QStringList>{words("/nowhere/c.PDF")});
}

TEST(IncludeSubfolders, IsWrittenAtEveryChange)
{
    MemoryDefaults store;
    IncludeSubfolders preference(store);
    EXPECT_FALSE(preference.inculdeSubfolders());
    preference.setInculdeSubfolders(true);
    EXPECT_TRUE(preference.inculdeSubfolders());
    EXPECT_EQ(store.flushes, 1);
    EXPECT_TRUE(store.values.at(QStringLiteral("INCLUDESUBFOLDERS")) == store::RecordValue(true));
    store.setValue(QStringLiteral("INCLUDESUBFOLDERS"), std::int64_t{0}); // another writer's way to say no
    EXPECT_FALSE(preference.inculdeSubfolders());
}

} // namespace
} // namespace quillfern
