#include "config/Numbering.h"

#include "platform/drawing/FontCatalog.h"
#include "platform/store/DefaultsStore.h"
#include "platform/system/Guarded.h"

namespace quillfern {

Numbering::Numbering(store::DefaultsStore* defaults) : defaults_(defaults)
{
    if (defaults_) {
        const auto stored = defaults_->value(QStringLiteral("NUMBERING"));
        if (stored) setData(stored->as<store::Record>());
    }
    getPDFFonts();
}

void Numbering::endUpdate(bool notify)
{
    isUpdating_ = false;
    if (notify && delegate_) delegate_->PropertyChanged(*this);
}

void Numbering::settingsChanged()
{
    if (!isUpdating_ && delegate_) delegate_->PropertyChanged(*this);
}

const std::set<std::string>& Numbering::keyPathsForValuesAffectingIsSettingsChanged()
{
    // "marginAnchor" and "numberType" are fields of stamps; a change of them counts as a change of the
    // configuration, too.
    static const std::set<std::string> keys = {
        "hasLabel",     "isContinuousNumbering", "labelPrefix",  "marginAnchor", "marginLeft",
        "marginTop",    "marginRight",           "marginBottom", "numberType",   "pageRange",
        "startNumber",  "numberSteps",           "startPage",    "endPage",      "isHighlightStamp",
        "isLivePreview"};
    return keys;
}

JobConfiguration Numbering::configuration() const
{
    JobConfiguration copy = fields_;
    copy.stamps = valuesOf(stamps);
    return copy;
}

const std::vector<PDFFont>& Numbering::getPDFFonts()
{
    guarded("Error in (Numbering=>getPDFFonts) : %@", [this] {
        fonts_.clear();
        for (const QString& family : drawing::FontCatalog().families())
            fonts_.push_back(PDFFont::initWithFont(family, -1, 12.0, false));
    });
    return fonts_;
}

} // namespace quillfern
