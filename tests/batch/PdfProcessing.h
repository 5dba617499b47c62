#pragma once

#include "batch/DocumentProcessors.h"
#include "config/Numbering.h"
#include "stamps/TextStamp.h"
#include "support/Tools.h"

namespace quillfern {

inline std::shared_ptr<TextStamp> textStamp(const QString& text, MarginAnchor anchor)
{
    auto stamp = std::make_shared<TextStamp>();
    stamp->number.numberFormat = text;
    stamp->setMarginAnchor(anchor);
    return stamp;
}

class PdfProcessing : public testing::Test
{
  protected:
    /// Stamps a document and returns the path of the copy.
    QString process(const QByteArray& pdf, bool expected = true)
    {
        const QString source = scratch.write(u"in/doc.pdf"_s, pdf);
        QDir().mkpath(scratch.path(u"out"_s));
        const QString target = scratch.path(u"out/doc.pdf"_s);
        EXPECT_EQ(stamp(source, target).countsAsCreated(), expected);
        return target;
    }

    FileOutcome stamp(const QString& source, const QString& target, const QString& password = {}) const
    {
        JobConfiguration job = number.configuration();
        job.refusesSigned = refusesSigned;
        JobRun run(job);
        return makeDocumentProcessors(job)
            ->processPDF(asPath(source), asPath(target), password, run)
            .commit();
    }

    void addStamp(const QString& text = u"Stamp"_s, MarginAnchor anchor = MarginAnchor::TopLeft)
    {
        number.stamps.push_back(textStamp(text, anchor));
    }

    Scratch scratch;
    Numbering number;
    bool refusesSigned = false;
};

/// What a program prints that has to succeed.
inline QByteArray toolOutput(const char* command, const QStringList& furtherArguments = {})
{
    const ToolResult result = runTool(command, furtherArguments);
    EXPECT_EQ(result.exitCode, 0) << command << ": " << result.err.toStdString();
    return result.out;
}

/// The objects of a document in plain text.
inline QByteArray plainObjects(const QString& pdf)
{
    return toolOutput("qpdf --qdf", {pdf, u"-"_s});
}

} // namespace quillfern
