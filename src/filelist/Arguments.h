#pragma once

#include "platform/system/FilePath.h"

namespace quillfern {

/// One request to gather files.
struct Arguments
{
    QList<FilePath> urls;   ///< those of files and folders; others are left out where URLs come in
    bool isFolders = false; ///< walk folders and test extensions; otherwise take every one as a file
    bool isIncludeSubdirectories = false;
};

} // namespace quillfern
