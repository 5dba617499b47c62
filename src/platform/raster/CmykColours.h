#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <cstddef>
#include <memory>

namespace quillfern::raster {

/// Colours of ink as colours of a screen: by the page's profile where there is one, and otherwise by the
/// plain rule that an ink takes its share of the light away. One thread at a time.
class CmykColours
{
  public:
    /// `profile` is of ICC's form; one that is damaged or describes no inks is left aside. `isInverted` is
    /// true when 255 stands for no ink.
    CmykColours(const QByteArray& profile, bool isInverted);

    /// Converts `count` pixels of four samples each to three each.
    void convert(const uchar* inks, std::size_t count, uchar* colours) const;

  private:
    struct Free
    {
        void operator()(void* transform) const;
    };

    bool isInverted_;
    std::unique_ptr<void, Free> transform_;
};

} // namespace quillfern::raster
