#pragma once

#include "platform/store/AccessList.h"
#include "platform/store/FileAttributes.h"
#include "platform/store/FolderBelow.h"
#include "platform/store/Sha256.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <sys/types.h>

namespace quillfern::store {

/// A file that appears under its name only when it is whole. The bytes go to a nameless file in the target's
/// folder (a hidden one where the file system supports no nameless files), and commit() moves it into place;
/// without a commit, after a failure or when the process is killed, the target stays as it was.
///
/// A target that exists keeps its owner, permissions and attributes (FileAttributes). Until the commit only
/// this user may open the file. A symbolic link at the target's name is replaced, not followed: a caller that
/// wants to write through a link must resolve it first. A folder, device, pipe or socket is never replaced.
/// Not for use from two threads at once.
class AtomicFile
{
  public:
    /// Opens the temporary file. Throws Failure when the folder is missing or not writable, and when the
    /// target is no file that could be replaced.
    explicit AtomicFile(FilePath target) : AtomicFile(target, target.parent()) {}
    /// With the temporary file in another folder of the same file system, because the target's folder may not
    /// be there before the commit.
    AtomicFile(FilePath target, const FilePath& folder);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Appends. Throws Failure when the bytes cannot be written (a full disk, say).
    void write(const char* data, std::size_t size);
    void write(const QByteArray& bytes) { write(bytes.constData(), static_cast<std::size_t>(bytes.size())); }

    /// Appends the first `size` bytes of an open file, by the fastest way that the file system offers: blocks
    /// shared with the source (reflink), a copy inside the system, or reading and writing. The position of
    /// `descriptor` is not used. Throws Failure, and Cancelled once `stop` is stopped.
    void copyFrom(int descriptor, long long size, const std::stop_token& stop = {});

    /// Brings bytes and attributes to the disk, which takes most of a commit's time. The file has no name
    /// yet. Nothing may be written and no attributes may be given afterwards. Throws Failure.
    void flush();
    /// Does all of commit() up to the last step: flushes, and gives the file its temporary name, for which
    /// there may be no room. Throws Failure.
    void prepareCommit();
    /// Flushes to the disk and moves the file into place. Throws Failure; the target is then untouched.
    void commit();

    /// Moves the file to a name in an open folder of the same file system, whatever the target was. With
    /// `mayReplace` a file of that name is replaced, as commit() does; otherwise nothing ever is, and the
    /// result is false when the name is taken: the file can then be committed under another one. Throws
    /// Failure.
    [[nodiscard]] bool commitInto(const FolderBelow& folder, const QString& name, bool mayReplace);

    /// From now on the bytes are hashed as they pass; copyFrom() then reads them. To be called before the
    /// first byte.
    void hashBytes();
    [[nodiscard]] bool isHashed() const { return isHashed_; }
    /// SHA-256 of the whole file as Sha256::digest() has it, once everything is written. Where the bytes have
    /// not passed, because they were written through descriptor(), they are read back. Throws Failure, and
    /// Cancelled once `stop` is stopped.
    [[nodiscard]] QByteArray sha256(const std::stop_token& stop = {});
    /// The same of what copyFrom() has copied to the begin of the file, and how many bytes that were; nothing
    /// when the file does not begin with a copy or is not hashed.
    struct CopiedBytes
    {
        long long size = 0;
        QByteArray sha256;
    };
    [[nodiscard]] const std::optional<CopiedBytes>& copiedBytes() const { return copied_; }

    /// Gives the new file these attributes instead of the target's; the dates too, when `withDates`.
    void takeAttributes(FileAttributes attributes, bool withDates = false);
    /// Makes the new file one of its own, whatever the target had: as open as a new file of this user in this
    /// folder, but to nobody more than `bound` is.
    void limitAccess(AccessList bound) { bound_ = std::move(bound); }
    /// Keeps a file that is not there yet to its owner.
    void makePrivate();

    /// Throws Failure when `path` is a folder, device, pipe or socket, which no file may replace, or a link
    /// to one of the last three.
    static void requireReplaceable(const FilePath& path);

    /// The descriptor, for libraries that write by themselves (seekable). Nothing is buffered here as long as
    /// write() is not called. Owned by this object.
    [[nodiscard]] int descriptor()
    {
        hash_.reset();
        return descriptor_;
    }

    /// Writes `bytes` whole to `path` in one step.
    static void writeWhole(const FilePath& path, const QByteArray& bytes);

  private:
    int openNamed(mode_t mode);
    void flushBuffer();
    void writeOut(const char* data, std::size_t size);
    /// Lets the disk begin with what was written, so that the flush at the end has little left to wait for.
    void startWriting();
    bool cloneFrom(int descriptor, long long size);
    long long copyInsideSystem(int descriptor, long long size, const std::stop_token& stop);
    void adoptAttributes() const;
    void close();

    FilePath target_;
    std::optional<FileAttributes> attributes_; ///< none for the target's own
    std::optional<AccessList> bound_;
    AccessList fresh_; ///< of a new file in this folder
    bool takesDates_ = false;
    bool isFlushed_ = false;
    QByteArray folder_;
    QByteArray temporaryName_; ///< empty while the file has no name
    QByteArray buffer_;
    int descriptor_ = -1;
    std::optional<Sha256> hash_; ///< of the bytes so far; none when they are not hashed
    std::optional<CopiedBytes> copied_;
    bool isHashed_ = false;
    long long written_ = 0;
    long long started_ = 0; ///< of these bytes, how many the disk was already asked to write
};

} // namespace quillfern::store
