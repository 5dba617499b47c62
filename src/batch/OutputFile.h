#pragma once

#include "filelist/FileItem.h"
#include "platform/system/FilePath.h"

#include <optional>
#include <vector>

namespace quillfern {

/// One planned output document and the inputs that feed it, in order.
class OutputFile
{
  public:
    /// Sets both fields, but only when both arguments are present.
    void initWithData(const std::optional<FilePath>& filename,
                      const std::optional<std::vector<FileItem>>& items)
    {
        if (!filename || !items) return;
        filename_ = *filename;
        fileItems_ = *items;
    }

    [[nodiscard]] const FilePath& filename() const { return filename_; }
    [[nodiscard]] const std::vector<FileItem>& fileItems() const { return fileItems_; }

  private:
    FilePath filename_;
    std::vector<FileItem> fileItems_;
};

} // namespace quillfern
