#pragma once

#include <QString>
#include <span>

namespace quillfern {

/// How an option is declared and described. The help, and whatever else lists the options, is made from this
/// table alone.
struct Option
{
    const char* name;          ///< without the dashes
    const char* value;         ///< what the value is called in the help; null for a switch
    const char* help;          ///< sentences; a default stands in parentheses
    char letter = 0;           ///< a short name of one letter; 0 for none
    bool mayRepeat = false;    ///< each use adds something; any other option is given once
    bool isOfOneStamp = false; ///< applies to the stamp last begun, so that each stamp may have its own
};

/// Options that belong together, under a heading of the help.
struct OptionGroup
{
    const char* title;
    std::span<const Option> options;
};

/// All options of quillfern-run, in the order of the help.
[[nodiscard]] std::span<const OptionGroup> optionGroups();

/// The option with this name or letter; null for none.
[[nodiscard]] const Option* findOption(const QString& name);

/// The text of --help.
[[nodiscard]] QString runnerHelp();

} // namespace quillfern
