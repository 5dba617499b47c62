#pragma once

#include "platform/drawing/Picture.h"

#include <QByteArray>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace quillfern::pdf {

/// A subset of a font as the streams of a document hold it, deflated.
struct CodedFont
{
    std::string program;
    std::size_t programLength = 0; ///< before deflation
    std::string cidSet;            ///< which codes the program has; some archival profiles demand it
    std::string toUnicode;         ///< from codes to text
};

/// Rows of pixels as an image stream holds them, deflated.
struct CodedPixels
{
    std::string bytes;
    int channels = 1; ///< 1 grey, 3 RGB; 8 bits each
    bool hasPredictors = false;
};

/// A picture as the streams of a document hold it.
struct CodedPicture
{
    CodedPixels pixels;
    std::optional<CodedPixels> mask; ///< opacity; none when every pixel is opaque
};

/// What the documents of one job have in common: subsets of fonts and pictures, coded once for all documents.
/// Any thread.
class SharedCodings
{
  public:
    using MakeFont = std::function<std::optional<CodedFont>()>;
    using MakePicture = std::function<CodedPicture()>;

    /// The font under this key, which stands for the face and all that it is to show; `make` is called when
    /// nobody has asked for it yet, and throws or returns nothing when the font cannot be made.
    [[nodiscard]] std::shared_ptr<const std::optional<CodedFont>> font(const QByteArray& key,
                                                                       const MakeFont& make);
    /// The same for a picture, which is kept.
    [[nodiscard]] std::shared_ptr<const CodedPicture> picture(const drawing::Picture& picture,
                                                              const MakePicture& make);

  private:
    template <class Value>
    struct Entry
    {
        std::once_flag once;
        std::shared_ptr<const Value> value;
        std::optional<drawing::Picture> picture =
            std::nullopt; ///< a key is unique only while its picture lives
    };
    template <class Key, class Value>
    using Entries = std::map<Key, std::shared_ptr<Entry<Value>>>;

    std::mutex mutex_;
    Entries<QByteArray, std::optional<CodedFont>> fonts_;
    Entries<qint64, CodedPicture> pictures_;
};

} // namespace quillfern::pdf
