#pragma once

#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QFileDevice>
#include <QString>
#include <cstdarg>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <tiffio.h>

namespace quillfern {
class Failure;
struct Reason;
} // namespace quillfern

namespace quillfern::raster {

/// An open TIFF for reading. Errors that libtiff reports are kept here instead of printed. One handle belongs
/// to one thread at a time.
class TiffFile
{
  public:
    /// The file at `path`, not mapped into memory, because another program may shorten it meanwhile. Throws
    /// Failure.
    explicit TiffFile(const FilePath& path);
    /// An open file, which several readers may share; each keeps a position of its own. Errors name the file
    /// by `path`. Throws Failure.
    TiffFile(std::shared_ptr<const QFileDevice> file, const FilePath& path);
    /// A TIFF in memory, which must outlive this object. Throws Failure.
    explicit TiffFile(const QByteArray& bytes);
    TiffFile(const TiffFile&) = delete;
    TiffFile& operator=(const TiffFile&) = delete;

    [[nodiscard]] TIFF* handle() const { return tiff_.get(); }

    /// The same file at the present directory, for another thread; null for a TIFF in memory. Throws Failure.
    [[nodiscard]] std::unique_ptr<TiffFile> twin() const;

    /// Once a stop is requested, reading fails. What decodes for long looks at the token as well.
    void setStop(const std::stop_token& stop) { source_.stop = stop; }
    [[nodiscard]] const std::stop_token& stop() const { return source_.stop; }

    [[nodiscard]] std::uint64_t size() const { return size(const_cast<Source*>(&source_)); } ///< of the file
    /// The file's bytes from `offset` on; fewer where the file ends.
    [[nodiscard]] QByteArray at(std::uint64_t offset, qsizetype size) const;

    /// The directories that the chain from the first one has; an error where it breaks off. The file may
    /// stand anywhere and stays there.
    [[nodiscard]] std::uint32_t countDirectories();
    /// Once this is set, up to 64 KiB behind the end of the file are read as such bytes by whoever reads up
    /// to the end.
    void setBytesBehindEnd(std::optional<uchar> value) { source_.behindEnd = value; }
    /// True when something behind the end of the file was asked for since the last call of clearErrors().
    [[nodiscard]] bool ranOut() const { return source_.ranOut; }

    /// True when libtiff has reported an error since the last call of clearErrors().
    [[nodiscard]] bool hasError() const { return !lastError_.isEmpty(); }
    void clearErrors()
    {
        lastError_.clear();
        source_.ranOut = false;
    }
    /// "<doing>: <what libtiff said>".
    [[nodiscard]] Failure failure(const Reason& doing) const;

    /// The value of a field; `otherwise` when the directory has none.
    template <class T>
    [[nodiscard]] T field(std::uint32_t tag, T otherwise) const
    {
        T value = otherwise;
        return TIFFGetField(tiff_.get(), tag, &value) == 1 ? value : otherwise;
    }

    /// The value of a field of bytes, as profiles are; empty when the directory has none.
    [[nodiscard]] QByteArray bytes(std::uint32_t tag) const;

    /// True for the first bytes of a classic or big TIFF of either byte order.
    [[nodiscard]] static bool isTiff(const QByteArray& start);

  private:
    struct Closer
    {
        void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    };
    struct Source
    {
        std::shared_ptr<const QFileDevice> file; ///< null when `bytes` is read
        const QByteArray* bytes = nullptr;       ///< null when `file` is read
        toff_t position = 0;
        std::stop_token stop = {};
        std::optional<uchar> behindEnd = {};
        bool ranOut = false;
    };

    TiffFile(Source source, const QByteArray& name);

    static int keepError(TIFF*, void* file, const char* module, const char* format, va_list arguments);
    static tmsize_t readStored(Source& source, void* buffer, tmsize_t size);
    static tmsize_t read(thandle_t handle, void* buffer, tmsize_t size);
    static toff_t seek(thandle_t handle, toff_t offset, int whence);
    static toff_t size(thandle_t handle);

    QByteArray lastError_;
    Source source_;
    std::unique_ptr<TIFF, Closer> tiff_; ///< the last member, because closing may still report an error
};

} // namespace quillfern::raster
