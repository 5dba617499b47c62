#include "platform/pdf/PlainDocument.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/NewObjects.h"
#include "platform/pdf/PageTree.h"
#include "support/PdfBuilder.h"

#include <functional>

namespace quillfern::pdf {
namespace {

std::unique_ptr<PlainDocument> readPlain(FileInput& file)
{
    const auto end = findSourceEnd(file);
    return end ? PlainDocument::read(file, *end, {}) : nullptr;
}

/// Two pages below a node that they inherit from; `change` replaces a part of the second page,
/// or of the stream that has its length elsewhere.
QByteArray twoPages(const QByteArray& part = {}, const QByteArray& change = {})
{
    PdfBuilder pdf;
    pdf.add("<</Type/Catalog/Pages 2 0 R>>");
    pdf.add("<</Type/Pages/Count 2/Kids[3 0 R]/MediaBox[0 0 200 100]/Rotate 90>>");
    pdf.add("<</Type/Pages/Count 2/Parent 2 0 R/Kids[4 0 R 5 0 R]/CropBox[0 0 50 50]>>");
    pdf.add("<</Type/Page/Parent 3 0 R/Contents 6 0 R/Resources<<>>>>");
    QByteArray second = "<</Type/Page/Parent 3 0 R/Contents[6 0 R 7 0 R]/MediaBox[10 10.5 -20 40]>>";
    if (!part.isEmpty()) second.replace(part, change);
    pdf.add(second);
    pdf.addStream("0 g");
    QByteArray lengthElsewhere = "<</Length 8 0 R>>\nstream\n1 g\nendstream";
    if (!part.isEmpty()) lengthElsewhere.replace(part, change);
    pdf.add(lengthElsewhere);
    pdf.add("3");
    pdf.add("[6 0 R]");
    return pdf.build();
}

/// An update with an object stream, object 10, which has one object, 11, at `place`; `table` follows the
/// cross-reference stream that leads to them.
QByteArray withObjectStream(QByteArray bytes, const QByteArray& place, const QByteArray& table = {})
{
    const QByteArray start = bytes.mid(bytes.lastIndexOf("startxref") + 10).split('\n').first();
    const QByteArray index = "11 " + place + ' ';
    const QByteArray packed = deflatedBytes(index + "<</Title(Hidden)>>");
    const QByteArray objects = QByteArray::number(bytes.size());
    bytes += "10 0 obj\n<</Type/ObjStm/N 1/First " + QByteArray::number(index.size()) +
             "/Filter/FlateDecode/Length " + QByteArray::number(packed.size()) + ">>\nstream\n" + packed +
             "\nendstream\nendobj\n";
    const QByteArray section = QByteArray::number(bytes.size());
    const auto row = [](char kind, const QByteArray& where) {
        return kind + QByteArray::fromHex(QByteArray::number(where.toInt(), 16).rightJustified(8, '0')) +
               QByteArray(1, '\0');
    };
    const QByteArray entries = "/Size 13/Root 1 0 R/Info 11 0 R/Prev " + start;
    bytes += "12 0 obj\n<</Type/XRef/W[1 4 1]/Index[10 3]/Length 18" + entries + ">>\nstream\n" +
             row(1, objects) + row(2, "10") + row(1, section) + "\nendstream\nendobj\n";
    if (table.isEmpty()) return bytes + "startxref\n" + section + "\n%%EOF\n";
    return bytes + table + "trailer <<" + entries + "/XRefStm " + section + ">>\nstartxref\n" +
           QByteArray::number(bytes.size()) + "\n%%EOF\n";
}

TEST(PlainDocument, ReadsPagesAsTheLibraryDoes)
{
    const Scratch scratch;
    const QString plain = scratch.write(u"plain.pdf"_s, twoPages());
    const auto throughQpdf = [&](const char* option) {
        const QString made = scratch.path(u"made.pdf"_s);
        EXPECT_EQ(runTool(u"qpdf"_s, {QString::fromLatin1(option), plain, made}).exitCode, 0);
        return readFile(made);
    };
    for (const QByteArray& bytes :
         {twoPages(), twoPages("[6 0 R 7 0 R]", " 9 0 R"), throughQpdf("--object-streams=generate"),
          throughQpdf("--linearize"), numberedPdf(3), withObjectStream(twoPages(), "0"),
          withObjectStream(twoPages(), "0", "xref\n0 0\n")}) {
        FileInput file(asPath(scratch.write(u"source.pdf"_s, bytes)));
        const auto document = readPlain(file);
        ASSERT_TRUE(document) << bytes.constData();
        QPDF library;
        library.processMemoryFile("source", bytes.constData(), static_cast<std::size_t>(bytes.size()));
        const PageTree tree = readPageTree(library);
        ASSERT_EQ(document->pages().size(), tree.pages.size());
        for (std::size_t i = 0; i < tree.pages.size(); ++i) {
            const PlainPage& page = document->pages()[i];
            const PdfPageBox box(tree.pages[i]);
            EXPECT_EQ(page.number, tree.pages[i].getObjectID());
            EXPECT_EQ(page.box.mediaBox(), box.mediaBox());
            EXPECT_EQ(page.box.displaySize(), box.displaySize());
            EXPECT_EQ(page.contentCount, QPDFObjectHandle(tree.pages[i]).getPageContents().size());
        }
        EXPECT_GT(document->nextNumber(), static_cast<int>(library.getXRefTable().rbegin()->first.getObj()));
        EXPECT_EQ(PlainDocument::statedCount(file, *findSourceEnd(file)),
                  static_cast<int>(tree.pages.size()));
    }
}

TEST(PlainDocument, LeavesWhatIsNotPlainToTheLibrary)
{
    const Scratch scratch;
    const Rows<const char*, const char*> changes = {
        {"/Type/Page", "/Type/Page % a comment\n"},
        {"/Type/Page", "/Type/Page/Type/Page"},
        {"/Type/Page", "/Type/Page/Rot#61te 180"},
        {"/Type/Page", "/Type/Page/Rotate true"},
        {"/Parent 3 0 R", "/Parent 2 0 R"},
        {"7 0 R", "77 0 R"},
        {"7 0 R", "8 0 R"},
        {"7 0 R", "7 0R"},
        {"8 0 R", "4294967304 0 R"},
        {"/Contents[", "/Resources 4 0 R/Contents["},
        {"/Contents[", "/Resources<</Font 6 0 R>>/Contents["},
        {"/MediaBox[10 10.5 -20 40]", "/MediaBox[10 10 10 40]"},
        {"/MediaBox[10 10.5 -20 40]", "/MediaBox[10 10 99999999999999999999 40]"},
        {"40]", "40]/Broken[1 2"},
    };
    QByteArrayList files{twoPages().replace("/Count 2/Kids", "/Count 3/Kids"),
                         twoPages().replace("[4 0 R 5 0 R]", "[4 0 R 4 0 R]"),
                         twoPages().replace("/Length 3", "/Length 5"),
                         twoPages().replace("obj\n3\n", "obj\n5\n"),
                         twoPages().replace("/Size 10", "/Size 11"),
                         twoPages().replace("0000000015 ", "0000000016 "),
                         twoPages().replace("/Root", "/Encrypt 9 0 R/Root"),
                         withObjectStream(twoPages(), "9223372036854775800"),
                         withObjectStream(twoPages(), "0", "xref\n11 1\n0000000000 00000 f \n")};
    for (const auto& [part, change] : changes)
        files << twoPages(part, change);
    for (const QByteArray& bytes : files) {
        FileInput file(asPath(scratch.write(u"source.pdf"_s, bytes)));
        EXPECT_FALSE(bytes == twoPages());
        EXPECT_EQ(readPlain(file), nullptr) << bytes.constData();
    }
}

} // namespace
} // namespace quillfern::pdf
