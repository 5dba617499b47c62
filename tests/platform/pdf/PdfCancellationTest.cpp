// A document that is given up is given up soon, wherever the work on it stands, and is never taken for a
// damaged one.

#include "platform/drawing/TextShaper.h"
#include "platform/pdf/ContentBalance.h"
#include "platform/pdf/DocumentPointer.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfPageCount.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"
#include "support/PdfBuilder.h"

#include <thread>

namespace quillfern::pdf {
namespace {

/// Many objects besides the pages, of `size` bytes together.
QByteArray largePdf(qsizetype size)
{
    PdfBuilder pdf = onePage("/MediaBox[0 0 9 9]/Contents 4 0 R");
    pdf.addStream("0 g");
    const QByteArray object = "<</A[" + QByteArray("(text) 1 2 3 ").repeated(70) + "]>>";
    for (qsizetype written = 0; written < size; written += object.size())
        pdf.add(object);
    return pdf.build();
}

/// Requests a stop once this process has read `bytes` more than now.
class StopAfterReading
{
  public:
    explicit StopAfterReading(qint64 bytes)
        : thread_([this, limit = bytesRead() + bytes] {
              while (!over_ && bytesRead() < limit)
                  std::this_thread::yield();
              source.request_stop();
          })
    {
    }
    ~StopAfterReading()
    {
        over_ = true;
        thread_.join();
    }

    std::stop_source source;

  private:
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

TEST(PdfCancellationTest, ReadingEndsWithinTheFile)
{
    const Scratch scratch;
    constexpr qsizetype size = 96 << 20;
    const FilePath path = asPath(scratch.write(u"large.pdf"_s, largePdf(size)));
    QByteArray withoutReferences = readFile(path.text());
    withoutReferences.replace("startxref", "nothing");
    const FilePath damaged = asPath(scratch.write(u"damaged.pdf"_s, withoutReferences));
    for (const FilePath& file : {path, damaged}) {
        const qint64 before = bytesRead();
        const StopAfterReading stop(2 << 20);
        EXPECT_THROW(static_cast<void>(PdfDocument::open(file, stop.source.get_token())), Cancelled);
        EXPECT_LT(bytesRead() - before, size / 2) << file.text().toStdString();
    }
    const StopAfterReading stop(2 << 20);
    EXPECT_THROW(static_cast<void>(pdfPageCount(damaged, stop.source.get_token())), Cancelled);
    EXPECT_THROW(static_cast<void>(pdfProblem(path, stop.source.get_token())), Cancelled);
}

TEST(PdfCancellationTest, EveryStepOfTheWorkEnds)
{
    const Scratch scratch;
    const FilePath path = asPath(scratch.write(u"doc.pdf"_s, numberedPdf(3)));
    const FilePath target = asPath(scratch.path(u"out.pdf"_s));
    drawing::TextShaper shaper;
    const RewritingPdfWriter writer;
    const Rows<const char*, std::function<void(PdfDocument&)>> steps = {
        {"a page's stamp", [&](PdfDocument& document) { static_cast<void>(document.stampPage(0, shaper)); }},
        {"a blank page", [](PdfDocument& document) { document.blankPage(0); }},
        {"the end", [](PdfDocument& document) { document.keepFirstPages(1); }},
        {"writing",
         [&](PdfDocument& document) {
             store::AtomicFile file(target);
             document.save(writer, file);
         }},
    };
    for (const auto& [what, step] : steps) {
        std::stop_source stop;
        const auto document = PdfDocument::open(path, stop.get_token());
        stop.request_stop();
        EXPECT_THROW(step(*document), Cancelled) << what;
    }
    EXPECT_FALSE(QFileInfo::exists(target.text()));

    std::stop_source stopped;
    stopped.request_stop();
    for (const QByteArray& content :
         {QByteArray("0 g ").repeated(100), QByteArray("BI ID x EI \x01 ").repeated(100),
          "BI" + QByteArray(100, ' ')})
        EXPECT_THROW(static_cast<void>(balanceOfContent(
                         content.constData(), static_cast<std::size_t>(content.size()), stopped.get_token())),
                     Cancelled);
}

TEST(PdfCancellationTest, TheThreadsThatFreedDocumentsLeaveNoStackBehind)
{
    std::stop_source stop;
    stop.request_stop();
    const auto pages = [] { return readFile(u"/proc/self/statm"_s).split(' ').first().toLongLong(); };
    const auto before = pages();
    for (int i = 0; i < 300; ++i) {
        static_cast<void>(newDocument(stop.get_token()));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_LT((pages() - before) * 4096, 1 << 30) << "300 stacks have more than twice as much";
}

} // namespace
} // namespace quillfern::pdf
