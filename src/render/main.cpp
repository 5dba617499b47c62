#include "platform/pageimages/RenderReply.h"
#include "render/PdfPageImages.h"
#include "render/RasterPageImages.h"

#include <QCoreApplication>
#include <clocale>
#include <cstdio>

namespace {

QByteArray standardInput()
{
    constexpr std::size_t longest = 4096;
    QByteArray bytes(longest, '\0');
    bytes.resize(static_cast<qsizetype>(std::fread(bytes.data(), 1, longest, stdin)));
    return bytes;
}

} // namespace

// Writes the image of one page of one file to the standard output and ends:
//     quillfern-render FILE-URL PAGE WIDTH HEIGHT DENSITY whole|visible
// A file URL can hold names that are not UTF-8. PAGE counts from 0; WIDTH and HEIGHT are in points. The
// standard input holds the password of the file, or nothing. The program that starts this one sets the limits
// of time and memory, reads the image from the standard output, and takes any end other than exit status 0 as
// "cannot be shown".
int main(int argc, char** argv)
{
    using namespace quillfern;
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 7) {
        std::fputs(
            "quillfern-render FILE-URL PAGE WIDTH HEIGHT DENSITY whole|visible: for Quillfern's own use\n",
            stderr);
        return 2;
    }
    const pageimages::PageImageRequest request{FilePath::fromUrl(QUrl::fromEncoded(arguments[1].toLatin1())),
                                               arguments[2].toInt(),
                                               {arguments[3].toDouble(), arguments[4].toDouble()},
                                               arguments[5].toDouble(),
                                               arguments[6] == QLatin1String("visible"),
                                               QString::fromUtf8(standardInput())};
    if (!pageimages::isShowable(request)) return 2;

    PdfPageImages pdf;
    RasterPageImages raster;
    const bool isPdf = request.path.extension().toUpper() == QLatin1String("PDF");
    pageimages::PageImageSource& source = isPdf ? static_cast<pageimages::PageImageSource&>(pdf) : raster;
    const auto page = source.page(request);
    if (!page) return 1;
    const QByteArray reply = pageimages::encodeRenderReply(*page);
    const auto size = static_cast<std::size_t>(reply.size());
    return std::fwrite(reply.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0 ? 0 : 1;
}
