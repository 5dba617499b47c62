#pragma once

#include "stamps/IStampItem.h"
#include "stamps/PageCompositor.h"
#include "stamps/StampList.h"

#include <QString>
#include <memory>

namespace quillfern {

class ImageStamp;
class TextStamp;

/// Builds the stamps that a command line describes: --text and --image begin a stamp, and the options after
/// them apply to that stamp.
class StampOptions
{
  public:
    /// Adds to `stamps`, which must outlive this object.
    explicit StampOptions(StampList& stamps) : stamps_(stamps) {}

    /// Returns false for an option that does not describe a stamp. Throws WrongUse for an option that does
    /// not fit the present stamp, and for a wrong value.
    bool apply(const QString& name, const QString& value);

  private:
    void begin(const std::shared_ptr<IStampItem>& stamp);
    bool applyToAny(const QString& name, const QString& value);
    bool applyToText(const QString& name, const QString& value);
    bool applyToImage(const QString& name, const QString& value);
    void beginImage(const QString& path);
    void setImageSide(const QString& name, const QString& value, bool isWidth);
    IStampItem& stamp(const QString& option);
    TextStamp& text(const QString& option);
    ImageStamp& image(const QString& option);

    StampList& stamps_;
    // The stamp last begun; at most one of the two is set.
    std::shared_ptr<TextStamp> text_;
    std::shared_ptr<ImageStamp> image_;
    bool isWidthGiven_ = false;
    bool isHeightGiven_ = false;
};

} // namespace quillfern
