#pragma once

#include <memory>
#include <new>
#include <tiffio.h>

namespace quillfern::raster {

struct TiffOpenOptionsFree
{
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

/// Options for opening a TIFF: errors go to `onError`, with `user`, and warnings nowhere. Throws
/// std::bad_alloc.
[[nodiscard]] inline std::unique_ptr<TIFFOpenOptions, TiffOpenOptionsFree>
tiffOpenOptions(TIFFErrorHandlerExtR onError, void* user)
{
    std::unique_ptr<TIFFOpenOptions, TiffOpenOptionsFree> options(TIFFOpenOptionsAlloc());
    if (!options) throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, user);
    TIFFOpenOptionsSetWarningHandlerExtR(
        options.get(), [](TIFF*, void*, const char*, const char*, va_list) { return 1; }, nullptr);
    return options;
}

} // namespace quillfern::raster
