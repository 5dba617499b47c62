#include "platform/raster/TiffFile.h"

#include "platform/raster/RasterLimits.h"
#include "platform/raster/TiffOpenOptions.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace quillfern::raster {

namespace {

auto openOptions(TIFFErrorHandlerExtR onError, void* file)
{
    auto options = tiffOpenOptions(onError, file);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largestPageBytes + (1 << 20));
    return options;
}

} // namespace

TiffFile::TiffFile(const FilePath& path) : TiffFile(readRegularFile(path), path)
{
}

TiffFile::TiffFile(std::shared_ptr<const QFileDevice> file, const FilePath& path)
    : TiffFile(Source{std::move(file), nullptr}, path.bytes())
{
}

TiffFile::TiffFile(const QByteArray& bytes) : TiffFile(Source{nullptr, &bytes}, "picture")
{
}

// The mode "m" keeps libtiff from mapping the file into memory.
TiffFile::TiffFile(Source source, const QByteArray& name)
    : source_(std::move(source)),
      tiff_(TIFFClientOpenExt(
          name.constData(), "rm", &source_, read, [](thandle_t, void*, tmsize_t) -> tmsize_t { return 0; },
          seek, [](thandle_t) { return 0; }, size, nullptr, nullptr, openOptions(keepError, this).get()))
{
    if (!tiff_) throw failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The TIFF file cannot be read."));
}

std::unique_ptr<TiffFile> TiffFile::twin() const
{
    if (!source_.file) return nullptr;
    Source source = source_;
    source.position = 0;
    std::unique_ptr<TiffFile> other(new TiffFile(std::move(source), TIFFFileName(tiff_.get())));
    if (TIFFSetSubDirectory(other->handle(), TIFFCurrentDirOffset(tiff_.get())) != 1)
        throw other->failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The TIFF file cannot be read."));
    other->clearErrors();
    return other;
}

bool TiffFile::isTiff(const QByteArray& start)
{
    for (const QByteArray& magic :
         {QByteArray("II*\0", 4), QByteArray("MM\0*", 4), QByteArray("II+\0", 4), QByteArray("MM\0+", 4)})
        if (start.startsWith(magic)) return true;
    return false;
}

int TiffFile::keepError(TIFF*, void* file, const char*, const char* format, va_list arguments)
{
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    static_cast<TiffFile*>(file)->lastError_ = text;
    return 1; // handled: libtiff calls no other error handler
}

tmsize_t TiffFile::read(thandle_t handle, void* buffer, tmsize_t size)
{
    constexpr tmsize_t most = 1 << 16;
    auto& source = *static_cast<Source*>(handle);
    if (source.stop.stop_requested()) return 0;
    const tmsize_t count = readStored(source, buffer, size);
    if (count < 0 || count == size) return count;
    source.ranOut = true;
    const bool isAtEnd = source.position <= TiffFile::size(handle);
    if (!source.behindEnd || !isAtEnd || size - count > most) return count;
    std::memset(static_cast<char*>(buffer) + count, *source.behindEnd,
                static_cast<std::size_t>(size - count));
    source.position += static_cast<toff_t>(size - count);
    return size;
}

tmsize_t TiffFile::readStored(Source& source, void* buffer, tmsize_t size)
{
    if (source.file) {
        // pread() leaves the file's own position alone, which all readers of the file would share.
        const ssize_t count = ::pread(source.file->handle(), buffer, static_cast<std::size_t>(size),
                                      static_cast<off_t>(source.position));
        if (count > 0) source.position += static_cast<toff_t>(count);
        return count;
    }
    const auto length = static_cast<toff_t>(source.bytes->size());
    if (source.position >= length || size <= 0) return 0;
    const auto count = std::min(static_cast<toff_t>(size), length - source.position);
    std::memcpy(buffer, source.bytes->constData() + source.position, count);
    source.position += count;
    return static_cast<tmsize_t>(count);
}

toff_t TiffFile::seek(thandle_t handle, toff_t offset, int whence)
{
    auto& source = *static_cast<Source*>(handle);
    if (whence == SEEK_CUR) offset += source.position;
    if (whence == SEEK_END) offset += size(handle);
    return source.position = offset;
}

toff_t TiffFile::size(thandle_t handle)
{
    const auto& source = *static_cast<const Source*>(handle);
    return static_cast<toff_t>(source.file ? source.file->size() : source.bytes->size());
}

std::uint32_t TiffFile::countDirectories()
{
    clearErrors();
    setBytesBehindEnd(0); // a last directory may end without its link
    const std::uint32_t count = TIFFNumberOfDirectories(tiff_.get());
    setBytesBehindEnd(std::nullopt);
    return count;
}

QByteArray TiffFile::at(std::uint64_t offset, qsizetype size) const
{
    if (offset >= this->size()) return {};
    const auto left = static_cast<qsizetype>(std::min<std::uint64_t>(this->size() - offset, 0x7FFFFFFF));
    QByteArray bytes(std::min(size, left), Qt::Uninitialized);
    Source source = source_; // with a position of its own
    source.position = offset;
    const tmsize_t count = readStored(source, bytes.data(), bytes.size());
    bytes.truncate(std::max<qsizetype>(count, 0));
    return bytes;
}

QByteArray TiffFile::bytes(std::uint32_t tag) const
{
    std::uint32_t count = 0;
    void* data = nullptr;
    if (TIFFGetField(tiff_.get(), tag, &count, &data) != 1 || !data) return {};
    return {static_cast<const char*>(data), static_cast<qsizetype>(count)};
}

Failure TiffFile::failure(const Reason& doing) const
{
    const QString said = QString::fromLocal8Bit(lastError_).trimmed();
    return Failure(said.isEmpty() ? doing : doing.with(said));
}

} // namespace quillfern::raster
