#include "config/Numbering.h"
#include "config/Profile.h"
#include "platform/store/DefaultsStore.h"
#include "platform/system/Guarded.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"

#include <algorithm>

namespace quillfern {

namespace {

/// The stamp that a record describes. A record does not name the kind of its stamp; the keys show the kind.
/// Null for a record of neither kind.
std::shared_ptr<IStampItem> stampFor(const store::Record& record)
{
    if (record.contains(QStringLiteral("font"))) return std::make_shared<TextStamp>();
    if (record.contains(QStringLiteral("stampImage"))) return std::make_shared<ImageStamp>();
    return nullptr;
}

store::Record recordOf(const JobConfiguration& fields, store::RecordValue::List stampRecords)
{
    store::RecordBuilder builder;
    builder.add(QStringLiteral("endPage"), store::low32(fields.endPage))
        .add(QStringLiteral("hasLabel"), fields.hasLabel)
        .add(QStringLiteral("isBackupFile"), fields.isBackupFile)
        .add(QStringLiteral("isContinuousNumbering"), fields.isContinuousNumbering)
        .add(QStringLiteral("isMarginInPercentage"), fields.isMarginInPercentage)
        .add(QStringLiteral("isSymmetryPage"), fields.isSymmetryPage)
        .add(QStringLiteral("labelPrefix"), fields.labelPrefix)
        .add(QStringLiteral("marginLeft"), fields.marginLeft)
        .add(QStringLiteral("marginTop"), fields.marginTop)
        .add(QStringLiteral("marginRight"), fields.marginRight)
        .add(QStringLiteral("marginBottom"), fields.marginBottom)
        .add(QStringLiteral("marginUnit"), qToUnderlying(fields.marginUnit))
        .add(QStringLiteral("numberSteps"), store::low32(fields.numberSteps))
        .add(QStringLiteral("outputFolder"), fields.outputFolder)
        .add(QStringLiteral("pageRange"), qToUnderlying(fields.pageRange))
        .add(QStringLiteral("startNumber"), store::low32(fields.startNumber))
        .add(QStringLiteral("startPage"), store::low32(fields.startPage))
        .add(QStringLiteral("isHighlightStamp"), fields.isHighlightStamp)
        .add(QStringLiteral("isLivePreview"), fields.isLivePreview)
        .add(QStringLiteral("Stamps"), std::move(stampRecords));
    fields.options.addTo(builder);
    return builder.take();
}

} // namespace

std::optional<store::Record> Numbering::getData() const
{
    return guarded<std::optional<store::Record>>("Error in (Numbering=>getData) : %@", std::nullopt, [this] {
        store::RecordValue::List stampRecords;
        for (const auto& stamp : stamps) {
            auto record = stamp->getData();
            if (record) stampRecords.emplace_back(std::move(*record));
        }
        return std::optional(recordOf(fields_, std::move(stampRecords)));
    });
}

qint64 Numbering::pictureBytesWith(const IStampItem& stamp, qint64 bytes) const
{
    for (const auto& each : stamps) {
        const auto* other = dynamic_cast<const ImageStamp*>(each.get());
        if (other && other != &stamp && other->stampImage()) bytes += other->stampImage()->size();
    }
    return bytes;
}

bool Numbering::isConfiguration(const store::Record& record)
{
    const store::Record whole = recordOf(JobConfiguration(), {});
    return std::any_of(whole.entries().begin(), whole.entries().end(),
                       [&](const store::Record::Entry& entry) { return record.contains(entry.first); });
}

void Numbering::fillAbsentValues()
{
    if (!fields_.labelPrefix) fields_.labelPrefix = QString();
    if (!fields_.outputFolder) fields_.outputFolder = QString();
    for (const auto& stamp : stamps)
        stamp->fillAbsentValues();
}

bool Numbering::setData(const store::Record* data)
{
    beginUpdate();
    const bool applied = guarded("Error in (Numbering=>setData:) : %@", false, [&] {
        if (!data) return false;
        fields_.endPage = data->integer32(QStringLiteral("endPage"));
        fields_.hasLabel = data->boolean(QStringLiteral("hasLabel"));
        fields_.isBackupFile = data->boolean(QStringLiteral("isBackupFile"));
        fields_.isContinuousNumbering = data->boolean(QStringLiteral("isContinuousNumbering"));
        fields_.isMarginInPercentage = data->boolean(QStringLiteral("isMarginInPercentage"));
        fields_.isSymmetryPage = data->boolean(QStringLiteral("isSymmetryPage"));
        fields_.marginLeft = data->real(QStringLiteral("marginLeft"));
        fields_.marginTop = data->real(QStringLiteral("marginTop"));
        fields_.marginRight = data->real(QStringLiteral("marginRight"));
        fields_.marginBottom = data->real(QStringLiteral("marginBottom"));
        fields_.marginUnit = MarginUnit{data->integer32(QStringLiteral("marginUnit"))};
        fields_.numberSteps = data->integer32(QStringLiteral("numberSteps"));
        fields_.pageRange = PageRange{data->integer32(QStringLiteral("pageRange"))};
        fields_.startNumber = data->integer32(QStringLiteral("startNumber"));
        fields_.startPage = data->integer32(QStringLiteral("startPage"));
        fields_.isHighlightStamp = data->boolean(QStringLiteral("isHighlightStamp"));
        fields_.isLivePreview = data->boolean(QStringLiteral("isLivePreview"));
        fields_.labelPrefix = data->text(QStringLiteral("labelPrefix"));
        fields_.outputFolder = data->text(QStringLiteral("outputFolder"));
        fields_.options = JobOptions::read(*data);
        stamps.clear();
        const auto* stampRecords = data->list(QStringLiteral("Stamps"));
        if (!stampRecords) return true;
        for (const store::RecordValue& value : *stampRecords) {
            const auto* record = value.as<store::Record>();
            const std::shared_ptr<IStampItem> stamp = record ? stampFor(*record) : nullptr;
            if (!stamp) continue;
            stamp->setData(record);
            stamps.push_back(stamp);
        }
        return true;
    });
    endUpdate(false);
    return applied;
}

void Numbering::synchronize()
{
    guarded("Error in (Numbering=>synchronize) : %@", [this] {
        const auto record = getData();
        if (!defaults_ || !record) return;
        defaults_->setValue(QStringLiteral("NUMBERING"), *record);
        defaults_->flush();
    });
}

bool Numbering::save(const FilePath& path) const
{
    return guarded("Error in [save:] : %@", false, [&] {
        saveProfile(*this, path);
        return true;
    });
}

bool Numbering::load(const FilePath& path)
{
    return guarded("Error in [load:] : %@", false, [&] {
        loadProfile(*this, path);
        return true;
    });
}

} // namespace quillfern
