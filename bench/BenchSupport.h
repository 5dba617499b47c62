#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <QTextStream>

namespace quillfern {

inline int failures = 0; ///< how many values were beyond their limits

/// Prints a value beside its limit.
inline void report(const QString& what, double value, const char* unit, double limit)
{
    QTextStream out(stdout);
    const bool passed = value <= limit;
    if (!passed) ++failures;
    out << what.leftJustified(58) << QString::number(value, 'f', 1).rightJustified(10) << ' '
        << QString::fromLatin1(unit).leftJustified(4) << (passed ? "  within " : "  PAST   ") << limit
        << '\n';
}

template <class Work>
double milliseconds(const Work& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// A document of so many empty pages.
inline QByteArray pdfBytes(int pages)
{
    QByteArray bytes = "%PDF-1.4\n";
    QList<qsizetype> offsets;
    const auto add = [&](const QByteArray& body) {
        offsets.append(bytes.size());
        bytes += QByteArray::number(offsets.size()) + " 0 obj\n" + body + "\nendobj\n";
    };
    QByteArray kids;
    for (int i = 0; i < pages; ++i)
        kids += QByteArray::number(i + 3) + " 0 R ";
    add("<</Type/Catalog/Pages 2 0 R>>");
    add("<</Type/Pages/Count " + QByteArray::number(pages) + "/Kids[" + kids + "]>>");
    for (int i = 0; i < pages; ++i)
        add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]>>");
    const qsizetype table = bytes.size();
    bytes += "xref\n0 " + QByteArray::number(offsets.size() + 1) + "\n0000000000 65535 f \n";
    for (const qsizetype offset : offsets)
        bytes += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    return bytes + "trailer\n<</Size " + QByteArray::number(offsets.size() + 1) +
           "/Root 1 0 R>>\nstartxref\n" + QByteArray::number(table) + "\n%%EOF\n";
}

} // namespace quillfern
