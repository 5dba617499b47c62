#pragma once

#include "platform/system/FilePath.h"

#include <QList>

namespace quillfern {

/// One request to gather files.
struct Arguments
{
    QList<FilePath> urls;   ///< paths of files and folders; URLs of anything else were left out before
    bool isFolders = false; ///< walk folders and test extensions; otherwise take every one as a file
    bool isIncludeSubdirectories = false;
};

} // namespace quillfern
