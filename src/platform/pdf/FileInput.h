#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>
#include <cstddef>
#include <list>
#include <memory>
#include <qpdf/InputSource.hh>
#include <stop_token>
#include <string>
#include <unordered_map>

namespace quillfern::pdf {

/// A file that qpdf reads in any order, in blocks, of which the most recently used are kept in memory. As
/// fast as a memory map for the way a document is parsed and written, but a file that another program
/// shortens meanwhile gives an error instead of a signal, and memory does not grow with the file beyond what
/// is kept.
///
/// A read that fails or is given up throws Interruption, which only translated() (LibraryErrors.h) catches.
class FileInput final : public InputSource
{
  public:
    /// Throws Failure when the file cannot be opened.
    explicit FileInput(const FilePath& path, std::stop_token stop = {});
    ~FileInput() override;
    FileInput(const FileInput&) = delete;
    FileInput& operator=(const FileInput&) = delete;

    /// Goes on behind the file's end with these bytes, for the reader alone. Once, before the first read.
    void setTail(std::string tail) { tail_ = std::move(tail); }
    /// When it was opened, in bytes; without the tail.
    [[nodiscard]] qpdf_offset_t fileSize() const { return size_; }

    qpdf_offset_t findAndSkipNextEOL() override;
    std::string const& getName() const override { return name_; }
    qpdf_offset_t tell() override { return position_; }
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override { position_ = 0; }
    size_t read(char* bytes, size_t length) override;
    void unreadCh(char) override { --position_; }

    /// For copying the file as it is. Owned by this object; its own position is not used here.
    [[nodiscard]] int descriptor() const { return descriptor_; }
    /// Copies up to `length` bytes from `offset` on and returns how many the file has there; through the
    /// blocks in memory, without moving the position. Throws Failure.
    size_t copyAt(qpdf_offset_t offset, char* bytes, size_t length);
    /// Bytes that lie within the file, read from the disk. Throws Failure.
    [[nodiscard]] QByteArray bytesAt(qpdf_offset_t offset, qpdf_offset_t length) const;

  private:
    /// Small, because between the pages of a scan there are pictures that nobody needs to read.
    static constexpr qpdf_offset_t blockSize = qpdf_offset_t{16} * 1024;
    /// 32 MiB: the system reads documents up to this size once, though parsing and writing pass over them
    /// several times.
    static constexpr std::size_t mostBlocks = 2048;
    struct Block
    {
        qpdf_offset_t start = -1;
        std::unique_ptr<char[]> bytes;
        std::size_t size = 0;
    };

    /// The block that holds `offset`, which lies before the end of the file.
    const Block& blockAt(qpdf_offset_t offset);
    void fill(Block& block, qpdf_offset_t start) const;
    [[nodiscard]] qpdf_offset_t end() const { return size_ + static_cast<qpdf_offset_t>(tail_.size()); }

    std::string name_;
    std::stop_token stop_;
    std::string tail_;
    int descriptor_ = -1;
    qpdf_offset_t size_ = 0;
    qpdf_offset_t position_ = 0;
    std::list<Block> blocks_; ///< the last used first
    std::unordered_map<qpdf_offset_t, std::list<Block>::iterator> byStart_;
};

} // namespace quillfern::pdf
