#include "platform/raster/CmykColours.h"

#include <lcms2.h>

namespace quillfern::raster {

namespace {

constexpr unsigned full = 255;

uchar multiplied(unsigned a, unsigned b)
{
    return static_cast<uchar>((a * b + full / 2) / full);
}

void* makeTransform(const QByteArray& profile, bool isInverted)
{
    if (profile.isEmpty()) return nullptr;
    const auto close = [](void* handle) { cmsCloseProfile(handle); };
    using Profile = std::unique_ptr<void, decltype(close)>;
    const Profile inks(
        cmsOpenProfileFromMem(profile.constData(), static_cast<cmsUInt32Number>(profile.size())), close);
    const Profile screen(cmsCreate_sRGBProfile(), close);
    if (!inks || !screen || cmsGetColorSpace(inks.get()) != cmsSigCmykData) return nullptr;
    return cmsCreateTransform(inks.get(), isInverted ? TYPE_CMYK_8_REV : TYPE_CMYK_8, screen.get(),
                              TYPE_RGB_8, cmsGetHeaderRenderingIntent(inks.get()), 0);
}

} // namespace

CmykColours::CmykColours(const QByteArray& profile, bool isInverted)
    : isInverted_(isInverted), transform_(makeTransform(profile, isInverted))
{
}

void CmykColours::convert(const uchar* inks, std::size_t count, uchar* colours) const
{
    if (transform_) {
        cmsDoTransform(transform_.get(), inks, colours, static_cast<cmsUInt32Number>(count));
        return;
    }
    const unsigned flip = isInverted_ ? 0 : full;
    for (std::size_t i = 0; i < count; ++i, inks += 4, colours += 3)
        for (int c = 0; c < 3; ++c)
            colours[c] = multiplied(inks[c] ^ flip, inks[3] ^ flip);
}

void CmykColours::Free::operator()(void* transform) const
{
    cmsDeleteTransform(transform);
}

} // namespace quillfern::raster
