#pragma once

#include "platform/pageimages/PageImage.h"

#include <QString>
#include <QtGlobal>
#include <optional>
#include <utility>

namespace quillfern::pageimages {

/// Renders pages with quillfern-render, one process for each page, so that a file that is hostile or merely
/// huge costs a bounded time and memory and cannot crash this program. Blocks until the page is there or the
/// time is up. For use from one thread.
class RenderProcess final : public PageImageSource
{
  public:
    struct Limits
    {
        int milliseconds = 2000;
        qint64 memoryBytes = qint64{2} << 30; ///< of address space
    };

    explicit RenderProcess(QString program) : RenderProcess(std::move(program), Limits()) {}
    RenderProcess(QString program, Limits limits);

    /// Where the program is installed: beside the running one.
    [[nodiscard]] static QString installedProgram();

    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override;

  private:
    QString program_;
    Limits limits_;
};

} // namespace quillfern::pageimages
