#include "platform/pdf/PdfPageCount.h"

#include "platform/pdf/DocumentOpening.h"
#include "platform/pdf/FileInput.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PasswordAttempts.h"
#include "platform/system/Cancellation.h"

#include <qpdf/QPDF.hh>

namespace quillfern::pdf {

namespace {

DocumentPointer openQuietly(const FilePath& path, const std::string& password,
                            const std::stop_token& stop = {})
{
    DocumentPointer document = newDocument(stop);
    document->setSuppressWarnings(true);
    document->processInputSource(std::make_shared<FileInput>(path, stop), password.c_str());
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

/// The count of a file that can be read as it is; 0 for any other.
int quickCount(const FilePath& path, const std::stop_token& stop, const Passwords& passwords)
{
    try {
        return translated([&] {
            const DocumentPointer document = withPassword(
                passwords, [&](const std::string& password) { return openQuietly(path, password, stop); },
                [](const DocumentPointer& opened) -> QPDF& { return *opened; });
            return statedCount(document->getRoot().getKey("/Pages"));
        });
    } catch (const Cancelled&) {
        throw;
    } catch (const std::exception&) {
        return 0;
    }
}

} // namespace

int pdfPageCount(const FilePath& path, const std::stop_token& stop, const Passwords& passwords)
{
    const int stated = quickCount(path, stop, passwords);
    if (stated > 0) return stated;
    try {
        return static_cast<int>(openDocument(path, stop, ReadAhead::Pages, passwords).pages.size());
    } catch (const Cancelled&) {
        throw;
    } catch (const std::exception&) {
        return 0; // whatever is wrong with it, it has no usable pages
    }
}

std::optional<Reason> pdfProblem(const FilePath& path, const std::stop_token& stop,
                                 const Passwords& passwords)
{
    try {
        static_cast<void>(openDocument(path, stop, ReadAhead::Pages, passwords));
        return std::nullopt;
    } catch (const Cancelled&) {
        throw;
    } catch (const Failure& failure) {
        return failure.reasons();
    }
}

bool pdfOpensWith(const FilePath& path, const QString& password)
{
    try {
        translated([&] { openQuietly(path, password.toStdString()); });
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace quillfern::pdf
