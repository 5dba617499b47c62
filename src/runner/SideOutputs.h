#pragma once

#include "config/JobConfiguration.h"
#include "filelist/FileList.h"
#include "platform/system/FilePath.h"

#include <QSize>

namespace quillfern {

/// Draws the preview that the window would show of the first file, or of a blank page when there is no file,
/// into a PNG file of at most `size` pixels. Returns false when the file cannot be shown and a blank page was
/// drawn instead. Throws Failure when nothing can be drawn or written.
bool drawPreview(JobConfiguration job, const FileList& files, const QSize& size, const FilePath& path);

} // namespace quillfern
