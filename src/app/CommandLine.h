#pragma once

#include "platform/system/FilePath.h"

#include <QList>
#include <QString>

namespace quillfern {

/// What the command line of the program with a window asks for.
struct CommandLine
{
    QList<FilePath> files; ///< files and folders to begin with
    bool showHelp = false;
    bool showVersion = false;
    QString problem; ///< what is wrong with the command line; empty for a good one
};

/// Reads the command line, whatever the bytes of its names are. Qt's own options are a problem until the
/// application object has taken them out.
[[nodiscard]] CommandLine readCommandLine(int argc, char** argv);

[[nodiscard]] QString commandLineHelp();

} // namespace quillfern
