#pragma once

#include "batch/PdfProcessing.h"
#include "batch/Process.h"
#include "batch/StagedProcessors.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"

namespace quillfern {

/// Whole jobs over files below `in`, into `out`.
class JobFixture : public PdfProcessing, public ProcessObserver
{
  protected:
    JobFixture()
    {
        EXPECT_TRUE(folders.createApplicationUsersFolder(u"Logs"_s));
        EXPECT_TRUE(QDir().mkpath(scratch.path(u"out"_s)));
        settings.outputFolderPath = scratch.path(u"out"_s);
        settings.isOpenFolderAfterConversion = false;
    }

    /// Lists a file, with its pages counted.
    void list(const QString& path)
    {
        files.push_back(FileItem::initWithURL(asPath(path)).value());
        files.back().setPdfOpenPassword(std::nullopt);
    }
    void add(const QString& name, const QByteArray& bytes) { list(scratch.write(name, bytes)); }
    void add(const QString& name, int pages) { add(name, pages > 0 ? numberedPdf(pages) : "no document"); }

    ProcessServices services() { return {clock, folders, thread, desktop}; }

    Process& run(int filesAtOnce)
    {
        results.clear();
        ProcessServices given = services();
        given.filesAtOnce = filesAtOnce;
        if (makeProcessors) given.makeProcessors = makeProcessors;
        process = std::make_unique<Process>(given, planJob(files, settings), *this);
        process->start();
        return *process;
    }

    [[nodiscard]] QStringList filesIn(const QString& folder) const
    {
        return QDir(scratch.path(folder)).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    void updateTimeTakenLabel(const QString& text) override { labels.append(text); }
    void outputFinished(const LogFiles& output) override
    {
        const auto& remark = output.outcome.remark;
        results.append(output.filename + u' ' + statusWord(output.outcome) +
                       (remark ? u' ' + remark->shown : QString()));
    }

    FakeFolders folders{scratch.path()};
    FakeClock clock;
    SameThread thread;
    FakeDesktop desktop;
    Settings settings;
    std::vector<FileItem> files;
    QStringList labels;
    QStringList results;                      ///< name, status and remark of each file
    DocumentProcessorsFactory makeProcessors; ///< other ones than the real ones
    std::unique_ptr<Process> process;
};

} // namespace quillfern
