// The options of a job on PDF documents, alone and together; read back with poppler's and qpdf's tools.

#include "batch/PdfProcessing.h"
#include "platform/pdf/PdfPageCount.h"
#include "support/PdfBuilder.h"

#include <QFileInfo>

namespace quillfern {
namespace {

const QString user = QStringLiteral("open sesame");
const QString owner = QStringLiteral("owner");

class PdfOptions : public PdfProcessing
{
  protected:
    /// A file of the kind that `options` of qpdf --encrypt make, with both passwords unless told otherwise.
    QByteArray encrypted(const QByteArray& pdf, const QStringList& options, const QString& open = user,
                         const QString& rights = owner) const
    {
        const QString plain = scratch.write(QStringLiteral("plain.pdf"), pdf);
        const QString locked = scratch.path(QStringLiteral("locked.pdf"));
        QStringList arguments{QStringLiteral("--allow-weak-crypto"), QStringLiteral("--encrypt"), open,
                              rights};
        arguments << options << QStringLiteral("--") << plain << locked;
        toolOutput("qpdf", arguments);
        return readFile(locked);
    }

    /// What qpdf says of the encryption, read with this password.
    static ToolResult encryptionOf(const QString& path, const QString& password)
    {
        return runTool(QStringLiteral("qpdf"),
                       {QStringLiteral("--password=") + password, QStringLiteral("--show-encryption"), path});
    }

    /// The same document without encryption, for tools.
    QString opened(const QString& path, const QString& password) const
    {
        const QString plain = scratch.path(QStringLiteral("opened.pdf"));
        toolOutput("qpdf",
                   {QStringLiteral("--password=") + password, QStringLiteral("--decrypt"), path, plain});
        return plain;
    }

    FileOutcome stampLocked(const QByteArray& pdf, const QString& ofFile = {})
    {
        const QString source = scratch.write(QStringLiteral("in/doc.pdf"), pdf);
        QDir().mkpath(scratch.path(QStringLiteral("out")));
        const JobConfiguration job = number.configuration();
        JobRun run(job);
        return makeDocumentProcessors(job)->processPDF(asPath(source), asPath(copy), ofFile, run).commit();
    }

    void set(const std::function<void(JobOptions&)>& change)
    {
        JobOptions options = number.options();
        change(options);
        number.setOptions(options);
    }

    QString copy = scratch.path(QStringLiteral("out/doc.pdf"));
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
    const QByteArray locked = encrypted(plain, {QStringLiteral("256")});
    enum Protection { Plain, Protected, Unlocked };
    addStamp(QStringLiteral("N{0}/{1}"));
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
                        set([&](JobOptions& options) {
                            options.pageList = PageList::parse(QString::fromLatin1(pageList));
                            options.keepOtherPages = keeps;
                            options.visiblePage = visible;
                            options.usePasswords = true;
                            options.password = owner;
                            options.unlock = protection == Unlocked;
                        });
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
                            const QString stamp = QStringLiteral("N%1/%2").arg(next).arg(pages);
                            EXPECT_EQ(page.contains(stamp), inList && hasParity) << "page " << i;
                            EXPECT_EQ(page.words.size(), inList && hasParity ? 2U
                                                         : inList && !keeps  ? 0U
                                                                             : 1U)
                                << "page " << i;
                            if (!inList || !hasParity) continue;
                            next += 5;
                            EXPECT_NEAR(page.boxOf(stamp).left(), 0, 1) << "at the edge of what is shown";
                            EXPECT_NEAR(page.width, visible ? 300 : 400, 0.01);
                            EXPECT_NEAR(page.height, visible ? 200 : 300, 0.01);
                        }
                        EXPECT_EQ(outcome.numbers->last, next - 5);
                    }
}

TEST_F(PdfOptions, TheVisiblePageIsWhatViewersShow)
{
    const struct
    {
        const char* what;
        QByteArray entries;
        double width, height; // as shown
    } cases[] = {
        {"plain", "/MediaBox[0 0 500 400]/CropBox[100 50 400 350]", 300, 300},
        {"turned", "/MediaBox[0 0 500 400]/CropBox[100 50 400 250]/Rotate 90", 200, 300},
        {"elsewhere", "/MediaBox[-100 200 400 600]/CropBox[-50 250 100 500]/Rotate 180", 150, 250},
        {"beyond the page", "/MediaBox[0 0 500 400]/CropBox[100 100 900 900]", 400, 300},
        {"beside the page", "/MediaBox[0 0 500 400]/CropBox[600 600 900 900]", 500, 400},
        {"none", "/MediaBox[0 0 500 400]", 500, 400},
    };
    set([](JobOptions& options) { options.visiblePage = true; });
    number.setMarginLeft(30);
    number.setMarginBottom(40);
    addStamp(QStringLiteral("Left"), MarginAnchor::TopLeft);
    addStamp(QStringLiteral("Right"), MarginAnchor::BottomRight);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const QString output = process(simplePdf({{"", c.entries}}));
        const PdfTextPage page = pdfWords(output, true).at(0);
        EXPECT_NEAR(std::max(page.width, page.height), std::max(c.width, c.height), 0.01);
        EXPECT_NEAR(std::min(page.width, page.height), std::min(c.width, c.height), 0.01);
        EXPECT_NEAR(page.boxOf(QStringLiteral("Left")).left(), 30, 0.5);
        EXPECT_NEAR(page.boxOf(QStringLiteral("Left")).top(), 0, 3);
        EXPECT_NEAR(page.boxOf(QStringLiteral("Right")).right(), c.width, 1);
        EXPECT_NEAR(page.boxOf(QStringLiteral("Right")).bottom(), c.height - 40, 3);
    }
}

TEST_F(PdfOptions, ProtectedCopiesKeepPasswordsPermissionsAndMethod)
{
    const QString useAes = QStringLiteral("--use-aes=y");
    const struct
    {
        const char* what;
        QStringList options;
        QString open;
    } kinds[] = {
        {"RC4, 40 bits", {QStringLiteral("40"), QStringLiteral("--modify=n")}, user},
        {"RC4, 128 bits",
         {QStringLiteral("128"), QStringLiteral("--print=none"), QStringLiteral("--use-aes=n")},
         user},
        {"AES, 128 bits", {QStringLiteral("128"), useAes, QStringLiteral("--extract=n")}, user},
        {"AES, 256 bits", {QStringLiteral("256"), QStringLiteral("--modify=none")}, user},
        {"RC4, an umlaut",
         {QStringLiteral("128"), QStringLiteral("--use-aes=n")},
         QStringLiteral("B\u00e4r")},
        {"AES, 256 bits, an umlaut", {QStringLiteral("256")}, QStringLiteral("B\u00e4r")},
        {"AES, 256 bits, metadata in clear",
         {QStringLiteral("256"), QStringLiteral("--cleartext-metadata")},
         user},
    };
    addStamp(QStringLiteral("Stamp"));
    for (const auto& kind : kinds)
        for (const QString& known : {kind.open, owner})
            for (const bool isOfFile : {false, true}) {
                SCOPED_TRACE(testing::Message() << kind.what << ", " << known.toStdString() << isOfFile);
                const QByteArray source = encrypted(numberedPdf(2), kind.options, kind.open);
                set([&](JobOptions& options) {
                    options.usePasswords = true;
                    options.password = isOfFile ? QStringLiteral("wrong") : known;
                });
                const FileOutcome outcome = stampLocked(source, isOfFile ? known : QString());
                ASSERT_EQ(outcome.status, FileStatus::Created) << outcome.remark->logged.toStdString();
                EXPECT_FALSE(outcome.isWarning());
                for (const QString& password : {kind.open, owner}) {
                    const ToolResult before =
                        encryptionOf(scratch.path(QStringLiteral("in/doc.pdf")), password);
                    const ToolResult after = encryptionOf(copy, password);
                    EXPECT_EQ(after.exitCode, 0) << after.err.toStdString();
                    EXPECT_EQ(after.out, before.out);
                    EXPECT_TRUE(after.out.contains("P = "));
                    const auto words = pdfWords(opened(copy, password));
                    EXPECT_TRUE(words.at(1).contains(QStringLiteral("Stamp")));
                    EXPECT_TRUE(words.at(1).contains(QStringLiteral("Body2")));
                }
                EXPECT_EQ(pdf::pdfPageCount(asPath(copy)), 0) << "the copy opens without a password";
            }
}

TEST_F(PdfOptions, AWrongPasswordIsAnOutcomeOfItsOwn)
{
    addStamp(QStringLiteral("Stamp"));
    const QByteArray source = encrypted(numberedPdf(1), {QStringLiteral("256")});
    const struct
    {
        bool usesPasswords;
        QString ofFile, byDefault;
        const char* said;
    } cases[] = {
        {false, user, user, "The document needs a password."}, // as ever
        {true, {}, {}, "The document needs a password."},
        {true, QStringLiteral("a"), QStringLiteral("b"),
         "The document needs another password than the one given."},
    };
    for (const auto& c : cases) {
        set([&](JobOptions& options) {
            options.usePasswords = c.usesPasswords;
            options.password = c.byDefault;
        });
        const FileOutcome outcome = stampLocked(source, c.ofFile);
        EXPECT_EQ(outcome.status, FileStatus::CreatedNothing);
        EXPECT_TRUE(outcome.isLocked);
        EXPECT_EQ(outcome.remark->logged.toStdString(), std::string(c.said) + " No copy was made.");
        EXPECT_FALSE(QFileInfo::exists(copy));
    }
}

TEST_F(PdfOptions, OnlyTheOwnersPasswordUnlocks)
{
    const struct
    {
        const char* what;
        QString open, rights, ofFile, byDefault;
        bool unlocks;
    } cases[] = {
        {"the owner's", user, owner, {}, owner, true},
        {"both, the owner's last", user, owner, user, owner, true},
        {"the one that opens", user, owner, {}, user, false},
        {"one password for both", user, user, {}, user, true},
        {"restrictions without a password", {}, owner, {}, {}, false},
        {"restrictions and the owner's", {}, owner, {}, owner, true},
        {"restrictions and a wrong one", {}, owner, {}, QStringLiteral("x"), false},
    };
    addStamp(QStringLiteral("Stamp"));
    for (const auto& c : cases)
        for (const char* bits : {"128", "256"}) {
            SCOPED_TRACE(testing::Message() << c.what << ", " << bits);
            set([&](JobOptions& options) {
                options.usePasswords = true;
                options.unlock = true;
                options.password = c.byDefault;
            });
            const QByteArray source =
                encrypted(numberedPdf(1), {QString::fromLatin1(bits), QStringLiteral("--print=none")}, c.open,
                          c.rights);
            QFile::remove(copy);
            const FileOutcome outcome = stampLocked(source, c.ofFile);
            EXPECT_EQ(outcome.status, c.unlocks ? FileStatus::Created : FileStatus::Failed);
            EXPECT_EQ(QFileInfo::exists(copy), c.unlocks);
            if (!c.unlocks) {
                EXPECT_TRUE(outcome.remark->logged.contains(QStringLiteral("(the owner's)")));
                continue;
            }
            EXPECT_TRUE(encryptionOf(copy, {}).out.contains("File is not encrypted"));
            EXPECT_TRUE(pdfText(copy, 1).contains(QStringLiteral("Body1")));
            EXPECT_TRUE(qpdfAccepts(copy));
        }
}

TEST_F(PdfOptions, ADamagedPageListFailsInsteadOfStampingNothing)
{
    addStamp(QStringLiteral("Stamp"));
    set([](JobOptions& options) { options.pageList = PageList::fromStored(QStringLiteral("2;4")); });
    const FileOutcome outcome = stampLocked(numberedPdf(2));
    EXPECT_EQ(outcome.status, FileStatus::Failed);
    EXPECT_TRUE(outcome.remark->logged.contains(QStringLiteral("character 2")));
    EXPECT_FALSE(QFileInfo::exists(copy));
}

TEST_F(PdfOptions, NamesAndDatesAreFilledIn)
{
    const struct
    {
        const char* pattern;
        bool isFilled;
        NumberType type;
        const char* expected;
    } cases[] = {
        {"{file}-{0}", true, NumberType::Numbers, "a{1}9.pdf-1"},
        {"{folder}/{label}/{0}/{1}", true, NumberType::Numbers, "Box7/Seal/1/2"},
        {"{date}T{time}", true, NumberType::Numbers, "2026-01-31T09:05"},
        {"{file}{0}{date}", false, NumberType::Numbers, "{file}1{date}"},
        {"{nothing}{File}{0}{}", true, NumberType::Numbers, "{nothing}{File}1{}"},
        {"{label}{0}", true, NumberType::PlainText, "Seal{0}"},
        {"{{label}}{", true, NumberType::Numbers, "{Seal}{"},
    };
    const QString source = scratch.write(QStringLiteral("Box7/a{1}9.pdf"), numberedPdf(2));
    QDir().mkpath(scratch.path(QStringLiteral("out")));
    for (const auto& c : cases) {
        number.stamps = {textStamp(QString::fromLatin1(c.pattern), MarginAnchor::MiddleMiddle)};
        auto& stamp = dynamic_cast<TextStamp&>(*number.stamps.front());
        stamp.isFillIn = c.isFilled;
        stamp.number.numberType = c.type;
        stamp.setLabel(QStringLiteral("Seal"));
        const JobConfiguration job = number.configuration();
        JobRun run(job);
        run.started = QDateTime(QDate(2026, 1, 31), QTime(9, 5));
        const FileOutcome outcome =
            makeDocumentProcessors(job)->processPDF(asPath(source), asPath(copy), {}, run).commit();
        ASSERT_EQ(outcome.status, FileStatus::Created) << c.pattern;
        const auto words = pdfWords(copy);
        EXPECT_TRUE(words.at(0).contains(QString::fromLatin1(c.expected)))
            << c.pattern << ": " << pdfText(copy, 1).toStdString();
        const QString next =
            QString::fromLatin1(c.expected).replace(QLatin1String("-1"), QLatin1String("-2"));
        if (next.endsWith(QLatin1String("-2"))) {
            EXPECT_TRUE(words.at(1).contains(next)) << "figures exchanged";
        }
    }
}

} // namespace
} // namespace quillfern
