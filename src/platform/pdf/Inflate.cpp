#include "platform/pdf/Inflate.h"

#include <algorithm>
#include <libdeflate.h>
#include <memory>

namespace quillfern::pdf {

bool inflateWhole(std::string_view deflated, std::size_t largest, std::string& inflated)
{
    using Inflater = std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>;
    const Inflater inflater(libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!inflater) return false;
    constexpr std::size_t likelyRatio = 8;
    for (std::size_t room = std::min(largest, deflated.size() * likelyRatio + 1024);;
         room = std::min(largest, room * 4)) {
        inflated.resize(room);
        std::size_t size = 0;
        const libdeflate_result result = libdeflate_zlib_decompress(
            inflater.get(), deflated.data(), deflated.size(), inflated.data(), room, &size);
        if (result == LIBDEFLATE_SUCCESS) {
            inflated.resize(size);
            return true;
        }
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || room == largest) return false;
    }
}

} // namespace quillfern::pdf
