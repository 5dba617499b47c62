#include "runner/SideOutputs.h"

#include "config/PreviewModel.h"
#include "platform/drawing/TextShaper.h"
#include "platform/preview/RenderProcess.h"
#include "platform/store/AtomicFile.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"

#include <QBuffer>

namespace quillfern {

namespace {

/// Remembers whether the page that was asked for could be shown.
class WitnessedPages final : public PageImageSource
{
  public:
    explicit WitnessedPages(PageImageSource& source) : source_(source) {}

    std::optional<PageImage> page(const PageImageRequest& request) override
    {
        auto shown = source_.page(request);
        isShown = shown.has_value();
        return shown;
    }

    bool isShown = true;

  private:
    PageImageSource& source_;
};

} // namespace

void saveProfile(const Numbering& number, const FilePath& path)
{
    const auto record = number.getData();
    if (!record) throw Failure(QStringLiteral("the configuration cannot be saved"));
    AtomicFile::writeWhole(path, writePropertyList(*record));
}

bool drawPreview(Numbering& number, const FileList& files, const QSize& size, const FilePath& path)
{
    number.setIsLivePreview(true);
    PreviewState state;
    for (const FileItem* file : files.items())
        state.filePagesList.push_back(file->pages());
    if (!files.empty()) {
        state.selectedFile = 0;
        state.selectedPath = files.at(0).filePath();
    }
    state.size = size;

    RenderProcess renderer(RenderProcess::installedProgram());
    WitnessedPages pages(renderer);
    TextShaper shaper;
    Preview preview(number, shaper, pages);
    const auto image = PreviewModel(number, preview).PropertyChanged(state);
    if (!image || image->isNull()) throw Failure(QStringLiteral("the preview cannot be drawn"));
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image->save(&buffer, "PNG"))
        throw Failure(QStringLiteral("the preview cannot be written as PNG"));
    AtomicFile::writeWhole(path, png);
    return pages.isShown;
}

} // namespace quillfern
