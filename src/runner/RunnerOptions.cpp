#include "runner/RunnerOptions.h"

#include "config/PageArea.h"
#include "config/Profile.h"
#include "platform/system/Failure.h"
#include "platform/system/NativePath.h"
#include "runner/JobFlags.h"
#include "runner/OptionValues.h"
#include "runner/StampOptions.h"

#include <QCommandLineParser>
#include <QHash>
#include <QRegularExpression>
#include <array>
#include <limits>

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
    const QStringList parts = text.split(u',');
    std::array<double, 4> values = {};
    std::array<QString, 4> unitNames;
    if (parts.size() != 4) wrong(QStringLiteral("margins"), text, QStringLiteral("four lengths L,T,R,B"));
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

constexpr std::array jobOptions = {
    Option{"output", "DIR", "Folder for the stamped copies. Required for a job."},
    Option{"profile", "FILE",
           "Begin with the stamps, pages, numbers and margins of a saved profile. Options after "
           "--profile override the profile; stamps after it are added to the profile's stamps."},
    Option{"save-profile", "FILE",
           "Save the stamps, pages, numbers and margins as a profile. Without files no job is started."},
    Option{"preview", "PAGE.png",
           "Draw the first page of the first file with its stamps, or a blank page when no "
           "file is named, and stamp nothing."},
    Option{"preview-size", "WxH", "Largest size of the preview in pixels (600x850)."},
    Option{"start-page", "N", "First page to stamp (1)."},
    Option{"end-page", "N", "Last page to stamp; 0 is the last page of each file (0)."},
    Option{"start-number", "N", "Number of the first stamped page (1)."},
    Option{"step", "N", "Difference between the numbers of successive stamped pages (1)."},
    Option{"pages", "WHICH",
           "Pages to stamp: all (the default), odd or even. The other pages of a PDF become blank."},
    Option{"continuous", nullptr,
           "Continue the numbers from file to file instead of restarting in each file."},
    Option{"no-continuous", nullptr, "Restart the numbers in each file; overrides the profile."},
    Option{"margins", "L,T,R,B", "Margins with the unit pt, mm or in: 36,36,36,36 or 10,10,10,15mm."},
    Option{"backup", nullptr, "Keep a copy NAME.bak of a file that is processed in place."},
    Option{"no-backup", nullptr, "Keep no such copy; overrides the profile."},
    Option{
        "rewrite", nullptr,
        "Write every object of a PDF anew, so that the copy holds no earlier revision of it. Otherwise the "
        "stamps are appended to a copy of the file, which is faster and keeps a signed revision."},
    Option{"refuse-signed", nullptr,
           "Make no copy of a PDF that is digitally signed; the file counts as failed."},
    Option{"subfolders", nullptr, "Also take files from the subfolders of the folders named."},
    Option{"list", "FILE",
           "Also take the files named in a text file, one path a line. They come after those named on the "
           "command line."},
    Option{"export", "FILE",
           "Write the list of files, with their pages, as tab-delimited text. Without --output and stamps "
           "nothing else is done."},
    Option{"quiet", nullptr, "Print only what went wrong."},
    Option{"help", nullptr, "Show this text."},
    Option{"version", nullptr, "Show the version."},
};

class Reader
{
  public:
    explicit Reader(Settings& settings)
        : settings_(settings), number_(*settings.number), stamps_(number_.stamps)
    {
    }

    void apply(const QString& name, const QString& value, RunnerOptions& options)
    {
        if (applyToRun(name, value, options)) return;
        if (name == QLatin1String("profile")) return loadProfile(value);
        isChanged_ = true;
        if (!stamps_.apply(name, value) && !applyJobFlag(number_, name, value)) applyToJob(name, value);
    }

    void addRemarks(RunnerOptions& options) const
    {
        if (!backupProfile_.isEmpty())
            options.remarks.append(QStringLiteral("The profile \"%1\" turns the backup of files that are "
                                                  "processed in place on (--no-backup turns it off).")
                                       .arg(readableName(backupProfile_)));
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
            options.lists.append(value);
        else if (name == QLatin1String("export"))
            options.exportFile = FilePath::fromText(value);
        else if (name == QLatin1String("quiet"))
            options.quiet = true;
        else if (name == QLatin1String("help"))
            options.showHelp = true;
        else if (name == QLatin1String("version"))
            options.showVersion = true;
        else
            return false;
        return true;
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
    bool isChanged_ = false; ///< by an option other than --profile
    QString backupProfile_;  ///< the profile that has turned the backup on; empty when an option decides
};

template <class Options>
void declare(QCommandLineParser& parser, const Options& options)
{
    for (const Option& option : options) {
        QCommandLineOption declared(QString::fromLatin1(option.name));
        if (option.value) declared.setValueName(QString::fromLatin1(option.value));
        parser.addOption(declared);
    }
}

template <class Options>
QString describe(const Options& options)
{
    constexpr qsizetype column = 24;
    constexpr qsizetype width = 78;
    QString text;
    for (const Option& option : options) {
        QString line = QStringLiteral("  --") + QString::fromLatin1(option.name);
        if (option.value) line += u' ' + QString::fromLatin1(option.value);
        line = line.leftJustified(column - 1);
        for (const QString& next : QString::fromLatin1(option.help).split(u' ')) {
            if (line.size() + 1 + next.size() > width) {
                text += line + u'\n';
                line = QString(column - 1, u' ');
            }
            line += u' ' + next;
        }
        text += line + u'\n';
    }
    return text;
}

} // namespace

QString runnerHelp()
{
    return QStringLiteral(
               "quillfern-run [options] --output DIR FILE|FOLDER...\n"
               "quillfern-run [options] --preview PAGE.png [FILE]\n"
               "quillfern-run [options] --save-profile FILE\n\n"
               "Stamps page numbers, text and pictures onto every page of PDF and raster files and writes a\n"
               "stamped copy of each into a folder: a PDF of a PDF, a multi-page TIFF of any other. Needs "
               "no\n"
               "display.\n\nStamps:\n") +
           describe(StampOptions::options()) + QStringLiteral("\nPages, numbers and files:\n") +
           describe(jobOptions) + QStringLiteral("\nPages, sizes and passwords beyond these:\n") +
           describe(jobFlags()) +
           QStringLiteral("\nExit status: 0 when every file has its copy, 1 when some have none, one was "
                          "replaced by the\n"
                          "copy of another file of the same name or lacks parts of a damaged file, 2 for a "
                          "command line\n"
                          "that cannot be followed (no file is stamped then).\n");
}

RunnerOptions parseRunnerOptions(const QStringList& arguments, Settings& settings)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    declare(parser, StampOptions::options());
    declare(parser, jobOptions);
    declare(parser, jobFlags());
    if (!parser.parse(arguments)) throw WrongUse(parser.errorText());

    RunnerOptions options;
    options.inputs = parser.positionalArguments();
    Reader reader(settings);
    // The parser lists the options in the order given, and the values of each in order.
    QHash<QString, qsizetype> seen;
    for (const QString& name : parser.optionNames()) {
        const QStringList values = parser.values(name);
        const qsizetype index = seen[name]++;
        reader.apply(name, index < values.size() ? values[index] : QString(), options);
    }
    reader.addRemarks(options);
    if (options.showHelp || options.showVersion) return options;
    const bool hasOutput = !settings.outputFolderPath.value_or(QString()).isEmpty();
    const bool hasStamps = !settings.number->stamps.empty();
    options.onlyExport = !options.exportFile.isEmpty() && !hasOutput && !hasStamps &&
                         options.preview.isEmpty() && options.saveProfile.isEmpty();
    if (options.asksForJob() && !options.namesFiles())
        throw WrongUse(QStringLiteral("no files or folders to stamp"));
    if (options.onlyExport) return options;
    if (options.asksForJob() && !hasOutput)
        throw WrongUse(QStringLiteral("no output folder; name one with --output"));
    if (!hasStamps) throw WrongUse(QStringLiteral("no stamp; begin one with --text or --image"));
    return options;
}

} // namespace quillfern
