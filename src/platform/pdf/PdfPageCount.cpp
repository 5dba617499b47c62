#include "platform/pdf/PdfPageCount.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/system/Failure.h"

#include <qpdf/QPDF.hh>

namespace quillfern::pdf {

namespace {

std::unique_ptr<QPDF> openQuietly(const FilePath& path, const QByteArray& password)
{
    auto document = std::make_unique<QPDF>();
    document->setSuppressWarnings(true);
    document->processInputSource(std::make_shared<FileInput>(path), password.constData());
    return document;
}

/// The count that the root of the page tree states, if the counts of its kids add up to it; 0 otherwise.
int statedCount(QPDFObjectHandle root)
{
    QPDFObjectHandle count = root.isDictionary() ? root.getKey("/Count") : QPDFObjectHandle::newNull();
    QPDFObjectHandle kids = root.isDictionary() ? root.getKey("/Kids") : QPDFObjectHandle::newNull();
    if (!count.isInteger() || !kids.isArray()) return 0;
    const int stated = count.getIntValueAsInt();
    if (stated == kids.getArrayNItems()) return stated; // flat, as most trees are
    long long sum = 0;
    for (int i = 0; i < kids.getArrayNItems(); ++i) {
        QPDFObjectHandle kid = kids.getArrayItem(i);
        if (!kid.isDictionary()) return 0;
        const bool inner = kid.hasKey("/Kids");
        QPDFObjectHandle below = kid.getKey("/Count");
        if (inner && !below.isInteger()) return 0;
        sum += inner ? below.getIntValueAsInt() : 1;
    }
    return sum == stated ? stated : 0;
}

} // namespace

int pdfPageCount(const FilePath& path)
{
    try {
        const auto document = openQuietly(path, {});
        const int stated = statedCount(document->getRoot().getKey("/Pages"));
        return stated > 0 ? stated : static_cast<int>(document->getAllPages().size());
    } catch (const std::exception&) {
        return 0; // whatever is wrong with it, it has no usable pages
    }
}

std::optional<Reason> pdfProblem(const FilePath& path)
{
    try {
        static_cast<void>(PdfDocument::open(path));
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.reasons();
    }
}

bool pdfOpensWith(const FilePath& path, const QString& password)
{
    try {
        openQuietly(path, password.toUtf8());
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace quillfern::pdf
