#include "platform/pdf/PlainDocument.h"

#include "platform/pdf/FileInput.h"
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

/// Two pages below a node that they inherit from; `change` replaces a part of the second page.
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
    pdf.add("<</Length 8 0 R>>\nstream\n1 g\nendstream");
    pdf.add("3");
    pdf.add("[6 0 R]");
    return pdf.build();
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
          throughQpdf("--linearize"), numberedPdf(3)}) {
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
                         twoPages().replace("/Root", "/Encrypt 9 0 R/Root")};
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
