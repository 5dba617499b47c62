#pragma once

#include "support/Paths.h"

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRectF>
#include <QString>
#include <QTemporaryDir>
#include <vector>

namespace quillfern {

/// What another program printed and how it ended.
struct ToolResult
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

/// Runs a program that is installed on the machine; fails the test when it cannot be started.
ToolResult runTool(const QString& program, const QStringList& arguments, const QByteArray& input = {});
/// The same with a program and first arguments that are the words of a text.
ToolResult runTool(const char* command, const QStringList& furtherArguments = {});

/// A folder of the test's own, gone with the object.
class Scratch
{
  public:
    Scratch();
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    [[nodiscard]] QString path(const QString& name = QString()) const;
    /// Writes a file and returns its path; folders on the way are made.
    QString write(const QString& name, const QByteArray& bytes) const;
    /// Writes a picture of one colour in the format of its name and returns its path.
    QString writePicture(const QString& name, const QSize& size, const QColor& colour = Qt::white) const;

  private:
    QTemporaryDir dir_;
};

[[nodiscard]] QByteArray readFile(const QString& path);

/// What this process has read so far, as the system counts it.
[[nodiscard]] qint64 bytesRead();

/// A word on a page as pdftotext sees it: points, origin at the top left of the page as shown, y down.
struct PdfWord
{
    QString text;
    QRectF box;
};

struct PdfTextPage
{
    double width = 0;
    double height = 0;
    std::vector<PdfWord> words;

    /// The first word with this text; fails the test when there is none.
    [[nodiscard]] QRectF boxOf(const QString& text) const;
    [[nodiscard]] bool contains(const QString& text) const;
};

/// The words of every page (pdftotext -bbox), or of its visible part.
std::vector<PdfTextPage> pdfWords(const QString& path, bool visiblePart = false);
/// The plain text of one page, 1-based, trimmed (pdftotext).
QString pdfText(const QString& path, int page);
/// True when `qpdf --check` finds nothing wrong.
bool qpdfAccepts(const QString& path);

} // namespace quillfern
