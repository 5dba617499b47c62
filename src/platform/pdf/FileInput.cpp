#include "platform/pdf/FileInput.h"

#include "platform/pdf/LibraryErrors.h"
#include "platform/system/Cancellation.h"
#include "platform/system/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace quillfern::pdf {

FileInput::FileInput(const FilePath& path, std::stop_token stop)
    : name_(path.bytes().toStdString()), stop_(std::move(stop)), descriptor_(openRegularFile(path))
{
    struct stat status = {};
    if (::fstat(descriptor_, &status) == 0) size_ = status.st_size;
}

FileInput::~FileInput()
{
    ::close(descriptor_);
}

QByteArray FileInput::bytesAt(qpdf_offset_t offset, qpdf_offset_t length) const
{
    if (offset < 0 || length < 0 || offset + length > size_) return {};
    QByteArray bytes(static_cast<qsizetype>(length), Qt::Uninitialized);
    readExactly(descriptor_, offset, bytes.data(), static_cast<std::size_t>(length));
    return bytes;
}

const FileInput::Block& FileInput::blockAt(qpdf_offset_t offset)
{
    const qpdf_offset_t start = offset - offset % blockSize;
    if (!blocks_.empty() && blocks_.front().start == start) return blocks_.front();
    const auto found = byStart_.find(start);
    if (found != byStart_.end()) {
        blocks_.splice(blocks_.begin(), blocks_, found->second);
        return blocks_.front();
    }
    if (blocks_.size() < mostBlocks) {
        blocks_.emplace_front();
    } else {
        byStart_.erase(blocks_.back().start);
        blocks_.splice(blocks_.begin(), blocks_, std::prev(blocks_.end()));
    }
    Block& block = blocks_.front();
    block.start = -1; // until it is filled
    if (!block.bytes) block.bytes.reset(new char[static_cast<std::size_t>(blockSize)]);
    interruptible([&] { fill(block, start); });
    block.start = start;
    byStart_[start] = blocks_.begin();
    return block;
}

void FileInput::fill(Block& block, qpdf_offset_t start) const
{
    block.size = static_cast<std::size_t>(std::min(blockSize, size_ - start));
    readExactly(descriptor_, start, block.bytes.get(), block.size);
}

size_t FileInput::copyAt(qpdf_offset_t offset, char* bytes, size_t length)
{
    size_t done = 0;
    while (done < length && offset >= 0 && offset < size_) {
        const Block& block = blockAt(offset);
        const auto inside = static_cast<size_t>(offset - block.start);
        const size_t part = std::min(length - done, block.size - inside);
        std::memcpy(bytes + done, block.bytes.get() + inside, part);
        done += part;
        offset += static_cast<qpdf_offset_t>(part);
    }
    return done;
}

size_t FileInput::read(char* bytes, size_t length)
{
    interruptible([this] { throwIfCancelled(stop_); });
    last_offset = position_;
    size_t done = copyAt(position_, bytes, length);
    position_ += static_cast<qpdf_offset_t>(done);
    if (done < length && position_ >= size_ && position_ < end()) {
        const size_t part = tail_.copy(bytes + done, length - done, static_cast<size_t>(position_ - size_));
        done += part;
        position_ += static_cast<qpdf_offset_t>(part);
    }
    return done;
}

void FileInput::seek(qpdf_offset_t offset, int whence)
{
    const qpdf_offset_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : end();
    // Not an Interruption: the library turns a place that an object names wrongly into a warning.
    if (base + offset < 0)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "The document is damaged: it points before its own beginning."));
    position_ = base + offset;
}

qpdf_offset_t FileInput::findAndSkipNextEOL()
{
    interruptible([this] { throwIfCancelled(stop_); });
    const auto isEol = [](char c) { return c == '\r' || c == '\n'; };
    bool found = false;
    qpdf_offset_t eol = end();
    while (position_ < end()) {
        const char* first = nullptr;
        const char* last = nullptr;
        if (position_ < size_) {
            const Block& block = blockAt(position_);
            first = block.bytes.get() + (position_ - block.start);
            last = block.bytes.get() + block.size;
        } else {
            first = tail_.data() + (position_ - size_);
            last = tail_.data() + tail_.size();
        }
        const char* const hit =
            found ? std::find_if_not(first, last, isEol) : std::find_if(first, last, isEol);
        position_ += hit - first;
        if (hit == last) continue;
        if (found) break;
        found = true;
        eol = position_;
    }
    return eol;
}

} // namespace quillfern::pdf
