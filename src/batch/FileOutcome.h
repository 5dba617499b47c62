#pragma once

#include "platform/system/Failure.h"

#include <QByteArray>
#include <cstdint>
#include <optional>
#include <utility>

namespace quillfern {

/// What has become of one file of a job.
enum class FileStatus {
    Created,        ///< the copy was written
    CreatedNothing, ///< the file turned out not to be a document; counts as processed, and there is no copy
    NoPages,        ///< the list knows of no page in the file; it was not handed to a processor
    Failed,         ///< its processor failed; there is no copy
    Refused, ///< something outside its processor failed, or would have harmed another file; there is no copy
    Skipped, ///< a copy that was there before the job was left as it is, as the job's options want
    Cancelled, ///< the job was stopped before the file was begun, or the file was given up
};

/// The name of a status for programs; it never changes.
[[nodiscard]] constexpr const char* statusId(FileStatus status)
{
    switch (status) {
    case FileStatus::Created:
        return "created";
    case FileStatus::CreatedNothing:
        return "no-output";
    case FileStatus::NoPages:
        return "no-pages";
    case FileStatus::Failed:
        return "failed";
    case FileStatus::Refused:
        return "refused";
    case FileStatus::Skipped:
        return "skipped";
    case FileStatus::Cancelled:
        return "cancelled";
    }
    return "";
}

/// The numbers on the stamped pages of one file.
struct NumbersUsed
{
    std::int64_t first = 0;
    std::int64_t last = 0;

    bool operator==(const NumbersUsed&) const = default;
};

/// What has become of one file of a job, with everything that a log, a list of results or an index shows of
/// it.
struct FileOutcome
{
    FileStatus status = FileStatus::Cancelled;
    std::optional<Reason> remark;       ///< why there is no copy, or a note on the copy
    std::int32_t pages = 0;             ///< of the copy
    std::optional<NumbersUsed> numbers; ///< none when no page was stamped
    /// Numbers that a file without a copy has used up: the next file does not get them again.
    std::optional<NumbersUsed> lostNumbers = std::nullopt;
    bool isIncomplete = false;    ///< parts of a damaged source are missing in the copy
    bool isLocked = false;        ///< no password that was given opens the document
    bool breaksSignature = false; ///< a digital signature of the source no longer holds in the copy
    bool replacesCopy = false;    ///< an earlier file's copy of the same name, made by the same job
    /// SHA-256 in hexadecimal digits of the source as it was stamped and of the copy; empty in a job without
    /// an index, and without a copy.
    QByteArray sourceSha256 = {};
    QByteArray copySha256 = {};

    [[nodiscard]] static FileOutcome without(FileStatus status, Reason remark)
    {
        return {status, std::move(remark), 0, std::nullopt};
    }
    /// Says one more thing about the file.
    void add(const Reason& more) { remark = remark ? remark->followedBy(more) : more; }
    /// Whether a file that counts as created has not given all that it should have.
    [[nodiscard]] bool isFault() const
    {
        return status == FileStatus::CreatedNothing || replacesCopy || isIncomplete;
    }
    /// Whether people have to look at a file that counts as created.
    [[nodiscard]] bool isWarning() const { return isFault() || breaksSignature; }
    /// Whether the file counts among those that the job created.
    [[nodiscard]] bool countsAsCreated() const
    {
        return status == FileStatus::Created || status == FileStatus::CreatedNothing;
    }
};

} // namespace quillfern
