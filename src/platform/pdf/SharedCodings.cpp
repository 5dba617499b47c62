#include "platform/pdf/SharedCodings.h"

namespace quillfern::pdf {

namespace {

/// A job whose stamps show new glyphs in every document (names, say) does not gather their subsets for ever.
constexpr std::size_t mostFonts = 256;

} // namespace

std::shared_ptr<const std::optional<CodedFont>> SharedCodings::font(const QByteArray& key,
                                                                    const MakeFont& make)
{
    std::shared_ptr<Entry<std::optional<CodedFont>>> entry;
    {
        const std::lock_guard lock(mutex_);
        if (fonts_.size() >= mostFonts && !fonts_.contains(key)) fonts_.clear();
        auto& place = fonts_[key];
        if (!place) place = std::make_shared<Entry<std::optional<CodedFont>>>();
        entry = place;
    }
    std::call_once(entry->once, [&] { entry->value = std::make_shared<std::optional<CodedFont>>(make()); });
    return entry->value;
}

std::shared_ptr<const CodedPicture> SharedCodings::picture(const drawing::Picture& picture,
                                                           const MakePicture& make)
{
    std::shared_ptr<Entry<CodedPicture>> entry;
    {
        const std::lock_guard lock(mutex_);
        auto& place = pictures_[picture.key()];
        if (!place) place = std::make_shared<Entry<CodedPicture>>();
        place->picture = picture;
        entry = place;
    }
    std::call_once(entry->once, [&] { entry->value = std::make_shared<CodedPicture>(make()); });
    return entry->value;
}

} // namespace quillfern::pdf
