#pragma once

#include <QByteArray>
#include <map>

namespace quillfern::raster {

/// XMP of a JPEG that is too long for one segment: the packet, and an extension in parts, which is named by a
/// digest that stands in the packet.
class ExtendedXmp
{
  public:
    void setPacket(const QByteArray& packet) { packet_ = packet; }
    /// A segment of the extension, behind the name of its kind.
    void addPart(const QByteArray& segment);

    /// One packet that says all. Only the plain packet where the extension lacks parts or is of a form that
    /// cannot be put into the packet; empty where there is none.
    [[nodiscard]] QByteArray packet() const;

  private:
    QByteArray packet_;
    std::map<QByteArray, std::map<quint32, QByteArray>> parts_; ///< by digest and place
    std::map<QByteArray, quint32> sizes_;
};

} // namespace quillfern::raster
