#include "platform/pdf/PdfMetadata.h"

#include "platform/pdf/BoundedStream.h"
#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/NewObjects.h"

namespace quillfern::pdf {

PdfMetadata::PdfMetadata(QPDF& document, DocumentChanges& changes, NewObjects& objects,
                         const std::stop_token& stop)
    : document_(document), changes_(changes), objects_(objects),
      stream_(document.getRoot().getKey("/Metadata"))
{
    if (!stream_.isStream()) return;
    constexpr std::size_t largestPacket = std::size_t{32} << 20;
    const BoundedStream packet = decodeBounded(stream_, largestPacket, stop);
    if (packet.data)
        packet_.emplace(
            QByteArray::fromRawData(packet.data->data(), static_cast<qsizetype>(packet.data->size())));
    if (packet_ && packet_->isUnderstood()) return;
    packet_.reset();
    // The library would write metadata unfiltered, however large they become.
    stream_.setFilterOnWrite(false);
}

void PdfMetadata::storePacket()
{
    changes_.noteChanged(stream_);
    // Without a filter, as archival profiles demand and other programs expect.
    stream_.replaceStreamData(packet_->bytes().toStdString(), QPDFObjectHandle::newNull(),
                              QPDFObjectHandle::newNull());
}

void PdfMetadata::setCreator(const QString& creator)
{
    QPDFObjectHandle info = document_.getTrailer().getKey("/Info");
    if (!info.isDictionary()) {
        info = objects_.add(QPDFObjectHandle::newDictionary());
        document_.getTrailer().replaceKey("/Info", info);
    } else {
        changes_.noteChanged(info);
    }
    info.replaceKey("/Creator", QPDFObjectHandle::newUnicodeString(creator.toStdString()));
    if (packet_ && packet_->setCreatorTool(creator)) storePacket();
}

int PdfMetadata::archivalPart() const
{
    return packet_ ? packet_->archivalPart() : 0;
}

void PdfMetadata::withdrawArchivalClaim()
{
    if (packet_ && packet_->withdrawArchivalClaim()) storePacket();
}

bool PdfMetadata::hasRgbOutputIntent() const
{
    QPDFObjectHandle intents = document_.getRoot().getKey("/OutputIntents");
    if (!intents.isArray()) return false;
    for (int i = 0; i < intents.getArrayNItems(); ++i) {
        QPDFObjectHandle intent = intents.getArrayItem(i);
        if (!intent.isDictionary()) continue;
        QPDFObjectHandle profile = intent.getKey("/DestOutputProfile");
        if (profile.isStream() && profile.getDict().getKey("/N").isInteger() &&
            profile.getDict().getKey("/N").getIntValue() == 3)
            return true;
    }
    return false;
}

} // namespace quillfern::pdf
