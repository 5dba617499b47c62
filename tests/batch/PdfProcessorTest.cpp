// Documents are made here, stamped by the real processor, and read back with poppler's and qpdf's tools.

#include "batch/PdfProcessing.h"
#include "support/PdfBuilder.h"

namespace quillfern {
namespace {

/// The page as pdftoppm paints it, 72 dots an inch, its whole media box.
QImage painted(const QString& pdf, int page)
{
    const QString number = QString::number(page);
    const QByteArray ppm = toolOutput("pdftoppm -r 72 -f", {number, u"-l"_s, number, pdf});
    QImage image;
    EXPECT_TRUE(image.loadFromData(ppm, "PPM"));
    return image;
}

/// How many pixels outside of `except` differ clearly between two pictures.
int differingPixels(const QImage& a, const QImage& b, const QRectF& except = {})
{
    EXPECT_EQ(a.size(), b.size());
    int count = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            if (except.contains(QPointF(x + 0.5, y + 0.5))) continue;
            if (std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 24) ++count;
        }
    return count;
}

TEST_F(PdfProcessing, StampsTheChosenPages)
{
    // the first and the last page, and for each page its text in reading order
    const Rows<const char*, int, int, PageRange, std::vector<std::string>> cases = {
        {"from page 3", 3, 0, PageRange::AllPages, {"Body1", "Body2", "N7/4 Body3", "N9/4 Body4"}},
        {"a middle part", 2, 3, PageRange::AllPages, {"Body1", "N7/4 Body2", "N9/4 Body3", "Body4"}},
        {"even pages, the others blank", 1, 0, PageRange::EvenPages, {"", "N7/4 Body2", "", "N9/4 Body4"}},
        {"odd pages of a part", 2, 3, PageRange::OddPages, {"Body1", "", "N7/4 Body3", "Body4"}},
        {"a parity that is none", 1, 0, PageRange{5}, {"", ""}},
        {"an end before the start", 3, 2, PageRange::AllPages, {"Body1", "Body2", "Body3"}},
        {"a start beyond the end", 9, 0, PageRange::AllPages, {"Body1"}}};
    number.setStartNumber(7);
    number.setNumberSteps(2);
    addStamp(u"N{0}/{1}"_s);
    for (const auto& [what, startPage, endPage, pageRange, expected] : cases) {
        number.setStartPage(startPage);
        number.setEndPage(endPage);
        number.setPageRange(pageRange);
        const QString output = process(numberedPdf(static_cast<int>(expected.size())));
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(pdfText(output, static_cast<int>(i) + 1).simplified().toStdString(), expected[i])
                << what << ", page " << i + 1;
    }
}

/// A viewer shows the stamp upright at the same place whatever the page's boxes, rotation or unit.
TEST_F(PdfProcessing, StampsAPageAsItsReaderSeesIt)
{
    const Rows<const char*, QByteArray, double, double> cases = {
        {"plain", "/MediaBox[0 0 500 400]", 500, 400},
        {"turned by 90", "/MediaBox[0 0 500 400]/Rotate 90", 400, 500},
        {"turned by 180", "/MediaBox[0 0 500 400]/Rotate 180", 500, 400},
        {"turned by 270", "/MediaBox[0 0 500 400]/Rotate 270", 400, 500},
        {"turned by -90", "/MediaBox[0 0 500 400]/Rotate -90", 400, 500},
        {"turned by 450", "/MediaBox[0 0 500 400]/Rotate 450", 400, 500},
        {"an angle that is none", "/MediaBox[0 0 500 400]/Rotate 45", 500, 400},
        {"a box that starts elsewhere", "/MediaBox[-100 200 400 600]", 500, 400},
        {"elsewhere and turned", "/MediaBox[-100 200 400 600]/Rotate 90", 400, 500},
        {"elsewhere and turned over", "/MediaBox[-100 200 400 600]/Rotate 180", 500, 400},
        {"elsewhere and turned left", "/MediaBox[-100 200 400 600]/Rotate 270", 400, 500},
        {"corners the wrong way round", "/MediaBox[500 400 0 0]", 500, 400},
        {"a smaller crop box", "/MediaBox[0 0 500 400]/CropBox[100 100 200 200]", 500, 400},
        {"a crop box and a turn", "/MediaBox[0 0 500 400]/CropBox[100 100 200 200]/Rotate 90", 400, 500},
        {"fractions", "/MediaBox[0.5 0.25 500.75 400.5]", 500.25, 400.25},
        {"a box that is none", "/MediaBox[0 0 0 400]", 612, 792},
    };
    QList<TestPage> pages;
    for (const auto& row : cases)
        pages.append({"", std::get<1>(row)});
    number.setMarginLeft(30);
    number.setMarginTop(20);
    number.setMarginRight(10);
    number.setMarginBottom(40);
    addStamp(u"Left"_s, MarginAnchor::TopLeft);
    addStamp(u"Right"_s, MarginAnchor::BottomRight);
    const QString output = process(simplePdf(pages));
    const auto words = pdfWords(output);
    ASSERT_EQ(words.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const auto& [what, entries, width, height] = cases[i];
        if (width < 600) {
            // pdftotext reports the box before the rotation, and the words after it.
            EXPECT_NEAR(std::max(words[i].width, words[i].height), std::max(width, height), 0.01) << what;
            EXPECT_NEAR(std::min(words[i].width, words[i].height), std::min(width, height), 0.01) << what;
        }
        const QRectF left = words[i].boxOf(u"Left"_s);
        EXPECT_NEAR(left.left(), 30, 0.5) << what;
        EXPECT_NEAR(left.top(), 20, 3) << what;
        EXPECT_GT(left.width(), left.height()) << what << ": upright";
        const QRectF right = words[i].boxOf(u"Right"_s);
        EXPECT_NEAR(right.right(), width - 10, 1) << what;
        EXPECT_NEAR(right.bottom(), height - 40, 3.5) << what;
    }
    EXPECT_TRUE(qpdfAccepts(output));
}

TEST_F(PdfProcessing, AUserUnitScalesThePageAndNotTheStamp)
{
    number.setMarginLeft(36);
    number.setMarginTop(36);
    addStamp();
    const QString output = process(simplePdf({{"", "/MediaBox[0 0 300 400]/UserUnit 2"}}));
    // pdftotext reports the page's own units: half the distance, half the size.
    const auto page = pdfWords(output).at(0);
    const QRectF box = page.boxOf(u"Stamp"_s);
    const double shown = page.width > 500 ? 1 : 2;
    EXPECT_NEAR(box.left() * shown, 36, 0.6);
    EXPECT_NEAR(box.height() * shown, 13.5, 2.5);
}

TEST_F(PdfProcessing, RotatedStampsStandAtTheirAnchors)
{
    addStamp(u"Slanted"_s, MarginAnchor::MiddleMiddle);
    static_cast<TextStamp&>(*number.stamps[0]).textRotation = 90;
    const QString output = process(simplePdf({{"", "/MediaBox[0 0 500 400]"}}));
    const QRectF box = pdfWords(output).at(0).boxOf(u"Slanted"_s);
    EXPECT_GT(box.height(), box.width()) << "a quarter turn";
    EXPECT_NEAR(box.center().x(), 250, 2);
    EXPECT_NEAR(box.center().y(), 200, 2);
}

/// Content with unbalanced operators. The stamp has to be at the same place as on a sound page, and the
/// page's own marks have to look as before.
TEST_F(PdfProcessing, BrokenContentNeitherMovesNorHidesTheStamp)
{
    const QByteArray box = "0.5 g 100 100 200 150 re f\n";
    // The last column is how viewers that ignore a stray Q show the page; pdftoppm drops what follows the Q.
    const Rows<const char*, QByteArray, QByteArray> cases = {
        {"sound", box, ""},
        {"two states left open", "q 0.2 0 0 0.2 50 50 cm q 3 0 0 3 0 0 cm " + box, ""},
        {"a state popped too often", "2 0 0 2 0 0 cm Q 0.5 0 0 0.5 20 30 cm " + box,
         "2 0 0 2 0 0 cm 0.5 0 0 0.5 20 30 cm " + box},
        {"popped too often within strings and comments", "% Q Q\n(Q Q) pop " + box + "Q Q", ""},
        {"a transformation of its own", "0.1 0 0 0.1 300 300 cm 1 0 0 rg " + box, ""},
        {"a clip", "0 0 10 10 re W n " + box, ""},
        {"a text object never ended", box + "BT /F1 12 Tf 3 Tr 2 0 0 2 100 100 Tm (x) Tj", ""},
        {"marked content never ended", "/OC /Hidden BDC " + box, ""},
        {"a string never ended", box + "BT /F1 9 Tf (never ends \\( here", ""},
        {"a hex string never ended", box + "BT /F1 9 Tf <4142", ""},
        {"a path never painted", box + "0 0 5 5 re W", ""},
        {"a comment at the end", "0.5 0 0 0.5 0 0 cm " + box + "% no line feed ( [ q", ""},
        {"cut off in an array", "q 3 0 0 3 0 0 cm Q " + box + "q BT /F1 10 Tf [(Hello) 20 (Wor", ""},
        {"cut off in a dictionary", box + "q 9 0 0 9 0 0 cm /P <</MCID 0", ""},
        {"cut off behind a backslash", box + "q 3 0 0 3 0 0 cm BT /F1 20 Tf (unclosed\\", ""},
        {"cut off before an image's data", box + "q BI /W 1 /H 1", ""},
        {"binary text behind an image",
         box +
             "q 3 0 0 3 0 0 cm BI /W 2 /H 2 /BPC 8 /CS /G ID \x01\x10\xa0\xff EI Q BT /F1 9 Tf (\x01) Tj ET",
         ""},
        {"an inline image with q, Q and EI in it",
         "q 10 0 0 10 0 0 cm BI /W 4 /H 2 /CS /G /BPC 8 ID \nQ EI\x80Q Q EI\nQ " + box, ""},
        {"an inline image never ended", box + "BI /W 4 /H 2 /CS /G /BPC 8 ID abc", ""},
        {"an inline image with fewer bytes than it says",
         box + "q 10 0 0 10 0 0 cm BI /W 400 /H 400 /CS /G /BPC 8 ID abc EI Q", ""},
        {"words that are none, more than viewers put up with",
         box + QByteArray("no such word ").repeated(150), ""},
        {"closing brackets only", box + ") > } >> ] )", ""},
        {"white text and rendering mode", box + "1 g 7 Tr 0 0 0 0 k", ""},
    };
    QList<TestPage> pages;
    QList<TestPage> asShown;
    for (const auto& [what, content, sameAs] : cases) {
        pages.append({content, "/MediaBox[0 0 500 400]"});
        asShown.append({sameAs.isEmpty() ? content : sameAs, "/MediaBox[0 0 500 400]"});
    }
    addStamp(u"Stamp"_s, MarginAnchor::BottomRight);
    const QString before = scratch.write(u"before.pdf"_s, simplePdf(asShown));
    const QString output = process(simplePdf(pages));
    const auto words = pdfWords(output);
    ASSERT_EQ(words.size(), cases.size());
    const QRectF stampArea(400, 370, 100, 30);
    const QImage reference = painted(output, 1).copy(stampArea.toRect());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const char* const what = std::get<0>(cases[i]);
        const QRectF where = words[i].boxOf(u"Stamp"_s);
        EXPECT_NEAR(where.right(), 500, 1) << what;
        EXPECT_NEAR(where.bottom(), 400, 3.5) << what;
        const int page = static_cast<int>(i) + 1;
        const QImage after = painted(output, page);
        EXPECT_EQ(differingPixels(after.copy(stampArea.toRect()), reference), 0)
            << what << ": the stamp shows";
        EXPECT_EQ(differingPixels(painted(before, page), after, stampArea), 0)
            << what << ": the page looks as before";
    }
}

TEST_F(PdfProcessing, UnderStampsLieBeneathAndOverStampsAboveTheContent)
{
    addStamp(u"MMMM"_s, MarginAnchor::MiddleMiddle);
    number.stamps[0]->setIsDrawUnderPDFContent(true);
    auto& under = static_cast<TextStamp&>(*number.stamps[0]);
    under.font.fontSize = 60;
    under.font.fontColor = QColor(Qt::red);
    const QByteArray cover = "0 0 1 rg 0 0 500 200 re f"; // the lower half
    const QImage image = painted(process(simplePdf({{cover, "/MediaBox[0 0 500 400]"}})), 1);
    int redAbove = 0;
    int redBelow = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qRed(image.pixel(x, y)) > 200 && qBlue(image.pixel(x, y)) < 80)
                ++(y < 200 ? redAbove : redBelow);
    EXPECT_GT(redAbove, 500);
    EXPECT_LT(redBelow, 300)
        << "hidden where the page is painted"; // half a row of antialiased edge may remain

    number.stamps[0]->setIsDrawUnderPDFContent(false);
    const QImage above = painted(process(simplePdf({{cover, "/MediaBox[0 0 500 400]"}})), 1);
    EXPECT_GT(qRed(above.pixel(250 - 70, 210)) + qRed(above.pixel(250 - 72, 210)) +
                  qRed(above.pixel(250 - 74, 210)),
              0);
}

TEST_F(PdfProcessing, PagesThatShareTheirPartsAreStampedEachForItself)
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R>>");
    pdf.add("<</Type/Pages/Count 6/MediaBox[0 0 300 300]/CropBox[50 50 250 250]/Rotate 90/Resources 4 0 R"
            "/Kids[6 0 R 7 0 R 8 0 R 9 0 R 6 0 R 6 0 R]>>"); // one object three times in the tree
    pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    pdf.add("<</Font<</F1 3 0 R>>>>");
    pdf.addStream(showWord("Shared", 100, 100));
    for (const char* entries : {"/Resources 4 0 R/Contents 5 0 R", "/Resources 4 0 R/Contents 5 0 R",
                                "/Contents 10 0 R", // inherits resources and box
                                "/Resources null"}) // nothing at all
        pdf.add(QByteArray("<</Type/Page/Parent 2 0 R") + entries + ">>");
    pdf.add("[5 0 R 5 0 R null 99 0 R]");

    number.setStartPage(2);
    addStamp(u"N{0}"_s, MarginAnchor::TopLeft);
    const QString output = process(pdf.build());
    EXPECT_TRUE(qpdfAccepts(output));
    const auto words = pdfWords(output);
    ASSERT_EQ(words.size(), 6U);
    EXPECT_EQ(words[0].words.size(), 1U) << "outside the range: untouched, cropped as before";
    const QByteArray sizes = toolOutput("pdfinfo -l 6", {output});
    EXPECT_EQ(sizes.count("200 x 200"), 1);
    EXPECT_EQ(sizes.count("300 x 300"), 5)
        << "stamped pages show their media box, also where the crop box is inherited";
    for (std::size_t i = 1; i < 6; ++i) {
        EXPECT_TRUE(words[i].contains(u"N%1"_s.arg(i))) << i;
        EXPECT_EQ(words[i].contains(u"Shared"_s), i != 3) << i;
    }
}

TEST_F(PdfProcessing, StampedTextInEveryScriptCanBeFound)
{
    // Fonts have to cover the characters of the last column.
    const Rows<const char*, QString, const char*> scripts = {
        {"latin with marks", u"Seite {0} \u00fcber \u0141\u00f3d\u017a"_s, ""},
        {"combining marks", u"e\u0301te\u0301 {0}"_s, ""},
        {"ligatures", u"office fling {0}"_s, ""},
        {"cyrillic and greek", u"\u0441\u0442\u0440 {0} \u03c3\u03b5\u03bb"_s, ""},
        {"hebrew", u"\u05e2\u05de\u05d5\u05d3 {0}"_s, ":charset=5e2"},
        {"arabic", u"\u0635\u0641\u062d\u0629 {0}"_s, ":charset=635"},
        {"chinese", u"\u7b2c{0}\u9875"_s, ":charset=9875"},
    };
    for (const auto& [what, written, coverage] : scripts) {
        EXPECT_FALSE(toolOutput("fc-list", {QString::fromLatin1(coverage), u"family"_s}).trimmed().isEmpty())
            << "no font for " << what << "; test.sh installs one";
        number.stamps = {textStamp(written, MarginAnchor::TopLeft)};
        const QString output = process(simplePdf({{"", "/MediaBox[0 0 500 200]"}}));
        QString expected = written;
        expected.replace(u"{0}"_s, u"1"_s);
        // Readers may compose or decompose letters with accents, and add direction marks.
        const auto plain = [](const QString& text) {
            QString letters;
            for (const QChar c : text.normalized(QString::NormalizationForm_KC))
                if (c.isLetterOrNumber()) letters += c;
            return letters;
        };
        EXPECT_EQ(plain(pdfText(output, 1)).toStdString(), plain(expected).toStdString()) << what;
        EXPECT_TRUE(qpdfAccepts(output)) << what;
        const QByteArray fonts = toolOutput("pdffonts", {output});
        for (const QByteArray& line : fonts.trimmed().split('\n').mid(2))
            EXPECT_TRUE(line.startsWith("Helvetica ") ||
                        (line.contains("Identity-H") && line.contains(" yes yes yes ")))
                << line.toStdString();
        EXPECT_GE(fonts.count("Identity-H"), 1) << what << ": embedded as text, not as outlines";
        EXPECT_LT(QFile(output).size(), 60'000) << what << ": a subset";
    }
}

TEST_F(PdfProcessing, APageNumberCostsFewBytesAndOneFont)
{
    constexpr int pages = 200;
    addStamp(u"{0} of {1}"_s, MarginAnchor::BottomMiddle);
    const QByteArray pdf = numberedPdf(pages);
    const qint64 one = QFile(process(numberedPdf(1))).size();
    const qint64 fixed = one - numberedPdf(1).size();
    const QString output = process(pdf);
    EXPECT_LT((QFile(output).size() - pdf.size() - fixed) / pages, 400);
    EXPECT_EQ(toolOutput("pdffonts", {output}).trimmed().count("Identity-H"), 1);
}

TEST_F(PdfProcessing, InvisibleStampsLeaveThePageAlone)
{
    addStamp(u"Ghost"_s, MarginAnchor::TopLeft);
    auto& stamp = static_cast<TextStamp&>(*number.stamps[0]);
    stamp.textOpacity = 0;
    const QString output = process(numberedPdf(1));
    EXPECT_EQ(pdfText(output, 1), u"Body1"_s);
    EXPECT_FALSE(plainObjects(output).contains("/Artifact"));
    stamp.outlineWidth = 3; // only the outline, now
    EXPECT_EQ(pdfText(process(numberedPdf(1)), 1).split(u'\n').front(), u"Ghost"_s);
}

} // namespace
} // namespace quillfern
