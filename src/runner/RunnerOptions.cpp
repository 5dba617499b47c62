#include "runner/RunnerOptions.h"

#include "config/PageArea.h"
#include "config/Profile.h"
#include "platform/drawing/LibraryVersions.h"
#include "platform/pdf/LibraryVersions.h"
#include "platform/raster/LibraryVersions.h"
#include "platform/system/Failure.h"
#include "platform/system/NativePath.h"
#include "runner/CopyOptions.h"
#include "runner/JobFlags.h"
#include "runner/OptionTable.h"
#include "runner/OptionValues.h"
#include "runner/StampOptions.h"
#include "stamps/TextStamp.h"

#include <QCommandLineParser>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <array>
#include <limits>
#include <memory>

namespace quillfern {

namespace {

constexpr std::array<std::pair<const char*, PageRange>, 3> pageRanges = {
    {{"all", PageRange::AllPages}, {"odd", PageRange::OddPages}, {"even", PageRange::EvenPages}}};
constexpr std::array<std::pair<const char*, MarginUnit>, 3> units = {
    {{"pt", MarginUnit::Points}, {"mm", MarginUnit::Millimetres}, {"in", MarginUnit::Inches}}};

constexpr std::int64_t largest32 = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t smallest32 = std::numeric_limits<std::int32_t>::min();

void readMargins(Numbering& number, const QString& text)
{
    static const QRegularExpression length(
        QStringLiteral("^\\s*([0-9]+(?:\\.[0-9]*)?|\\.[0-9]+)\\s*(pt|mm|in)?\\s*$"));
    QStringList parts = text.split(u',');
    if (parts.size() == 1) parts = {text, text, text, text};
    std::array<double, 4> values = {};
    std::array<QString, 4> unitNames;
    if (parts.size() != 4)
        wrong(QStringLiteral("margins"), text, QStringLiteral("four lengths L,T,R,B, or one for all"));
    for (int i = 0; i < 4; ++i) {
        const auto match = length.match(parts[i]);
        if (!match.hasMatch())
            wrong(QStringLiteral("margins"), text, QStringLiteral("lengths with the unit pt, mm or in"));
        values[static_cast<std::size_t>(i)] = match.captured(1).toDouble();
        unitNames[static_cast<std::size_t>(i)] = match.captured(2);
    }
    // The unit of the last length also applies to lengths without a unit: 10,10,10,15mm.
    QString common = unitNames[3].isEmpty() ? QStringLiteral("pt") : unitNames[3];
    for (QString& unit : unitNames)
        if (unit.isEmpty()) unit = common;
    const bool oneUnit =
        std::all_of(unitNames.begin(), unitNames.end(), [&](const QString& u) { return u == common; });
    if (!oneUnit) {
        for (std::size_t i = 0; i < 4; ++i) {
            number.setMarginUnit(word(QStringLiteral("margins"), unitNames[i], units));
            values[i] = convertToPointUnit(number.fields(), values[i]);
        }
        common = QStringLiteral("pt");
    }
    number.setMarginUnit(word(QStringLiteral("margins"), common, units));
    number.setIsMarginInPercentage(false);
    number.setMarginLeft(values[0]);
    number.setMarginTop(values[1]);
    number.setMarginRight(values[2]);
    number.setMarginBottom(values[3]);
}

/// What looks like a slot of a template and is none, in order and once each.
QStringList unknownWords(const TextStamp& stamp)
{
    const NumberFormat& format = stamp.number;
    static const QRegularExpression word(QStringLiteral("\\{[^{}\\s]*\\}"));
    const bool fillsSlots = format.numberType != NumberType::PlainText;
    const QStringList fillIns = {QStringLiteral("{file}"), QStringLiteral("{folder}"),
                                 QStringLiteral("{date}"), QStringLiteral("{time}"),
                                 QStringLiteral("{label}")};
    QStringList unknown;
    for (const auto& match : word.globalMatch(format.numberFormat.value_or(QString()))) {
        const QString found = match.captured();
        const bool isSlot = found == QLatin1String("{0}") || found == QLatin1String("{1}");
        const bool isKnown = (isSlot && fillsSlots) || (stamp.isFillIn && fillIns.contains(found));
        if (!isKnown && !unknown.contains(found)) unknown.append(found);
    }
    return unknown;
}

class Reader
{
  public:
    explicit Reader(Settings& settings)
        : settings_(settings), number_(*settings.number), stamps_(number_.stamps)
    {
    }

    void apply(const QString& name, const QString& value, RunnerOptions& options)
    {
        if (applyToRun(name, value, options)) return requireOneReader(options);
        if (name == QLatin1String("password-file")) {
            readsPassword_ = value == standardInput;
            requireOneReader(options); // before the list is taken for the password
        }
        if (name == QLatin1String("profile")) return loadProfile(value);
        isChanged_ = true;
        if (!stamps_.apply(name, value) && !applyJobFlag(number_, name, value)) applyToJob(name, value);
    }

    void addRemarks(RunnerOptions& options) const
    {
        if (!backupProfile_.isEmpty())
            options.remarks.push_back(
                {"backup-by-profile", QStringLiteral("The profile \"%1\" turns the backup of files that are "
                                                     "processed in place on (--no-backup turns it off).")
                                          .arg(readableName(backupProfile_))});
        for (const auto& stamp : number_.stamps) {
            const auto* text = dynamic_cast<const TextStamp*>(stamp.get());
            if (!text) continue;
            const QString pattern = text->number.numberFormat.value_or(QString());
            for (const QString& word : unknownWords(*text))
                options.remarks.push_back({"unknown-word", QStringLiteral("\"%1\" in the template \"%2\" is "
                                                                          "printed as it stands.")
                                                               .arg(word, pattern)});
        }
    }

  private:
    /// Options that select what to do; they do not change the configuration.
    bool applyToRun(const QString& name, const QString& value, RunnerOptions& options)
    {
        if (name == QLatin1String("output"))
            settings_.outputFolderPath = value;
        else if (name == QLatin1String("save-profile"))
            options.saveProfile = fileName(name, value);
        else if (name == QLatin1String("preview"))
            options.preview = fileName(name, value);
        else if (name == QLatin1String("preview-size"))
            options.previewSize = pixelSize(name, value);
        else if (name == QLatin1String("subfolders"))
            options.subfolders = true;
        else if (name == QLatin1String("rewrite"))
            options.rewrite = true;
        else if (name == QLatin1String("refuse-signed"))
            options.refuseSigned = true;
        else if (name == QLatin1String("list"))
            addList(value, options);
        else if (name == QLatin1String("export"))
            options.exportFile = FilePath::fromText(value);
        else if (name == QLatin1String("quiet"))
            options.quiet = true;
        else if (name == QLatin1String("files-at-once"))
            options.filesAtOnce = static_cast<int>(wholeNumber(name, value, 1, 64));
        else if (name == QLatin1String("counts"))
            options.counts = fileName(name, value);
        else if (name == QLatin1String("save-counts"))
            options.saveCounts = fileName(name, value);
        else if (name == QLatin1String("shard"))
            readPart(name, value, options);
        else if (name == QLatin1String("check"))
            options.check = true;
        else if (name == QLatin1String("strict"))
            options.strict = true;
        else if (name == QLatin1String("json"))
            options.json = true;
        else
            return false;
        return true;
    }

    void requireOneReader(const RunnerOptions& options) const
    {
        if (readsPassword_ && options.lists.contains(standardInput))
            throw WrongUse(QStringLiteral(
                "--list - and --password-file - both read the standard input, which can be read once"));
    }

    static void addList(const QString& value, RunnerOptions& options)
    {
        if (value == standardInput && options.lists.contains(value))
            throw WrongUse(QStringLiteral("--list - is given twice; the standard input can be read once"));
        options.lists.append(value);
    }

    static void readPart(const QString& option, const QString& value, RunnerOptions& options)
    {
        constexpr std::int64_t mostParts = 1'000'000;
        const QStringList numbers = value.split(u'/');
        if (numbers.size() != 2) wrong(option, value, QStringLiteral("a part and their number as K/N"));
        options.parts = static_cast<int>(wholeNumber(option, numbers[1], 1, mostParts));
        options.part = static_cast<int>(wholeNumber(option, numbers[0], 1, options.parts));
    }

    static FilePath fileName(const QString& option, const QString& value)
    {
        if (value.isEmpty()) wrong(option, value, QStringLiteral("the name of a file"));
        return FilePath::fromText(value);
    }

    static QSize pixelSize(const QString& option, const QString& value)
    {
        const QStringList sides = value.split(u'x');
        if (sides.size() != 2) wrong(option, value, QStringLiteral("a width and a height as WxH"));
        return {static_cast<int>(wholeNumber(option, sides[0], 1, 10000)),
                static_cast<int>(wholeNumber(option, sides[1], 1, 10000))};
    }

    void loadProfile(const QString& path)
    {
        if (isChanged_)
            throw WrongUse(
                QStringLiteral("--profile replaces the stamps and options given before it; name it first"));
        try {
            quillfern::loadProfile(number_, FilePath::fromText(path));
            number_.options().pageList.requireReadable();
            backupProfile_ = number_.isBackupFile() ? path : QString();
        } catch (const Failure& failure) {
            throw WrongUse(QStringLiteral("the profile \"%1\" cannot be used: %2")
                               .arg(readableName(path), failure.reason()));
        }
    }

    bool applyToJob(const QString& name, const QString& value)
    {
        JobOptions ofJob = number_.options();
        if (applyCopyOption(name, value, ofJob)) {
            number_.setOptions(std::move(ofJob));
            return true;
        }
        if (name == QLatin1String("start-page"))
            number_.setStartPage(wholeNumber(name, value, 1, largest32));
        else if (name == QLatin1String("end-page"))
            number_.setEndPage(wholeNumber(name, value, 0, largest32));
        else if (name == QLatin1String("start-number"))
            number_.setStartNumber(wholeNumber(name, value, smallest32, largest32));
        else if (name == QLatin1String("step"))
            number_.setNumberSteps(wholeNumber(name, value, smallest32, largest32));
        else if (name == QLatin1String("pages"))
            number_.setPageRange(word(name, value, pageRanges));
        else if (name == QLatin1String("continuous"))
            number_.setIsContinuousNumbering(true);
        else if (name == QLatin1String("no-continuous"))
            number_.setIsContinuousNumbering(false);
        else if (name == QLatin1String("margins"))
            readMargins(number_, value);
        else if (name == QLatin1String("backup"))
            setBackup(true);
        else if (name == QLatin1String("no-backup"))
            setBackup(false);
        else
            return false;
        return true;
    }

    void setBackup(bool on)
    {
        number_.setIsBackupFile(on);
        backupProfile_.clear();
    }

    Settings& settings_;
    Numbering& number_;
    StampOptions stamps_;
    bool readsPassword_ = false; ///< from the standard input
    bool isChanged_ = false;     ///< by an option other than --profile
    QString backupProfile_;      ///< the profile that has turned the backup on; empty when an option decides
};

/// A parser that has read the command line; throws WrongUse for what it cannot read, the beginning of an
/// option's name among it.
std::unique_ptr<QCommandLineParser> read(const QStringList& arguments)
{
    auto parser = std::make_unique<QCommandLineParser>();
    parser->setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionGroup& group : optionGroups())
        for (const Option& option : group.options) {
            QStringList names = {QString::fromLatin1(option.name)};
            if (option.letter) names.append(QString(QLatin1Char(option.letter)));
            QCommandLineOption declared(names);
            if (option.value) declared.setValueName(QString::fromLatin1(option.value));
            parser->addOption(declared);
        }
    if (!parser->parse(arguments)) throw WrongUse(parser->errorText());
    return parser;
}

/// Notices an option that would silently undo an earlier one.
class GivenOnce
{
  public:
    void take(const Option& option)
    {
        const QString name = QString::fromLatin1(option.name);
        if (option.mayRepeat) {
            if (name == QLatin1String("text") || name == QLatin1String("image")) ofStamp_.clear();
            return;
        }
        QSet<QString>& given = option.isOfOneStamp ? ofStamp_ : ofJob_;
        if (given.contains(name))
            throw WrongUse((option.isOfOneStamp ? QStringLiteral("--%1 is given twice for one stamp")
                                                : QStringLiteral("--%1 is given twice"))
                               .arg(name));
        const QString no = QStringLiteral("no-");
        const QString opposite = name.startsWith(no) ? name.mid(no.size()) : no + name;
        if (given.contains(opposite))
            throw WrongUse(QStringLiteral("--%1 and --%2 exclude each other").arg(opposite, name));
        given.insert(name);
    }

  private:
    QSet<QString> ofJob_;
    QSet<QString> ofStamp_; ///< the stamp last begun
};

QString versions()
{
    QString text = QStringLiteral("quillfern-run " QUILLFERN_VERSION "\n");
    for (const auto& libraries :
         {drawing::libraryVersions(), pdf::libraryVersions(), raster::libraryVersions()})
        for (const LibraryVersion& library : libraries)
            text += QStringLiteral("%1 %2\n").arg(QLatin1String(library.name), library.version);
    return text;
}

void requireWritesNothing(const RunnerOptions& options)
{
    if (!options.check) return;
    for (const auto& [name, path] :
         {std::pair("export", options.exportFile), std::pair("save-counts", options.saveCounts),
          std::pair("save-profile", options.saveProfile), std::pair("preview", options.preview)})
        if (!path.isEmpty())
            throw WrongUse(QStringLiteral("--check writes nothing; --%1 does").arg(QLatin1String(name)));
}

} // namespace

std::optional<QString> answerWithoutJob(const QStringList& arguments)
{
    try {
        const auto parser = read(arguments);
        if (parser->isSet(QStringLiteral("help"))) return runnerHelp();
        if (parser->isSet(QStringLiteral("version"))) return versions();
    } catch (const WrongUse&) {
        // Who reads the command line for a job says what is wrong with it.
    }
    return std::nullopt;
}

RunnerOptions parseRunnerOptions(const QStringList& arguments, Settings& settings)
{
    const auto parser = read(arguments);
    RunnerOptions options;
    options.inputs = parser->positionalArguments();
    Reader reader(settings);
    GivenOnce once;
    // The parser lists the options in the order given, and the values of each in order.
    QHash<QString, qsizetype> seen;
    for (const QString& name : parser->optionNames()) {
        once.take(*findOption(name));
        const QStringList values = parser->values(name);
        const qsizetype index = seen[name]++;
        reader.apply(name, index < values.size() ? values[index] : QString(), options);
    }
    reader.addRemarks(options);
    const bool hasOutput = !settings.outputFolderPath.value_or(QString()).isEmpty();
    const bool hasStamps = !settings.number->stamps.empty();
    options.onlyExport = !(options.exportFile.isEmpty() && options.saveCounts.isEmpty()) && !hasOutput &&
                         !hasStamps && options.preview.isEmpty() && options.saveProfile.isEmpty();
    if (options.asksForJob() && !options.namesFiles())
        throw WrongUse(QStringLiteral("no files or folders to stamp"));
    if (options.onlyExport) return options;
    if (options.asksForJob() && !hasOutput)
        throw WrongUse(QStringLiteral("no output folder; name one with --output"));
    requireWritesNothing(options);
    const JobOptions& ofJob = settings.number->options();
    if (options.parts > 1 && ofJob.index && ofJob.indexFile.isEmpty())
        throw WrongUse(QStringLiteral("each part needs an index of its own; name it with --index"));
    if (!hasStamps) throw WrongUse(QStringLiteral("no stamp; begin one with --text or --image"));
    return options;
}

} // namespace quillfern
