#pragma once

#include "config/Settings.h"
#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"
#include "runner/Report.h"

#include <QSize>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace quillfern {

/// The name of a list that stands for the standard input.
inline const QString standardInput = QStringLiteral("-");

/// What a command line of quillfern-run asks for.
struct RunnerOptions
{
    QStringList inputs; ///< files and folders, as given
    /// Text files of paths, or standardInput; the files they name come after the inputs.
    QStringList lists;
    FilePath exportFile; ///< file to write the list of files to; empty for none
    /// exportFile or saveCounts is given, and no stamp, output folder or other output.
    bool onlyExport = false;
    FilePath saveProfile;                ///< file to write the configuration to; empty for none
    FilePath preview;                    ///< file to draw a preview into; empty for none
    QSize previewSize = QSize(600, 850); ///< pixels
    bool subfolders = false;
    bool refuseSigned = false;   ///< leave digitally signed documents alone
    int filesAtOnce = 0;         ///< 0 for as many as there are processors
    bool rewrite = false;        ///< write PDF documents anew instead of appending to a copy
    std::vector<Remark> remarks; ///< about what the options do to a job without naming it
    FilePath counts;             ///< page counts that were made before; empty for none
    FilePath saveCounts;         ///< file to write page counts to; empty for none
    int part = 0;                ///< which of so many parts of the list to work on, from 1; 0 for all of it
    int parts = 0;
    bool check = false;  ///< list the findings of the job and do nothing
    bool strict = false; ///< begin no job with a finding that people should decide on
    bool quiet = false;
    bool json = false; ///< one JSON object a line on the standard output

    [[nodiscard]] bool namesFiles() const { return !inputs.isEmpty() || !lists.isEmpty(); }
    /// False for a command line that only saves a profile, draws a preview or exports the list.
    [[nodiscard]] bool asksForJob() const
    {
        const bool onlySaves = !saveProfile.isEmpty() && !namesFiles();
        return preview.isEmpty() && !onlySaves && !onlyExport;
    }
};

/// Reads a command line (program name first) into the settings of a job. Options that describe a stamp apply
/// to the stamp last begun; a profile replaces the whole configuration and has to come before the options
/// that change it. Throws WrongUse; the settings may have been changed by then.
[[nodiscard]] RunnerOptions parseRunnerOptions(const QStringList& arguments, Settings& settings);

/// What --help or --version prints, for a command line that can be read and has one of them; nothing for any
/// other. Needs no application object.
[[nodiscard]] std::optional<QString> answerWithoutJob(const QStringList& arguments);

} // namespace quillfern
