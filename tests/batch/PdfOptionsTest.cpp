// The options of a job on PDF documents, alone and together; read back with poppler's and qpdf's tools.

#include "batch/PdfProcessing.h"
#include "platform/pdf/PdfPageCount.h"
#include "support/PdfBuilder.h"

namespace quillfern {
namespace {

const QString user = u"open sesame"_s;
const QString owner = u"owner"_s;

class PdfOptions : public PdfProcessing
{
  protected:
    /// A file of the kind that `options` of qpdf --encrypt make, with both passwords unless told otherwise.
    QByteArray encrypted(const QByteArray& pdf, const char* options, const QString& open = user,
                         const QString& rights = owner) const
    {
        const QString plain = scratch.write(u"plain.pdf"_s, pdf);
        const QString locked = scratch.path(u"locked.pdf"_s);
        toolOutput("qpdf --allow-weak-crypto --encrypt",
                   QStringList{open, rights} << words(options) << u"--"_s << plain << locked);
        return readFile(locked);
    }

    /// What qpdf says of the encryption, read with this password.
    static ToolResult encryptionOf(const QString& path, const QString& password)
    {
        return runTool("qpdf --show-encryption", {u"--password="_s + password, path});
    }

    /// The same document without encryption, for tools.
    QString opened(const QString& path, const QString& password) const
    {
        const QString plain = scratch.path(u"opened.pdf"_s);
        toolOutput("qpdf --decrypt", {u"--password="_s + password, path, plain});
        return plain;
    }

    FileOutcome stampLocked(const QByteArray& pdf, const QString& ofFile = {})
    {
        const QString source = scratch.write(u"in/doc.pdf"_s, pdf);
        QDir().mkpath(scratch.path(u"out"_s));
        return stamp(source, copy, ofFile);
    }

    QString copy = scratch.path(u"out/doc.pdf"_s);
};

/// Every page list with every parity, others kept or blank, on the whole or the visible page, of a plain, a
/// protected and an unlocked document.
TEST_F(PdfOptions, WorkTogether)
{
    constexpr int pages = 7;
    const QByteArray entries = "/MediaBox[0 0 400 300]/CropBox[50 60 350 260]";
    QList<TestPage> list;
    for (int i = 1; i <= pages; ++i)
        list.append({showWord("Body" + QByteArray::number(i), 100, 100), entries});
    const QByteArray plain = simplePdf(list);
    const QByteArray locked = encrypted(plain, "256");
    enum Protection { Plain, Protected, Unlocked };
    addStamp(u"N{0}/{1}"_s);
    number.setStartNumber(10);
    number.setNumberSteps(5);
    for (const char* pageList : {"", "1,3-4,6-"})
        for (const PageRange parity : {PageRange::AllPages, PageRange::OddPages, PageRange::EvenPages})
            for (const bool keeps : {false, true})
                for (const bool visible : {false, true})
                    for (const Protection protection : {Plain, Protected, Unlocked}) {
                        SCOPED_TRACE(testing::Message()
                                     << '"' << pageList << "\", parity " << qToUnderlying(parity)
                                     << ", keeps " << keeps << ", visible " << visible << ", protection "
                                     << protection);
                        number.setPageRange(parity);
                        number.setOptions({.pageList = PageList::parse(QString::fromLatin1(pageList)),
                                           .keepOtherPages = keeps,
                                           .visiblePage = visible,
                                           .usePasswords = true,
                                           .password = owner,
                                           .unlock = protection == Unlocked});
                        const FileOutcome outcome = stampLocked(protection == Plain ? plain : locked);
                        ASSERT_EQ(outcome.status, FileStatus::Created);
                        EXPECT_EQ(encryptionOf(copy, owner).out.contains("not encrypted"),
                                  protection != Protected);
                        const auto words =
                            pdfWords(protection == Protected ? opened(copy, owner) : copy, visible);
                        ASSERT_EQ(words.size(), static_cast<std::size_t>(pages));
                        int next = 10;
                        for (int i = 1; i <= pages; ++i) {
                            const PdfTextPage& page = words[static_cast<std::size_t>(i - 1)];
                            const bool inList = *pageList == 0 || (i != 2 && i != 5);
                            const bool hasParity = parity == PageRange::AllPages ||
                                                   (i % 2 == 1) == (parity == PageRange::OddPages);
                            const QString stamp = u"N%1/%2"_s.arg(next).arg(pages);
                            EXPECT_EQ(page.contains(stamp), inList && hasParity) << "page " << i;
                            EXPECT_EQ(page.words.size(), inList && hasParity ? 2U
                                                         : inList && !keeps  ? 0U
                                                                             : 1U)
                                << "page " << i;
                            EXPECT_NEAR(page.width, visible ? 300 : 400, 0.01);
                            EXPECT_NEAR(page.height, visible ? 200 : 300, 0.01);
                            if (!inList || !hasParity) continue;
                            next += 5;
                            EXPECT_NEAR(page.boxOf(stamp).left(), 0, 1) << "at the edge of what is shown";
                        }
                        EXPECT_EQ(outcome.numbers->last, next - 5);
                    }
}

TEST_F(PdfOptions, TheVisiblePageIsWhatViewersShow)
{
    const Rows<const char*, QByteArray, double, double> cases = {
        // and the size as shown
        {"plain", "/MediaBox[0 0 500 400]/CropBox[100 50 400 350]", 300, 300},
        {"turned", "/MediaBox[0 0 500 400]/CropBox[100 50 400 250]/Rotate 90", 200, 300},
        {"elsewhere", "/MediaBox[-100 200 400 600]/CropBox[-50 250 100 500]/Rotate 180", 150, 250},
        {"beyond the page", "/MediaBox[0 0 500 400]/CropBox[100 100 900 900]", 400, 300},
        {"beside the page", "/MediaBox[0 0 500 400]/CropBox[600 600 900 900]", 500, 400},
        {"none", "/MediaBox[0 0 500 400]", 500, 400},
    };
    number.setOptions({.visiblePage = true});
    number.setMarginLeft(30);
    number.setMarginBottom(40);
    addStamp(u"Left"_s, MarginAnchor::TopLeft);
    addStamp(u"Right"_s, MarginAnchor::BottomRight);
    for (const auto& [what, entries, width, height] : cases) {
        SCOPED_TRACE(what);
        const QString output = process(simplePdf({{"", entries}}));
        const PdfTextPage page = pdfWords(output, true).at(0);
        EXPECT_NEAR(std::max(page.width, page.height), std::max(width, height), 0.01);
        EXPECT_NEAR(std::min(page.width, page.height), std::min(width, height), 0.01);
        EXPECT_NEAR(page.boxOf(u"Left"_s).left(), 30, 0.5);
        EXPECT_NEAR(page.boxOf(u"Left"_s).top(), 0, 3);
        EXPECT_NEAR(page.boxOf(u"Right"_s).right(), width, 1);
        EXPECT_NEAR(page.boxOf(u"Right"_s).bottom(), height - 40, 3);
    }
}

TEST_F(PdfOptions, ProtectedCopiesKeepPasswordsPermissionsAndMethod)
{
    const QString umlaut = u"B\u00e4r"_s;
    const Rows<const char*, QString> kinds = {
        {"40 --modify=n", user},
        {"128 --print=none --use-aes=n", user},
        {"128 --use-aes=y --extract=n", user},
        {"256 --modify=none", user},
        {"128 --use-aes=n", umlaut},
        {"256", umlaut},
        {"256 --cleartext-metadata", user},
        {"128 --print=none --modify=none --use-aes=n", {}}, // restrictions without a password
        {"256 --print=none --modify=none", {}},
    };
    addStamp(u"Stamp"_s);
    for (const auto& [options, open] : kinds)
        for (const QString& known : {open, owner})
            for (const bool isOfFile : {false, true}) {
                SCOPED_TRACE(testing::Message() << options << ", " << known.toStdString() << isOfFile);
                const QByteArray source = encrypted(numberedPdf(2), options, open);
                number.setOptions(
                    {.usePasswords = !known.isEmpty(), .password = isOfFile ? u"wrong"_s : known});
                const FileOutcome outcome = stampLocked(source, isOfFile ? known : QString());
                ASSERT_EQ(outcome.status, FileStatus::Created) << outcome.remark->logged.toStdString();
                EXPECT_FALSE(outcome.isWarning());
                for (const QString& password : {open, owner}) {
                    const ToolResult before = encryptionOf(scratch.path(u"in/doc.pdf"_s), password);
                    const ToolResult after = encryptionOf(copy, password);
                    EXPECT_EQ(after.exitCode, 0) << after.err.toStdString();
                    EXPECT_EQ(after.out, before.out);
                    EXPECT_TRUE(after.out.contains("P = "));
                    const auto words = pdfWords(opened(copy, password));
                    EXPECT_TRUE(words.at(1).contains(u"Stamp"_s));
                    EXPECT_TRUE(words.at(1).contains(u"Body2"_s));
                }
                EXPECT_EQ(pdf::pdfPageCount(asPath(copy)), open.isEmpty() ? 2 : 0) << "without a password";
            }
}

TEST_F(PdfOptions, AWrongPasswordIsAnOutcomeOfItsOwn)
{
    addStamp(u"Stamp"_s);
    const QByteArray source = encrypted(numberedPdf(1), "256");
    const Rows<bool, QString, QString, const char*> cases = {
        {false, user, user, "The document needs a password."}, // as ever
        {true, {}, {}, "The document needs a password."},
        {true, u"a"_s, u"b"_s, "The document needs another password than the one given."},
    };
    for (const auto& [usesPasswords, ofFile, byDefault, said] : cases) {
        number.setOptions({.usePasswords = usesPasswords, .password = byDefault});
        const FileOutcome outcome = stampLocked(source, ofFile);
        EXPECT_EQ(outcome.status, FileStatus::CreatedNothing);
        EXPECT_TRUE(outcome.isLocked);
        EXPECT_EQ(outcome.remark->logged.toStdString(), std::string(said) + " No copy was made.");
        EXPECT_FALSE(QFileInfo::exists(copy));
    }
}

TEST_F(PdfOptions, OnlyTheOwnersPasswordUnlocks)
{
    const Rows<const char*, QString, QString, QString, QString, bool> cases = {
        {"the owner's", user, owner, {}, owner, true},
        {"both, the owner's last", user, owner, user, owner, true},
        {"the one that opens", user, owner, {}, user, false},
        {"one password for both", user, user, {}, user, true},
        {"restrictions without a password", {}, owner, {}, {}, false},
        {"restrictions and the owner's", {}, owner, {}, owner, true},
        {"restrictions and a wrong one", {}, owner, {}, u"x"_s, false},
    };
    addStamp(u"Stamp"_s);
    for (const auto& [what, open, rights, ofFile, byDefault, unlocks] : cases)
        for (const char* bits : {"128 --print=none", "256 --print=none"}) {
            SCOPED_TRACE(testing::Message() << what << ", " << bits);
            number.setOptions({.usePasswords = true, .password = byDefault, .unlock = true});
            const QByteArray source = encrypted(numberedPdf(1), bits, open, rights);
            QFile::remove(copy);
            const FileOutcome outcome = stampLocked(source, ofFile);
            EXPECT_EQ(outcome.status, unlocks ? FileStatus::Created : FileStatus::Failed);
            EXPECT_EQ(QFileInfo::exists(copy), unlocks);
            if (!unlocks) {
                EXPECT_TRUE(outcome.remark->logged.contains(u"(the owner's)"_s));
                continue;
            }
            EXPECT_TRUE(encryptionOf(copy, {}).out.contains("File is not encrypted"));
            EXPECT_TRUE(pdfText(copy, 1).contains(u"Body1"_s));
            EXPECT_TRUE(qpdfAccepts(copy));
        }
}

TEST_F(PdfOptions, ADamagedPageListFailsInsteadOfStampingNothing)
{
    addStamp(u"Stamp"_s);
    number.setOptions({.pageList = PageList::fromStored(u"2;4"_s)});
    const FileOutcome outcome = stampLocked(numberedPdf(2));
    EXPECT_EQ(outcome.status, FileStatus::Failed);
    EXPECT_TRUE(outcome.remark->logged.contains(u"character 2"_s));
    EXPECT_FALSE(QFileInfo::exists(copy));
}

TEST_F(PdfOptions, NamesAndDatesAreFilledIn)
{
    const Rows<const char*, bool, NumberType, const char*> cases = {
        {"{file}-{0}", true, NumberType::Numbers, "a{1}9.pdf-1"},
        {"{folder}/{label}/{0}/{1}", true, NumberType::Numbers, "Box7/Seal/1/2"},
        {"{date}T{time}", true, NumberType::Numbers, "2026-01-31T09:05"},
        {"{file}{0}{date}", false, NumberType::Numbers, "{file}1{date}"},
        {"{nothing}{File}{0}{}", true, NumberType::Numbers, "{nothing}{File}1{}"},
        {"{label}{0}", true, NumberType::PlainText, "Seal{0}"},
        {"{{label}}{", true, NumberType::Numbers, "{Seal}{"},
    };
    const QString source = scratch.write(u"Box7/a{1}9.pdf"_s, numberedPdf(2));
    QDir().mkpath(scratch.path(u"out"_s));
    for (const auto& [pattern, isFilled, type, expected] : cases) {
        number.stamps = {textStamp(QString::fromLatin1(pattern), MarginAnchor::MiddleMiddle)};
        auto& stamp = dynamic_cast<TextStamp&>(*number.stamps.front());
        stamp.isFillIn = isFilled;
        stamp.number.numberType = type;
        stamp.setLabel(u"Seal"_s);
        const JobConfiguration job = number.configuration();
        JobRun run(job);
        run.started = QDateTime(QDate(2026, 1, 31), QTime(9, 5));
        const FileOutcome outcome =
            makeDocumentProcessors(job)->processPDF(asPath(source), asPath(copy), {}, run).commit();
        ASSERT_EQ(outcome.status, FileStatus::Created) << pattern;
        const auto words = pdfWords(copy);
        EXPECT_TRUE(words.at(0).contains(QString::fromLatin1(expected)))
            << pattern << ": " << pdfText(copy, 1).toStdString();
        const QString next = QString::fromLatin1(expected).replace("-1"_L1, "-2"_L1);
        if (next.endsWith("-2"_L1)) {
            EXPECT_TRUE(words.at(1).contains(next)) << "figures exchanged";
        }
    }
}

} // namespace
} // namespace quillfern
