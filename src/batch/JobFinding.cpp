#include "batch/JobFinding.h"

#include <algorithm>
#include <array>

namespace quillfern {

namespace {

/// How a kind is described. `several` has the number of files in place of "%1"; null for a kind that concerns
/// no files.
struct KindFacts
{
    FindingKind kind;
    const char* id;
    FindingSeverity severity;
    const char* one;
    const char* several;
    std::array<Remedy, 2> remedies = {};
    std::size_t remedyCount = 0;
};

constexpr FindingSeverity stop = FindingSeverity::Stop;
constexpr FindingSeverity ask = FindingSeverity::Ask;
constexpr FindingSeverity note = FindingSeverity::Note;

constexpr std::array kinds = {
    KindFacts{FindingKind::NoOutputFolder,
              "no-output-folder",
              stop,
              QT_TRANSLATE_NOOP("quillfern::Failure", "Copies cannot be written into the folder %1."),
              nullptr,
              {Remedy::OutputFolder},
              1},
    KindFacts{FindingKind::NoStamp,
              "no-stamp",
              stop,
              QT_TRANSLATE_NOOP("quillfern::Failure", "No stamp is in use."),
              nullptr,
              {Remedy::Stamps},
              1},
    KindFacts{FindingKind::EmptyStamp,
              "empty-stamp",
              stop,
              QT_TRANSLATE_NOOP("quillfern::Failure", "Stamp %1 has no text or no picture."),
              nullptr,
              {Remedy::Stamps},
              1},
    KindFacts{FindingKind::OriginalsOverwritten,
              "originals-overwritten",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 original is overwritten, and no backup is kept."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "%1 originals are overwritten, and no backup is kept."),
              {Remedy::OutputFolder, Remedy::Backup},
              2},
    KindFacts{FindingKind::CopiesReplaced,
              "copies-replaced",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 copy that is there already is replaced."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "%1 copies that are there already are replaced."),
              {Remedy::ExistingCopies},
              1},
    KindFacts{FindingKind::SameName,
              "same-name",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 file has a copy of another file's name."),
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "%1 files have copies of the same names; only one copy of each name can be."),
              {Remedy::KeepFolders, Remedy::CopyNames},
              2},
    KindFacts{FindingKind::OverwritesListedFile,
              "overwrites-listed-file",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "1 file is not stamped, because its copy would overwrite another file of "
                                "the list."),
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "%1 files are not stamped, because their copies would overwrite other files "
                                "of the list."),
              {Remedy::OutputFolder},
              1},
    KindFacts{FindingKind::ListedTwice, "listed-twice", ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 file is in the list under another name too."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "%1 files are in the list under another name too.")},
    KindFacts{FindingKind::UncheckedStamped,
              "unchecked-stamped",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 file that is not checked is stamped too."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "%1 files that are not checked are stamped too."),
              {Remedy::CheckedOnly},
              1},
    KindFacts{
        FindingKind::PagesBlanked,
        "pages-blanked",
        ask,
        QT_TRANSLATE_NOOP("quillfern::Failure", "Pages of 1 file that are not stamped come out blank."),
        QT_TRANSLATE_NOOP("quillfern::Failure", "Pages of %1 files that are not stamped come out blank."),
        {Remedy::KeepOtherPages},
        1},
    KindFacts{FindingKind::StampOffPage,
              "stamp-off-page",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "A stamp is mostly off the first page of 1 file."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "A stamp is mostly off the first page of %1 files."),
              {Remedy::Margins, Remedy::RealSize},
              2},
    KindFacts{FindingKind::StampTooLarge,
              "stamp-too-large",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "A stamp is larger than the first page of 1 file."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "A stamp is larger than the first page of %1 files."),
              {Remedy::Stamps, Remedy::RealSize},
              2},
    KindFacts{FindingKind::StampTooSmall,
              "stamp-too-small",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "A stamp is below 4 points in print on 1 file."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "A stamp is below 4 points in print on %1 files."),
              {Remedy::RealSize},
              1},
    KindFacts{FindingKind::NeedsPassword,
              "needs-password",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 file needs a password and is not stamped."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "%1 files need a password and are not stamped."),
              {Remedy::Passwords},
              1},
    KindFacts{FindingKind::NoReadablePages, "no-readable-pages", ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "1 file has no page that can be read."),
              QT_TRANSLATE_NOOP("quillfern::Failure", "%1 files have no page that can be read.")},
    KindFacts{
        FindingKind::Signed,
        "signed",
        ask,
        QT_TRANSLATE_NOOP("quillfern::Failure",
                          "1 file is digitally signed; readers will show that it was changed since."),
        QT_TRANSLATE_NOOP("quillfern::Failure",
                          "%1 files are digitally signed; readers will show that they were changed since."),
        {Remedy::RefuseSigned},
        1},
    KindFacts{FindingKind::Certified,
              "certified",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "1 file is certified by its author, and stamps end the certification."),
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "%1 files are certified by their authors, and stamps end the certification."),
              {Remedy::RefuseSigned},
              1},
    KindFacts{FindingKind::ArchivalClaim,
              "archival-claim",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "The copy of 1 file no longer claims to be PDF/A-1, which forbids "
                                "transparent stamps."),
              QT_TRANSLATE_NOOP("quillfern::Failure",
                                "The copies of %1 files no longer claim to be PDF/A-1, which forbids "
                                "transparent stamps."),
              {Remedy::Stamps},
              1},
    KindFacts{
        FindingKind::LittleRoom,
        "little-room",
        ask,
        QT_TRANSLATE_NOOP("quillfern::Failure", "The copies need about %1, and the disk has room for %2."),
        nullptr,
        {Remedy::OutputFolder},
        1},
    KindFacts{FindingKind::OutputFolderMissing,
              "output-folder-missing",
              ask,
              QT_TRANSLATE_NOOP("quillfern::Failure", "The folder %1 is not there and has to be made."),
              nullptr,
              {Remedy::OutputFolder},
              1},
    KindFacts{
        FindingKind::OriginalsBackedUp,
        "originals-backed-up",
        note,
        QT_TRANSLATE_NOOP("quillfern::Failure", "1 original is overwritten; a backup of it is kept."),
        QT_TRANSLATE_NOOP("quillfern::Failure", "%1 originals are overwritten; backups of them are kept."),
        {Remedy::OutputFolder},
        1},
    KindFacts{
        FindingKind::FontNotInstalled,
        "font-not-installed",
        note,
        QT_TRANSLATE_NOOP("quillfern::Failure", "The font \"%1\" is not installed; \"%2\" is used instead."),
        nullptr,
        {Remedy::Stamps},
        1},
};

const KindFacts& factsOf(FindingKind kind)
{
    return *std::find_if(kinds.begin(), kinds.end(),
                         [kind](const KindFacts& facts) { return facts.kind == kind; });
}

} // namespace

const char* findingId(FindingKind kind)
{
    return factsOf(kind).id;
}

const char* severityId(FindingSeverity severity)
{
    constexpr std::array ids = {"stop", "ask", "note"};
    return ids[static_cast<std::size_t>(severity)];
}

const char* remedyOption(Remedy remedy)
{
    switch (remedy) {
    case Remedy::OutputFolder:
        return "output";
    case Remedy::Backup:
        return "backup";
    case Remedy::ExistingCopies:
        return "existing";
    case Remedy::CopyNames:
        return "name";
    case Remedy::KeepFolders:
        return "keep-folders";
    case Remedy::KeepOtherPages:
        return "keep-other-pages";
    case Remedy::Margins:
        return "margins";
    case Remedy::RealSize:
        return "real-size";
    case Remedy::Passwords:
        return "password-file";
    case Remedy::RefuseSigned:
        return "refuse-signed";
    case Remedy::Stamps:
    case Remedy::CheckedOnly:
        break;
    }
    return nullptr;
}

JobFinding makeFinding(FindingKind kind, std::vector<FilePath> files, const QStringList& parts)
{
    const KindFacts& facts = factsOf(kind);
    const bool areSeveral = facts.several && files.size() != 1;
    const Reason sentence =
        areSeveral ? Reason(facts.several, {QString::number(files.size())}) : Reason(facts.one, parts);
    return {
        kind,
        facts.severity,
        sentence,
        std::move(files),
        {facts.remedies.begin(), facts.remedies.begin() + static_cast<std::ptrdiff_t>(facts.remedyCount)}};
}

std::optional<FindingSeverity> worstOf(const std::vector<JobFinding>& findings)
{
    std::optional<FindingSeverity> worst;
    for (const JobFinding& finding : findings)
        worst = worst ? std::min(*worst, finding.severity) : finding.severity;
    return worst;
}

} // namespace quillfern
