#include "runner/CopyOptions.h"

#include "batch/OutputNames.h"
#include "platform/system/Failure.h"
#include "runner/OptionValues.h"

#include <array>

namespace quillfern {

namespace {

constexpr std::array<std::pair<const char*, ExistingCopies>, 3> existingCopies = {
    {{"replace", ExistingCopies::Replace},
     {"skip", ExistingCopies::Skip},
     {"number", ExistingCopies::Number}}};

struct Switch
{
    const char* name; ///< with "no-" before it, the option that turns it off
    bool JobOptions::*field;
};
constexpr std::array switches = {Switch{"keep-folders", &JobOptions::keepFolders},
                                 Switch{"tif-names", &JobOptions::tifNames}};

QString namePattern(const QString& option, const QString& value)
{
    if (value.trimmed().isEmpty()) wrong(option, value, QStringLiteral("a pattern"));
    if (const auto word = OutputNames::unknownWord(value))
        throw WrongUse(QStringLiteral("--%1 knows {name}, {first}, {last}, {index} and {date}, not %2")
                           .arg(option, *word));
    return value;
}

} // namespace

bool applyCopyOption(const QString& name, const QString& value, JobOptions& options)
{
    for (const Switch& known : switches) {
        const QString on = QString::fromLatin1(known.name);
        const bool isOn = name == on;
        if (!isOn && name != QStringLiteral("no-") + on) continue;
        options.*known.field = isOn;
        return true;
    }
    if (name == QLatin1String("existing"))
        options.existing = word(name, value, existingCopies);
    else if (name == QLatin1String("name"))
        options.namePattern = namePattern(name, value);
    else if (name == QLatin1String("no-name"))
        options.namePattern.clear();
    else if (name == QLatin1String("index")) {
        if (value.isEmpty()) wrong(name, value, QStringLiteral("the name of a file"));
        options.index = true;
        options.indexFile = FilePath::fromText(value);
    } else if (name == QLatin1String("no-index"))
        options.index = false;
    else
        return false;
    return true;
}

} // namespace quillfern
