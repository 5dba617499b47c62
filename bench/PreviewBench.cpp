// Measures how long a user waits for the preview, and how long pdftoppm takes for the same page.
//     bench_preview FILE.pdf [RUNS]
// Prints medians in milliseconds. bench/preview.py makes a long document and runs this.

#include "config/Numbering.h"
#include "config/Preview.h"
#include "platform/drawing/FontCatalog.h"
#include "platform/drawing/TextShaper.h"
#include "platform/pageimages/PageImageCache.h"
#include "platform/pageimages/RenderProcess.h"
#include "platform/pdf/PdfPageCount.h"
#include "stamps/TextStamp.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QTextStream>
#include <algorithm>
#include <functional>

namespace {

using namespace quillfern;

double median(int runs, const std::function<bool(int)>& work)
{
    std::vector<double> times;
    for (int run = -1; run < runs; ++run) { // the first run warms up caches and does not count
        QElapsedTimer timer;
        timer.start();
        if (!work(run)) qFatal("a run failed; no figure would mean anything");
        if (run >= 0) times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
    return times[static_cast<std::size_t>(runs / 2)];
}

/// The usual stamps of a page: numbers, a reference, a date, and a large translucent word across the page.
void addFiveStamps(Numbering& number)
{
    const auto add = [&](const char* text, MarginAnchor anchor, double size) {
        auto stamp = std::make_shared<TextStamp>();
        stamp->number.numberFormat = QString::fromLatin1(text);
        stamp->setMarginAnchor(anchor);
        stamp->font.fontSize = size;
        number.stamps.push_back(stamp);
        return stamp;
    };
    add("Page {0} of {1}", MarginAnchor::BottomMiddle, 12);
    add("REF-{0}", MarginAnchor::TopRight, 10)->number.paddingLength = 6;
    add("Confidential", MarginAnchor::TopLeft, 10)->isBold = true;
    add("16 November 2026", MarginAnchor::BottomLeft, 9)->isItalic = true;
    const auto draft = add("DRAFT", MarginAnchor::MiddleMiddle, 120);
    draft->textOpacity = 25;
    draft->textRotation = 55;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    drawing::FontCatalog::preferEmbeddableFonts();
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) qFatal("bench_preview FILE.pdf [RUNS]");
    const QString path = QFileInfo(arguments[1]).absoluteFilePath();
    const int runs = arguments.size() > 2 ? arguments[2].toInt() : 21;
    const FilePath file = FilePath::fromText(path);
    const int pages = pdf::pdfPageCount(file);

    Numbering number;
    addFiveStamps(number);
    drawing::TextShaper shaper;
    pageimages::RenderProcess renderer(pageimages::RenderProcess::installedProgram());
    pageimages::PageImageCache cache(renderer);
    const JobConfiguration job = number.configuration();
    Preview cached(shaper, cache);
    Preview fresh(shaper, renderer);
    const auto live = [&](int page) { return Preview::LivePage{file, 0, page, {pages}, 0}; };
    const QSizeF box(600, 850);
    const auto poppler = [&](int page) {
        QProcess process;
        const QString number1 = QString::number(page);
        process.start(QStringLiteral("pdftoppm"),
                      {QStringLiteral("-f"), number1, QStringLiteral("-l"), number1,
                       QStringLiteral("-scale-to-x"), QStringLiteral("600"), QStringLiteral("-scale-to-y"),
                       QStringLiteral("-1"), path});
        const bool done = process.waitForFinished(60'000) && process.exitCode() == 0;
        return done && !process.readAllStandardOutput().isEmpty();
    };

    QTextStream out(stdout);
    const auto print = [&](const QString& what, double milliseconds) {
        out << what.leftJustified(58) << QString::number(milliseconds, 'f', 1).rightJustified(8) << " ms\n";
        out.flush();
    };
    out << path << ": " << pages << " pages, " << QFileInfo(path).size() / 1'000'000 << " MB; five stamps, "
        << "600 x 850, median of " << runs << "\n";
    for (const double density : {1.0, 2.0}) {
        const Preview::View view{box, density, 0};
        const QString screen = density > 1 ? QStringLiteral(" (screen of density 2)") : QString();
        print(QStringLiteral("sample page") + screen, median(runs, [&](int run) {
                  number.setStartNumber(run + 2); // a different text in every run, as when a user types
                  return !cached.preview2(job, 4, view).isNull();
              }));
        print(QStringLiteral("live page from the cache") + screen, median(runs, [&](int run) {
                  number.setStartNumber(run + 2);
                  return !cached.previewLive(job, live(1), view).isNull();
              }));
    }
    for (const int page : {1, pages}) {
        const Preview::View view{box, 1, 0};
        if (!renderer.page({file, page - 1, box, 1})) qFatal("the page cannot be shown");
        print(QStringLiteral("live page %1, first time").arg(page), median(runs, [&](int) {
                  // A page that failed is replaced by the sample page, which is recognised by its ratio of 1:
                  // it is as wide as the view.
                  return fresh.previewLive(job, live(page), view).devicePixelRatio() != 1.0;
              }));
        print(QStringLiteral("pdftoppm, page %1").arg(page),
              median(runs, [&](int) { return poppler(page); }));
    }
    return 0;
}
