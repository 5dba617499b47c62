#pragma once

#include "config/Settings.h"
#include "filelist/FileList.h"

#include <QSize>

namespace quillfern {

/// Writes the configuration as a profile. Throws Failure when it cannot be written.
void saveProfile(const Numbering& number, const FilePath& path);

/// Draws what the window would show of the first file (the blank page when there is none) into a PNG file of
/// at most `size` pixels. Returns false when the file could not be shown and the blank page stands for it.
/// Throws Failure when nothing can be drawn or written.
bool drawPreview(Numbering& number, const FileList& files, const QSize& size, const FilePath& path);

} // namespace quillfern
