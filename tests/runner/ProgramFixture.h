#pragma once

#include "support/PdfBuilder.h"

namespace quillfern {

/// Runs the program itself, as people and scripts call it, in a folder of the test's own.
class ProgramFixture : public testing::Test
{
  protected:
    ProgramFixture()
    {
        EXPECT_TRUE(QDir().mkpath(scratch.path(u"out"_s)));
        qputenv("XDG_DATA_HOME", scratch.path(u"data"_s).toUtf8());
    }
    static QString program() { return qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern-run"_s; }
    /// The words of a command line, with the scratch folder for each DIR.
    QStringList line(const QByteArray& text) const
    {
        return words(text.constData()).replaceInStrings(u"DIR"_s, scratch.path());
    }
    ToolResult run(const QByteArray& text, const QByteArray& input = {}) const
    {
        return runTool(program(), line(text), input);
    }
    QString at(const char* name) const { return scratch.path(QString::fromLatin1(name)); }
    QString out(const char* name = "") const { return scratch.path(u"out/"_s + QLatin1String(name)); }

    Scratch scratch;
};

} // namespace quillfern
