#pragma once

#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"

#include <QStringList>
#include <optional>
#include <vector>

namespace quillfern {

/// What a check can find about a job that is planned.
enum class FindingKind {
    NoOutputFolder,       ///< it is not there and cannot be made, or is no folder to write into
    NoStamp,              ///< none is in use
    EmptyStamp,           ///< a stamp in use has no text, or no picture
    OriginalsOverwritten, ///< and nothing is kept of them
    CopiesReplaced,       ///< copies of an earlier job
    SameName,             ///< of two copies of the job
    OverwritesListedFile, ///< a copy would; the file is not stamped
    ListedTwice,          ///< one file under two names
    UncheckedStamped,
    PagesBlanked,
    StampOffPage, ///< most of a stamp is outside of the page
    StampTooLarge,
    StampTooSmall, ///< below 4 points in print
    NeedsPassword,
    NoReadablePages,
    Signed,
    Certified,
    ArchivalClaim, ///< will be withdrawn
    LittleRoom,    ///< on the disk
    OutputFolderMissing,
    OriginalsBackedUp, ///< and overwritten
    FontNotInstalled,
};

/// What a finding means for the job, worst first.
enum class FindingSeverity {
    Stop, ///< the job can come to nothing
    Ask,  ///< people should decide before the job begins
    Note,
};

/// What a person can change so that a finding is settled.
enum class Remedy {
    OutputFolder,
    Stamps,
    Backup,
    ExistingCopies,
    CopyNames,
    KeepFolders,
    CheckedOnly,
    KeepOtherPages,
    Margins,
    RealSize,
    Passwords,
    RefuseSigned,
};

/// One thing that people should know of a job before anything is written.
struct JobFinding
{
    FindingKind kind;
    FindingSeverity severity;
    Reason sentence;
    std::vector<FilePath> files = {}; ///< that it concerns, in list order; none for the whole job
    std::vector<Remedy> remedies = {};
};

/// The names for programs; they never change.
[[nodiscard]] const char* findingId(FindingKind kind);
[[nodiscard]] const char* severityId(FindingSeverity severity);
/// The option of quillfern-run, without its dashes; null where there is none.
[[nodiscard]] const char* remedyOption(Remedy remedy);

/// A finding as the table of all kinds describes it. Where it concerns files, their number is in the
/// sentence; otherwise `parts` are.
[[nodiscard]] JobFinding makeFinding(FindingKind kind, std::vector<FilePath> files,
                                     const QStringList& parts = {});

/// The worst severity among them; nothing for none.
[[nodiscard]] std::optional<FindingSeverity> worstOf(const std::vector<JobFinding>& findings);

} // namespace quillfern
