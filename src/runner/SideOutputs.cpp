#include "runner/SideOutputs.h"

#include "config/PreviewModel.h"
#include "platform/drawing/TextShaper.h"
#include "platform/pageimages/RenderProcess.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Failure.h"
#include "stamps/PageCompositor.h"

#include <QBuffer>

namespace quillfern {

namespace {

/// Remembers whether the page that was asked for could be shown.
class WitnessedPages final : public pageimages::PageImageSource
{
  public:
    explicit WitnessedPages(pageimages::PageImageSource& source) : source_(source) {}

    std::optional<pageimages::PageImage> page(const pageimages::PageImageRequest& request) override
    {
        auto shown = source_.page(request);
        isShown = shown.has_value();
        return shown;
    }

    bool isShown = true;

  private:
    pageimages::PageImageSource& source_;
};

} // namespace

bool drawPreview(JobConfiguration job, const FileList& files, const QSize& size, const FilePath& path)
{
    job.isLivePreview = true;
    PreviewState state;
    for (FileItem& file : files.copies()) {
        if (job.options.usePasswords) file.countUnlocked(job.options.password);
        state.filePagesList.push_back(file.pages());
    }
    if (!files.empty()) {
        state.selectedFile = 0;
        state.selectedPath = files.at(0).filePath();
    }
    state.size = size;

    pageimages::RenderProcess renderer(pageimages::RenderProcess::installedProgram());
    WitnessedPages pages(renderer);
    drawing::TextShaper shaper;
    PageCompositor(job.stamps, shaper).requireFont();
    Preview preview(shaper, pages);
    const auto image = PreviewModel(preview).PropertyChanged(job, state);
    if (!image || image->isNull()) throw Failure(QStringLiteral("the preview cannot be drawn"));
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image->save(&buffer, "PNG"))
        throw Failure(QStringLiteral("the preview cannot be written as PNG"));
    store::AtomicFile::writeWhole(path, png);
    return pages.isShown;
}

} // namespace quillfern
