#include "config/Settings.h"

#include "platform/store/DefaultsStore.h"
#include "platform/system/Guarded.h"
#include "platform/system/NativePath.h"

namespace quillfern {

namespace {

// The names in every stored form. They are not to change.
const QString keepFolderKey = QStringLiteral("isSetCurrentAsDefaultOutputFolderPath");
const QString openFolderKey = QStringLiteral("isOpenFolderAfterConversion");
const QString passwordKey = QStringLiteral("pdfOpenPassword");
const QString folderKey = QStringLiteral("outputFolderPath");
/// Beside folderKey, for a folder whose name is not UTF-8 only: property lists hold no such text.
const QString folderBytesKey = QStringLiteral("outputFolderPathBytes");
const QString numberKey = QStringLiteral("number");
const QString clearFilesKey = QStringLiteral("isClearProcessedFiles");
const QString storeKey = QStringLiteral("SETTINGS");

/// The text without what a property list leaves out of a path: the bytes that are not UTF-8.
QString withoutForeignBytes(QString path)
{
    return path.removeIf([](QChar c) { return c >= QChar(0xDC80) && c <= QChar(0xDCFF); });
}

/// The output folder in a record. Its bytes count only together with the text that they belong to.
std::optional<QString> folderIn(const store::Record& data)
{
    std::optional<QString> folder = data.text(folderKey);
    const auto bytes = data.bytes(folderBytesKey);
    if (!folder || !bytes) return folder;
    const QString whole = pathText(*bytes);
    return withoutForeignBytes(whole) == withoutForeignBytes(*folder) ? whole : folder;
}

} // namespace

Settings::Settings(store::DefaultsStore* defaults)
    : number(std::make_unique<Numbering>(defaults)), defaults_(defaults)
{
    if (!defaults_) return;
    const auto stored = defaults_->value(storeKey);
    if (stored) setData(stored->as<store::Record>());
    number->fillAbsentValues();
}

std::optional<store::Record> Settings::getData()
{
    return guarded<std::optional<store::Record>>("Error in (Settings=>getData) : %@", std::nullopt, [this] {
        if (!pdfOpenPassword) pdfOpenPassword = QString();
        if (!outputFolderPath) outputFolderPath = QString();
        // Settings without their configuration would replace those that are stored.
        const auto configuration = number ? number->getData() : std::nullopt;
        if (number && !configuration) throw Failure(QStringLiteral("the configuration has no record"));
        store::RecordBuilder builder;
        builder.add(keepFolderKey, isSetCurrentAsDefaultOutputFolderPath)
            .add(openFolderKey, isOpenFolderAfterConversion)
            .add(passwordKey, pdfOpenPassword)
            .add(folderKey, outputFolderPath)
            .add(numberKey, configuration)
            .add(clearFilesKey, isClearProcessedFiles);
        const QByteArray folder = nativePath(*outputFolderPath);
        if (QString::fromUtf8(folder) != outputFolderPath) builder.add(folderBytesKey, folder);
        return std::optional(builder.take());
    });
}

void Settings::setData(const store::Record* data)
{
    guarded("Error in (Settings=>setData:) : %@", [&] {
        if (!data) return;
        readOptions(*data);
        if (number) number->setData(data->record(numberKey));
        const bool hasFolder = !outputFolderPath.value_or(QString()).isEmpty();
        if (hasFolder && !isSetCurrentAsDefaultOutputFolderPath) outputFolderPath = QString();
        if (!hasFolder) isSetCurrentAsDefaultOutputFolderPath = false;
    });
}

std::optional<Reason> Settings::synchronize()
{
    std::optional<Reason> problem;
    guarded("Error in (Settings=>synchronize) : %@", [&] {
        try {
            if (!defaults_) return;
            auto record = getData();
            if (!record)
                throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory."));
            defaults_->setValue(storeKey, std::move(*record));
            defaults_->flush();
        } catch (...) {
            problem = currentReason();
            throw;
        }
    });
    return problem;
}

void Settings::readOptions(const store::Record& data)
{
    isSetCurrentAsDefaultOutputFolderPath = data.boolean(keepFolderKey);
    isOpenFolderAfterConversion = data.boolean(openFolderKey);
    pdfOpenPassword = data.text(passwordKey);
    outputFolderPath = folderIn(data);
    isClearProcessedFiles = data.boolean(clearFilesKey);
}

void Settings::encodeWithCoder(store::Record& coder) const
{
    coder.set(keepFolderKey, isSetCurrentAsDefaultOutputFolderPath);
    coder.set(openFolderKey, isOpenFolderAfterConversion);
    // A key without a value is not written, and reads back as no value.
    if (pdfOpenPassword) coder.set(passwordKey, *pdfOpenPassword);
    if (outputFolderPath) coder.set(folderKey, *outputFolderPath);
    coder.set(clearFilesKey, isClearProcessedFiles);
}

std::unique_ptr<Settings> Settings::initWithCoder(const store::Record& coder)
{
    std::unique_ptr<Settings> settings(new Settings(WithoutNumber()));
    settings->readOptions(coder);
    return settings;
}

} // namespace quillfern
