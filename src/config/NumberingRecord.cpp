#include "config/Numbering.h"
#include "platform/store/AtomicFile.h"
#include "platform/store/DefaultsStore.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Guarded.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"

namespace quillfern {

namespace {

/// No record names its stamp's kind; the keys tell. Null for a record that is neither.
std::shared_ptr<IStampItem> stampFor(const Record& record)
{
    if (record.contains(QStringLiteral("font"))) return std::make_shared<TextStamp>();
    if (record.contains(QStringLiteral("stampImage"))) return std::make_shared<ImageStamp>();
    return nullptr;
}

} // namespace

std::optional<Record> Numbering::getData() const
{
    return guarded<std::optional<Record>>("Error in (Numbering=>getData) : %@", std::nullopt, [this] {
        RecordValue::List stampRecords;
        for (const auto& stamp : stamps) {
            auto record = stamp->getData();
            if (record) stampRecords.emplace_back(std::move(*record));
        }
        return std::optional(RecordBuilder()
                                 .add(QStringLiteral("endPage"), low32(endPage_))
                                 .add(QStringLiteral("hasLabel"), hasLabel_)
                                 .add(QStringLiteral("isBackupFile"), isBackupFile)
                                 .add(QStringLiteral("isContinuousNumbering"), isContinuousNumbering_)
                                 .add(QStringLiteral("isMarginInPercentage"), isMarginInPercentage)
                                 .add(QStringLiteral("isSymmetryPage"), isSymmetryPage)
                                 .add(QStringLiteral("labelPrefix"), labelPrefix_)
                                 .add(QStringLiteral("marginLeft"), marginLeft_)
                                 .add(QStringLiteral("marginTop"), marginTop_)
                                 .add(QStringLiteral("marginRight"), marginRight_)
                                 .add(QStringLiteral("marginBottom"), marginBottom_)
                                 .add(QStringLiteral("marginUnit"), marginUnit)
                                 .add(QStringLiteral("numberSteps"), low32(numberSteps_))
                                 .add(QStringLiteral("outputFolder"), outputFolder)
                                 .add(QStringLiteral("pageRange"), pageRange_)
                                 .add(QStringLiteral("startNumber"), low32(startNumber_))
                                 .add(QStringLiteral("startPage"), low32(startPage_))
                                 .add(QStringLiteral("isHighlightStamp"), isHighlightStamp_)
                                 .add(QStringLiteral("isLivePreview"), isLivePreview_)
                                 .add(QStringLiteral("Stamps"), std::move(stampRecords))
                                 .take());
    });
}

bool Numbering::setData(const Record* data)
{
    beginUpdate();
    const bool applied = guarded("Error in (Numbering=>setData:) : %@", false, [&] {
        if (!data) return false;
        endPage_ = data->integer32(QStringLiteral("endPage"));
        hasLabel_ = data->boolean(QStringLiteral("hasLabel"));
        isBackupFile = data->boolean(QStringLiteral("isBackupFile"));
        isContinuousNumbering_ = data->boolean(QStringLiteral("isContinuousNumbering"));
        isMarginInPercentage = data->boolean(QStringLiteral("isMarginInPercentage"));
        isSymmetryPage = data->boolean(QStringLiteral("isSymmetryPage"));
        marginLeft_ = data->real(QStringLiteral("marginLeft"));
        marginTop_ = data->real(QStringLiteral("marginTop"));
        marginRight_ = data->real(QStringLiteral("marginRight"));
        marginBottom_ = data->real(QStringLiteral("marginBottom"));
        marginUnit = data->integer32(QStringLiteral("marginUnit"));
        numberSteps_ = data->integer32(QStringLiteral("numberSteps"));
        pageRange_ = data->integer32(QStringLiteral("pageRange"));
        startNumber_ = data->integer32(QStringLiteral("startNumber"));
        startPage_ = data->integer32(QStringLiteral("startPage"));
        isHighlightStamp_ = data->boolean(QStringLiteral("isHighlightStamp"));
        isLivePreview_ = data->boolean(QStringLiteral("isLivePreview"));
        labelPrefix_ = data->text(QStringLiteral("labelPrefix"));
        outputFolder = data->text(QStringLiteral("outputFolder"));
        stamps.clear();
        const auto* stampRecords = data->list(QStringLiteral("Stamps"));
        if (!stampRecords) return true;
        for (const RecordValue& value : *stampRecords) {
            const auto* record = value.as<Record>();
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
        const auto record = getData();
        if (!record) return false;
        AtomicFile::writeWhole(path, writePropertyList(*record));
        return true;
    });
}

bool Numbering::load(const FilePath& path)
{
    return guarded("Error in [load:] : %@", false, [&] {
        const Record record = readPropertyListFile(path);
        return setData(&record);
    });
}

} // namespace quillfern
