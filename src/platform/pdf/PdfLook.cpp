#include "platform/pdf/PdfLook.h"

#include "platform/pdf/BoundedStream.h"
#include "platform/pdf/DocumentPointer.h"
#include "platform/pdf/FileInput.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PasswordAttempts.h"
#include "platform/pdf/PdfForm.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/XmpPacket.h"
#include "platform/system/Cancellation.h"

namespace quillfern::pdf {

namespace {

QPDFObjectHandle firstPageOf(QPDFObjectHandle node)
{
    constexpr int deepest = 100;
    for (int depth = 0; depth < deepest && node.isDictionary(); ++depth) {
        QPDFObjectHandle kids = node.getKey("/Kids");
        if (!kids.isArray()) return node;
        if (kids.getArrayNItems() == 0) break;
        node = kids.getArrayItem(0);
    }
    return QPDFObjectHandle::newNull();
}

int archivalPartOf(QPDFObjectHandle metadata, const std::stop_token& stop)
{
    constexpr std::size_t largestPacket = std::size_t{32} << 20;
    if (!metadata.isStream()) return 0;
    const BoundedStream packet = decodeBounded(metadata, largestPacket, stop);
    if (!packet.data) return 0;
    const XmpPacket read(
        QByteArray::fromRawData(packet.data->data(), static_cast<qsizetype>(packet.data->size())));
    return read.isUnderstood() ? read.archivalPart() : 0;
}

PdfLook lookAt(QPDF& document, const PdfLookRequest& request, const std::stop_token& stop)
{
    PdfLook look;
    QPDFObjectHandle root = document.getRoot();
    if (root.hasKey("/AcroForm") || root.hasKey("/Perms")) {
        const Signatures signatures = signaturesOf(document);
        look.isSigned = signatures.isSigned;
        look.isCertified = signatures.isCertified;
    }
    if (request.archivalPart) look.archivalPart = archivalPartOf(root.getKey("/Metadata"), stop);
    QPDFObjectHandle page = firstPageOf(root.getKey("/Pages"));
    if (page.isDictionary()) look.firstPage = PdfPageBox(page, request.area).displaySize();
    return look;
}

} // namespace

std::optional<PdfLook> lookAtPdf(const FilePath& path, const PdfLookRequest& request,
                                 const std::stop_token& stop, const Passwords& passwords)
{
    try {
        return translated([&] {
            const auto open = [&](const std::string& password) {
                DocumentPointer document = newDocument(stop);
                document->setSuppressWarnings(true);
                document->processInputSource(std::make_shared<FileInput>(path, stop), password.c_str());
                return document;
            };
            const DocumentPointer document =
                withPassword(passwords, open, [](const DocumentPointer& opened) -> QPDF& { return *opened; });
            return std::optional(lookAt(*document, request, stop));
        });
    } catch (const LockedDocument&) {
        PdfLook locked;
        locked.isLocked = true;
        return locked;
    } catch (const Cancelled&) {
        throw;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillfern::pdf
