#pragma once

#include <QList>
#include <QUrl>

namespace quillfern {

/// One request to gather files.
struct Arguments
{
    QList<QUrl> urls;
    bool isFolders = false; ///< walk folders and test extensions; otherwise take every URL as a file
    bool isIncludeSubdirectories = false;
};

} // namespace quillfern
