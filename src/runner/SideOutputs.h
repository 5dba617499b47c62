#pragma once

#include "config/JobConfiguration.h"
#include "filelist/FileList.h"

#include <QSize>

namespace quillfern {

/// Draws what the window would show of the first file (the blank page when there is none) into a PNG file of
/// at most `size` pixels. Returns false when the file could not be shown and the blank page stands for it.
/// Throws Failure when nothing can be drawn or written.
bool drawPreview(JobConfiguration job, const FileList& files, const QSize& size, const FilePath& path);

} // namespace quillfern
