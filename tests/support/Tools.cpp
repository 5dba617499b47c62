#include "support/Tools.h"

#include <QProcess>
#include <QXmlStreamReader>
#include <filesystem>

namespace quillfern {

ToolResult runTool(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted()) {
        ADD_FAILURE() << "cannot start " << program.toStdString();
        return {};
    }
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(300'000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

ToolResult runTool(const char* command, const QStringList& furtherArguments)
{
    const QStringList parts = words(command);
    return runTool(parts.first(), parts.mid(1) + furtherArguments);
}

Scratch::Scratch()
{
    EXPECT_TRUE(dir_.isValid());
}

Scratch::~Scratch()
{
    // Qt would leave files behind whose names are not UTF-8.
    std::error_code ignored;
    std::filesystem::remove_all(dir_.path().toStdString(), ignored);
}

QString Scratch::path(const QString& name) const
{
    return name.isEmpty() ? dir_.path() : dir_.filePath(name);
}

QString Scratch::write(const QString& name, const QByteArray& bytes) const
{
    const QString whole = path(name);
    QDir().mkpath(QFileInfo(whole).path());
    QFile file(whole);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << whole.toStdString();
    EXPECT_EQ(file.write(bytes), bytes.size());
    return whole;
}

QString Scratch::writePicture(const QString& name, const QSize& size, const QColor& colour) const
{
    QImage image(size, colour.alpha() < 255 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.fill(colour);
    const QString whole = write(name, {});
    EXPECT_TRUE(image.save(whole)) << whole.toStdString();
    return whole;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

qint64 bytesRead()
{
    QFile io(u"/proc/self/io"_s);
    EXPECT_TRUE(io.open(QIODevice::ReadOnly));
    for (const QByteArray& line : io.readAll().split('\n'))
        if (line.startsWith("rchar: ")) return line.mid(7).toLongLong();
    ADD_FAILURE() << "the system does not count";
    return 0;
}

QRectF PdfTextPage::boxOf(const QString& text) const
{
    for (const PdfWord& word : words)
        if (word.text == text) return word.box;
    ADD_FAILURE() << "no word \"" << text.toStdString() << "\" on the page";
    return {};
}

bool PdfTextPage::contains(const QString& text) const
{
    for (const PdfWord& word : words)
        if (word.text == text) return true;
    return false;
}

std::vector<PdfTextPage> pdfWords(const QString& path, bool visiblePart)
{
    const ToolResult result =
        runTool(visiblePart ? "pdftotext -bbox -cropbox" : "pdftotext -bbox", {path, u"-"_s});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    std::vector<PdfTextPage> pages;
    QXmlStreamReader xml(result.out);
    const auto number = [&xml](const char* name) {
        return xml.attributes().value(QString::fromLatin1(name)).toDouble();
    };
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == "page"_L1) {
            pages.push_back({number("width"), number("height"), {}});
        } else if (xml.name() == "word"_L1 && !pages.empty()) {
            const QRectF box(QPointF(number("xMin"), number("yMin")),
                             QPointF(number("xMax"), number("yMax")));
            pages.back().words.push_back({xml.readElementText(), box});
        }
    }
    return pages;
}

QString pdfText(const QString& path, int page)
{
    const QString number = QString::number(page);
    const ToolResult result = runTool("pdftotext -f", {number, u"-l"_s, number, path, u"-"_s});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    return QString::fromUtf8(result.out).trimmed();
}

bool qpdfAccepts(const QString& path)
{
    const ToolResult result = runTool("qpdf --check", {path});
    if (result.exitCode != 0) ADD_FAILURE() << result.out.toStdString() << result.err.toStdString();
    return result.exitCode == 0;
}

} // namespace quillfern
