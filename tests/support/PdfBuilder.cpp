#include "support/PdfBuilder.h"

namespace quillfern {

int PdfBuilder::add(const QByteArray& body)
{
    bodies_.append(body);
    return static_cast<int>(bodies_.size());
}

int PdfBuilder::addStream(const QByteArray& data, const QByteArray& entries)
{
    return add("<</Length " + QByteArray::number(data.size()) + entries + ">>\nstream\n" + data +
               "\nendstream");
}

int PdfBuilder::reserve()
{
    return add("null");
}

void PdfBuilder::set(int number, const QByteArray& body)
{
    bodies_[number - 1] = body;
}

QByteArray PdfBuilder::build(const QByteArray& trailerEntries) const
{
    QByteArray file = "%PDF-1.5\n%\xE2\xE3\xCF\xD3\n";
    QByteArray xref = "xref\n0 " + QByteArray::number(bodies_.size() + 1) + "\n0000000000 65535 f \n";
    for (qsizetype i = 0; i < bodies_.size(); ++i) {
        xref += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(i + 1) + " 0 obj\n" + bodies_[i] + "\nendobj\n";
    }
    const QByteArray start = QByteArray::number(file.size());
    return file + xref + "trailer\n<</Size " + QByteArray::number(bodies_.size() + 1) + "/Root 1 0 R" +
           trailerEntries + ">>\nstartxref\n" + start + "\n%%EOF\n";
}

PdfBuilder onePage(const QByteArray& pageEntries, const QByteArray& treeEntries,
                   const QByteArray& catalogueEntries)
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R" + catalogueEntries + ">>");
    pdf.add("<</Type/Pages/Count 1/Kids[3 0 R]" + treeEntries + ">>");
    pdf.add("<</Type/Page/Parent 2 0 R" + pageEntries + ">>");
    return pdf;
}

QByteArray simplePdf(const QList<TestPage>& pages, const QByteArray& catalogueEntries)
{
    PdfBuilder pdf;
    const int catalogue = pdf.reserve();
    const int tree = pdf.reserve();
    const int font = pdf.add("<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    QByteArray kids;
    for (const TestPage& page : pages) {
        QByteArray body = "<</Type/Page/Parent " + PdfBuilder::ref(tree) + page.entries +
                          "/Resources<</Font<</F1 " + PdfBuilder::ref(font) + ">>>>";
        if (!page.content.isEmpty()) body += "/Contents " + PdfBuilder::ref(pdf.addStream(page.content));
        kids += PdfBuilder::ref(pdf.add(body + ">>")) + ' ';
    }
    pdf.set(tree, "<</Type/Pages/Count " + QByteArray::number(pages.size()) + "/Kids[" + kids + "]>>");
    pdf.set(catalogue, "<</Type/Catalog/Pages " + PdfBuilder::ref(tree) + catalogueEntries + ">>");
    return pdf.build();
}

QByteArray showWord(const QByteArray& word, double x, double y)
{
    return "BT /F1 12 Tf " + QByteArray::number(x) + ' ' + QByteArray::number(y) + " Td (" + word +
           ") Tj ET\n";
}

QByteArray numberedPdf(int count)
{
    QList<TestPage> pages;
    for (int i = 1; i <= count; ++i)
        pages.append({showWord("Body" + QByteArray::number(i), 72, 400)});
    return simplePdf(pages);
}

} // namespace quillfern
