#pragma once

#include "filelist/FileList.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QString>

namespace quillfern {

class Clock;

/// The list as tab-delimited text in UTF-8: a header line and one line for each item, fields as they are.
/// Dates are "yyyy-MM-dd HH:mm:ss +0000", absent ones "(null)".
[[nodiscard]] QByteArray exportedList(const FileList& files);

/// Writes exportedList() whole to a file. On a failure a line is written to the system log and an existing
/// file stays as it was. Returns whether the file was written.
bool exportList(const FileList& files, const FilePath& path);

/// The name proposed for an export made now.
[[nodiscard]] QString exportFileName(const Clock& clock);

} // namespace quillfern
