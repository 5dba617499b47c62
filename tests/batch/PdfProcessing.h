#pragma once

#include "batch/DocumentProcessors.h"
#include "config/Numbering.h"
#include "stamps/TextStamp.h"
#include "support/Paths.h"
#include "support/Tools.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

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
        const QString source = scratch.write(QStringLiteral("in/doc.pdf"), pdf);
        QDir().mkpath(scratch.path(QStringLiteral("out")));
        const QString target = scratch.path(QStringLiteral("out/doc.pdf"));
        EXPECT_EQ(stamp(source, target).countsAsCreated(), expected);
        return target;
    }

    FileOutcome stamp(const QString& source, const QString& target) const
    {
        JobConfiguration job = number.configuration();
        job.refusesSigned = refusesSigned;
        JobRun run(job);
        return makeDocumentProcessors(job)->processPDF(asPath(source), asPath(target), {}, run).commit();
    }

    void addStamp(const QString& text, MarginAnchor anchor = MarginAnchor::TopLeft)
    {
        number.stamps.push_back(textStamp(text, anchor));
    }

    Scratch scratch;
    Numbering number;
    bool refusesSigned = false;
};

inline QByteArray toolOutput(const QString& program, const QStringList& arguments)
{
    const ToolResult result = runTool(program, arguments);
    EXPECT_EQ(result.exitCode, 0) << program.toStdString() << ": " << result.err.toStdString();
    return result.out;
}

} // namespace quillfern
