#include "batch/JobCheck.h"

#include "batch/CopyPlacement.h"
#include "batch/StampFindings.h"
#include "platform/system/Cancellation.h"
#include "platform/system/DiskSpace.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"

#include <QLocale>
#include <algorithm>
#include <unordered_map>

namespace quillfern {

namespace {

using Findings = std::vector<JobFinding>;

void addFiles(FindingKind kind, std::vector<FilePath> files, Findings& findings)
{
    if (!files.empty()) findings.push_back(makeFinding(kind, std::move(files)));
}

const FileItem* itemOf(const OutputFile& output)
{
    return output.fileItems().empty() ? nullptr : &output.fileItems().back();
}

/// The files of the job's part of which `applies` is true.
template <class Applies>
std::vector<FilePath> filesWhere(const Job& job, Applies applies)
{
    std::vector<FilePath> files;
    const JobPart part = partOf(job);
    for (std::size_t i = part.first; i < part.end; ++i)
        if (const FileItem* item = itemOf(job.outputFiles[i]); item && applies(*item, i))
            files.push_back(item->filePath());
    return files;
}

bool hasPages(const FileItem& item)
{
    return item.pages() > 0;
}

/// Whether pages of the document inside the page range have the parity that is not stamped.
bool losesPages(const JobConfiguration& job, const FileItem& item)
{
    if (item.fileType() != FileType::Pdf || !blanksOtherPages(job)) return false;
    for (std::int64_t page = 1; page <= item.pages(); ++page)
        if (isInPageRange(job, page) && !hasChosenParity(job, page)) return true;
    return false;
}

std::optional<StampedPage> firstPageOf(const SourceLook& look, const JobConfiguration& job)
{
    if (look.document && look.document->firstPage) return StampedPage{*look.document->firstPage};
    if (!look.image || look.image->points.isEmpty() || look.image->pixels.isEmpty()) return std::nullopt;
    if (job.options.realSize) return StampedPage{look.image->points, 1, true};
    return StampedPage{look.image->pixels, look.image->points.width() / look.image->pixels.width(), true};
}

} // namespace

Findings JobCheck::ofStamps() const
{
    Findings findings = stampFindings(job_.configuration.stamps);
    for (JobFinding& finding : findings)
        if (finding.severity == FindingSeverity::Stop && !rules_.mustStamp)
            finding.severity = FindingSeverity::Ask;
    return findings;
}

Findings JobCheck::findings(const std::stop_token& stop) const
{
    Findings findings = ofStamps();
    addOutputFolder(findings);
    const std::vector<SourceLook> looks = lookAtSources(job_, stop);
    addCopies(looks, stop, findings);
    addNames(findings);
    addSources(looks, findings);
    addPages(looks, findings);
    addRoom(looks, findings);
    throwIfCancelled(stop);
    std::stable_sort(findings.begin(), findings.end(), [](const JobFinding& a, const JobFinding& b) {
        return std::pair(a.severity, a.kind) < std::pair(b.severity, b.kind);
    });
    return findings;
}

void JobCheck::addOutputFolder(Findings& findings) const
{
    const FilePath& folder = job_.outputFolder;
    const FilePath parent = folder.parent();
    if (fileKind(folder) == FileKind::Folder && mayWriteInto(folder)) return;
    const bool canBeMade = !folder.isEmpty() && !isNameTaken(folder) &&
                           fileKind(parent) == FileKind::Folder && mayWriteInto(parent);
    findings.push_back(makeFinding(canBeMade ? FindingKind::OutputFolderMissing : FindingKind::NoOutputFolder,
                                   {}, {folder.readable()}));
    if (canBeMade && rules_.makesOutputFolder) findings.back().severity = FindingSeverity::Note;
}

void JobCheck::addCopies(const std::vector<SourceLook>& looks, const std::stop_token& stop,
                         Findings& findings) const
{
    const QHash<FilePath, FilePath> nothingWritten;
    const auto collisions =
        CopyPlacement(job_, nothingWritten).collisions([&] { return !stop.stop_requested(); });
    const JobConfiguration& job = job_.configuration;
    addFiles(job.isBackupFile ? FindingKind::OriginalsBackedUp : FindingKind::OriginalsOverwritten,
             filesWhere(job_,
                        [&](const FileItem& item, std::size_t i) {
                            return hasPages(item) && collisions[i].version &&
                                   collisions[i].stampedAs.isEmpty();
                        }),
             findings);
    addFiles(FindingKind::OverwritesListedFile,
             filesWhere(job_,
                        [&](const FileItem& item, std::size_t i) {
                            return hasPages(item) && !collisions[i].overwritesInput.isEmpty();
                        }),
             findings);
    std::vector<FilePath> replaced;
    for (std::size_t i = 0; i < looks.size(); ++i) {
        const FileItem* item = itemOf(job_.outputFiles[i]);
        const bool isElsewhere = !collisions[i].version && collisions[i].overwritesInput.isEmpty();
        if (item && hasPages(*item) && isElsewhere && looks[i].isTargetTaken)
            replaced.push_back(job_.outputFiles[i].filename());
    }
    if (job.options.existing == ExistingCopies::Replace)
        addFiles(FindingKind::CopiesReplaced, std::move(replaced), findings);
}

void JobCheck::addNames(Findings& findings) const
{
    if (job_.configuration.options.existing == ExistingCopies::Number) return;
    QHash<FilePath, int> wanted;
    for (const OutputFile& output : job_.outputFiles)
        if (const FileItem* item = itemOf(output); item && hasPages(*item)) ++wanted[output.filename()];
    addFiles(FindingKind::SameName,
             filesWhere(job_,
                        [&](const FileItem& item, std::size_t i) {
                            return hasPages(item) && wanted.value(job_.outputFiles[i].filename()) > 1;
                        }),
             findings);
}

void JobCheck::addSources(const std::vector<SourceLook>& looks, Findings& findings) const
{
    const JobConfiguration& job = job_.configuration;
    const auto addWhere = [&](FindingKind kind, auto applies) {
        addFiles(kind, filesWhere(job_, applies), findings);
    };
    std::unordered_map<FileIdentity, int> names;
    for (const SourceLook& look : looks)
        if (look.version) ++names[look.version->identity];
    addWhere(FindingKind::ListedTwice, [&](const FileItem&, std::size_t i) {
        return looks[i].version && names[looks[i].version->identity] > 1;
    });
    if (!job.options.checkedOnly)
        addWhere(FindingKind::UncheckedStamped,
                 [](const FileItem& item, std::size_t) { return hasPages(item) && !item.isSelected(); });
    const auto isLocked = [&](std::size_t i) { return looks[i].document && looks[i].document->isLocked; };
    addWhere(FindingKind::NeedsPassword, [&](const FileItem&, std::size_t i) { return isLocked(i); });
    addWhere(FindingKind::NoReadablePages,
             [&](const FileItem& item, std::size_t i) { return !hasPages(item) && !isLocked(i); });
    addWhere(FindingKind::Certified, [&](const FileItem&, std::size_t i) {
        return looks[i].document && looks[i].document->isCertified;
    });
    addWhere(FindingKind::Signed, [&](const FileItem&, std::size_t i) {
        return looks[i].document && looks[i].document->isSigned && !looks[i].document->isCertified;
    });
    addWhere(FindingKind::ArchivalClaim, [&](const FileItem& item, std::size_t i) {
        return looks[i].document && looks[i].document->archivalPart == 1 &&
               stampedPages(job, item.pages()) > 0;
    });
}

void JobCheck::addPages(const std::vector<SourceLook>& looks, Findings& findings) const
{
    const JobConfiguration& job = job_.configuration;
    addFiles(FindingKind::PagesBlanked,
             filesWhere(job_, [&](const FileItem& item, std::size_t) { return losesPages(job, item); }),
             findings);
    const std::int64_t last =
        job.startNumber + (std::max<std::int64_t>(job_.totalPages, 1) - 1) * job.numberSteps;
    StampFit fit(job, job.isContinuousNumbering ? last : job.startNumber, job_.totalPages);
    std::vector<StampFit::Faults> faults(looks.size());
    for (std::size_t i = 0; i < looks.size(); ++i) {
        const FileItem* item = itemOf(job_.outputFiles[i]);
        if (!item || stampedPages(job, item->pages()) == 0) continue;
        if (const auto page = firstPageOf(looks[i], job)) faults[i] = fit.faultsOn(*page);
    }
    const auto addFault = [&](FindingKind kind, bool StampFit::Faults::*fault) {
        addFiles(kind, filesWhere(job_, [&](const FileItem&, std::size_t i) { return faults[i].*fault; }),
                 findings);
    };
    addFault(FindingKind::StampOffPage, &StampFit::Faults::isOffPage);
    addFault(FindingKind::StampTooLarge, &StampFit::Faults::isTooLarge);
    addFault(FindingKind::StampTooSmall, &StampFit::Faults::isTooSmall);
}

void JobCheck::addRoom(const std::vector<SourceLook>& looks, Findings& findings) const
{
    const bool isThere = fileKind(job_.outputFolder) == FileKind::Folder;
    const auto room = freeSpace(isThere ? job_.outputFolder : job_.outputFolder.parent());
    if (!room) return;
    // A copy is about as large as its source; the copies that are replaced stay until theirs are whole.
    std::uint64_t needed = 0;
    for (std::size_t i = 0; i < looks.size(); ++i) {
        const FileItem* item = itemOf(job_.outputFiles[i]);
        const bool isLeft =
            looks[i].isTargetTaken && job_.configuration.options.existing != ExistingCopies::Number;
        if (!item || !hasPages(*item) || !looks[i].version || isLeft) continue;
        needed += static_cast<std::uint64_t>(std::max<std::int64_t>(looks[i].version->size, 0));
    }
    if (needed <= *room) return;
    const auto text = [](std::uint64_t bytes) {
        return QLocale::c().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
    };
    findings.push_back(makeFinding(FindingKind::LittleRoom, {}, {text(needed), text(*room)}));
}

} // namespace quillfern
