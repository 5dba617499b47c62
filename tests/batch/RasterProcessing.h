#pragma once

#include "batch/DocumentProcessors.h"
#include "config/Numbering.h"
#include "platform/raster/ImageInspector.h"
#include "stamps/TextStamp.h"
#include "support/TiffBuilder.h"
#include "support/Tools.h"

namespace quillfern {

/// A picture whose orientation can be recognised: a different colour in each corner, and a bar that is not
/// symmetric.
inline QImage colourPicture(int width = 120, int height = 88)
{
    QImage image(width, height, QImage::Format_RGBA8888);
    image.fill(Qt::white);
    const auto fill = [&](int x, int y, int w, int h, const QColor& colour) {
        for (int row = y; row < std::min(y + h, height); ++row)
            for (int column = std::max(x, 0); column < std::min(x + w, width); ++column)
                image.setPixelColor(column, row, colour);
    };
    fill(0, 0, 32, 16, Qt::red);
    fill(width - 24, 0, 24, 16, Qt::blue);
    fill(0, 32, 16, 16, Qt::green);
    fill(48, 16, 16, 32, Qt::black);
    return image;
}

inline QImage greyPicture()
{
    QImage image = colourPicture();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(image.pixel(x, y));
            image.setPixelColor(x, y, QColor(grey, grey, grey));
        }
    return image;
}

inline QImage blackAndWhitePicture(int width = 120, int height = 88)
{
    QImage image = colourPicture(width, height);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, qGray(image.pixel(x, y)) < 200 ? Qt::black : Qt::white);
    return image;
}

class RasterProcessing : public testing::Test
{
  protected:
    /// The first row of the stamp, which is at the bottom of the page.
    static constexpr int stampTop = 60;

    void addStamp(const QColor& colour = Qt::black)
    {
        auto stamp = std::make_shared<TextStamp>();
        stamp->number.numberFormat = u"{0}"_s;
        stamp->setMarginAnchor(MarginAnchor::BottomMiddle);
        stamp->font.fontSize = 20;
        stamp->font.fontColor = colour;
        stamp->isBold = true;
        number.stamps.push_back(stamp);
    }

    QString path(const QString& name)
    {
        QDir().mkpath(scratch.path(u"in"_s));
        return scratch.path(u"in/"_s + name);
    }

    QString write(const QString& name, const QByteArray& bytes)
    {
        return scratch.write(u"in/"_s + name, bytes);
    }

    /// Stamps a file with the compression code that the file list would find, and returns the path of the
    /// copy.
    QString process(const QString& source, bool expected = true, int compression = -1)
    {
        QDir().mkpath(scratch.path(u"out"_s));
        const QString target = scratch.path(u"out/"_s + QFileInfo(source).fileName());
        if (compression < 0)
            compression = raster::inspectImageFile(asPath(source)).value_or(raster::ImageFacts{}).compression;
        stamp(source, target, compression);
        EXPECT_EQ(outcome.status == FileStatus::Created, expected);
        EXPECT_EQ(QFile::exists(target), expected);
        return target;
    }

    const FileOutcome& stamp(const QString& source, const QString& target, int compression)
    {
        const JobConfiguration job = number.configuration();
        JobRun run(job);
        outcome = makeDocumentProcessors(job)
                      ->processTIFF(asPath(source), asPath(target), run, compression)
                      .commit();
        nextNumber = run.numberCounter();
        return outcome;
    }

    /// True when both images are the same outside the stamp.
    static testing::AssertionResult showsSame(const QImage& actual, const QImage& expected, int tolerance)
    {
        if (actual.size() != expected.size()) return testing::AssertionFailure() << "another size";
        for (int y = 0; y < std::min(stampTop, expected.height()); ++y) {
            for (int x = 0; x < expected.width(); ++x) {
                const QColor a = actual.pixelColor(x, y);
                const QColor b = expected.pixelColor(x, y);
                const int difference =
                    std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                              std::abs(a.blue() - b.blue()), std::abs(a.alpha() - b.alpha())});
                if (difference > tolerance)
                    return testing::AssertionFailure()
                           << "at " << x << ", " << y << ": " << a.name(QColor::HexArgb).toStdString()
                           << " instead of " << b.name(QColor::HexArgb).toStdString();
            }
        }
        return testing::AssertionSuccess();
    }

    static bool hasStamp(const QImage& image)
    {
        for (int y = stampTop; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qGray(image.pixel(x, y)) < 160) return true;
        return false;
    }

    Scratch scratch;
    [[nodiscard]] QString problem() const { return outcome.remark ? outcome.remark->shown : QString(); }

    Numbering number;
    FileOutcome outcome; ///< of the last document
    std::int64_t nextNumber = 0;
};

} // namespace quillfern
