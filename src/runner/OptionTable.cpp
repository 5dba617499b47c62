#include "runner/OptionTable.h"

#include <array>

namespace quillfern {

namespace {

constexpr bool repeats = true;
constexpr bool ofOneStamp = true;

/// An option of the stamp last begun.
constexpr Option ofStamp(const char* name, const char* value, const char* help)
{
    return {name, value, help, 0, false, ofOneStamp};
}

constexpr std::array stampOptions = {
    Option{"text", "TEMPLATE",
           "Begin a text stamp. {0} is the page's number, {1} the total. Only their order counts: the first "
           "one in the text is always the number. Other words in braces are printed as they stand.",
           0, repeats},
    Option{"image", "FILE", "Begin a picture stamp with a BMP, JPEG, PNG or GIF file.", 0, repeats},
    ofStamp("anchor", "PLACE",
            "TopLeft, TopMiddle, TopRight, MiddleLeft, MiddleMiddle, MiddleRight, BottomLeft, "
            "BottomMiddle (the default) or BottomRight of the area inside the margins."),
    ofStamp("font", "NAME", "Font family (Helvetica)."),
    ofStamp("font-size", "PT", "Font size in points (12)."),
    ofStamp("bold", nullptr, "Use the bold font of the family, if there is one."),
    ofStamp("italic", nullptr, "Use the italic font of the family, if there is one."),
    ofStamp("color", "#RRGGBB", "Text colour (#000000)."),
    ofStamp("fill-in", nullptr, "Fill in {file}, {folder}, {date}, {time} and {label} in the template."),
    ofStamp("number-type", "STYLE", "plain, numbers (the default), roman-capital or roman-small."),
    ofStamp("padding", "N", "Write numbers with at least N digits (1)."),
    ofStamp("width", "PT",
            "Width of the picture in points (its pixels). With only one of --width and --height the picture "
            "keeps its proportions."),
    ofStamp("height", "PT", "Height of the picture in points (its pixels)."),
    ofStamp("opacity", "N", "Opacity in percent (100)."),
    ofStamp("rotation", "DEG", "Rotation in degrees, counter-clockwise; whole degrees for a picture (0)."),
    ofStamp("under", nullptr, "Draw beneath the content of PDF pages."),
    ofStamp("symmetric", nullptr, "Exchange left and right on every other page."),
};

constexpr std::array pageOptions = {
    Option{"start-page", "N", "First page to stamp (1)."},
    Option{"end-page", "N", "Last page to stamp; 0 is the last page of each file (0)."},
    Option{"pages", "WHICH",
           "Pages to stamp: all (the default), odd or even. The other pages of a PDF become blank."},
    Option{"start-number", "N", "Number of the first stamped page (1)."},
    Option{"step", "N", "Difference between the numbers of successive stamped pages (1)."},
    Option{"continuous", nullptr,
           "Continue the numbers from file to file instead of restarting in each file."},
    Option{"no-continuous", nullptr, "Restart the numbers in each file; overrides the profile."},
    Option{
        "margins", "L,T,R,B",
        "Margins with the unit pt, mm or in: 36,36,36,36 or 10,10,10,15mm. One length is all four: 10mm. "
        "A length without a unit has that of the last one; lengths of different units are kept in points."},
};

constexpr std::array jobFlags = {
    Option{"page-list", "LIST",
           "Pages to stamp, as 1,3-5,10- (10- is to the end), in place of --start-page and --end-page."},
    Option{"no-page-list", nullptr, "Stamp from the first to the last page; overrides the profile."},
    Option{"keep-other-pages", nullptr,
           "With odd or even pages, leave the others of a PDF as they are, not blank."},
    Option{"no-keep-other-pages", nullptr, "Leave them blank; overrides the profile."},
    Option{"real-size", nullptr,
           "Measure stamps and margins on scans in points by the resolution of each page, not in pixels."},
    Option{"no-real-size", nullptr, "Measure in pixels; overrides the profile."},
    Option{"visible-page", nullptr,
           "Stamp inside the visible part of a PDF page (its crop box), which stays, not on the whole page."},
    Option{"no-visible-page", nullptr, "Stamp on the whole page and show it; overrides the profile."},
    Option{
        "password", "TEXT",
        "Open PDFs that need a password with this one; the copies keep encryption, permissions and "
        "passwords. Other users of the machine can see a command line: --password-file hides the password."},
    Option{"password-file", "FILE", "The same with the first line of a file; - is the standard input."},
    Option{"unlock", nullptr,
           "Write the copies of encrypted PDFs without encryption. Takes the password for permissions (the "
           "owner's); a file that is opened without it fails."},
    Option{"no-unlock", nullptr, "Keep the encryption; overrides the profile."},
};

constexpr std::array fileOptions = {
    Option{"subfolders", nullptr, "Also take files from the subfolders of the folders named."},
    Option{
        "list", "FILE",
        "Also take the files named in a text file, one path a line; - is the standard input. They come after "
        "those named on the command line.",
        0, repeats},
    Option{"export", "FILE",
           "Write the list of files, with their pages, as tab-delimited text. Without --output and stamps "
           "nothing else is done."},
    Option{"save-counts", "FILE",
           "Write the pages of all files for --counts. Without --output and stamps nothing else is done."},
    Option{"counts", "FILE",
           "Take the pages of files from what --save-counts has written, and count only those of files that "
           "are not in there or have another size now."},
    Option{"profile", "FILE",
           "Begin with the stamps, pages, numbers and margins of a saved profile. Options after "
           "--profile override the profile; stamps after it are added to the profile's stamps."},
    Option{"save-profile", "FILE",
           "Save the stamps, pages, numbers and margins as a profile. Without files no job is started."},
    Option{"preview", "PAGE.png",
           "Draw the first page of the first file with its stamps, or a blank page when no "
           "file is named, and stamp nothing."},
    Option{"preview-size", "WxH", "Largest size of the preview in pixels (600x850)."},
};

constexpr std::array copyOptions = {
    Option{"output", "DIR",
           "Folder for the stamped copies. Required for a job; made when only the last folder of its path is "
           "missing."},
    Option{"backup", nullptr, "Keep a copy NAME.bak of a file that is processed in place."},
    Option{"no-backup", nullptr, "Keep no such copy; overrides the profile."},
    Option{
        "rewrite", nullptr,
        "Write every object of a PDF anew, so that the copy holds no earlier revision of it. Otherwise the "
        "stamps are appended to a copy of the file, which is faster and keeps a signed revision."},
    Option{"keep-folders", nullptr,
           "Keep the folders of the files below their common folder; missing ones are made."},
    Option{"no-keep-folders", nullptr, "Put all copies into one folder; overrides the profile."},
    Option{"existing", "WHAT",
           "What becomes of a copy that is there: replace (the default); skip leaves it and does not stamp "
           "the file; number writes beside it, as \"name (2).pdf\". With skip and number no file is ever "
           "replaced or processed in place."},
    Option{"name", "PATTERN",
           "Name the copies, without extension: {name} is the source's name, {first} and {last} are the "
           "numbers on its pages as printed, {index} is its place in the list, {date} the day."},
    Option{"no-name", nullptr, "Name the copies like their sources; overrides the profile."},
    Option{"tif-names", nullptr, "Name copies of BMP, JPEG, PNG and GIF files .tif, which is what they are."},
    Option{"no-tif-names", nullptr, "Keep their extension; overrides the profile."},
    Option{"index", "FILE.csv",
           "Write a table of the files: source, copy, pages, numbers, outcome, SHA-256 of both."},
    Option{"no-index", nullptr, "Write no table; overrides the profile."},
    Option{"refuse-signed", nullptr,
           "Make no copy of a PDF that is digitally signed; the file counts as failed."},
};

constexpr std::array programOptions = {
    Option{"files-at-once", "N",
           "Work on so many files at the same time (the number of processors). The copies are the same for "
           "every number."},
    Option{"check", nullptr,
           "Say what people should know of the job before it begins (originals that are overwritten, files "
           "that need a password, stamps off the page and more), and write nothing."},
    Option{"strict", nullptr,
           "Begin no job when --check finds something that people should decide on; notes do not count."},
    Option{
        "shard", "K/N",
        "Work on the K-th of N parts of the list only, with the numbers, totals and names that the whole job "
        "would give; see docs/cluster.md."},
    Option{"json", nullptr, "Print one JSON object a line, for programs, instead of text."},
    Option{"quiet", nullptr, "Print only what went wrong."},
    Option{"help", nullptr, "Show this text.", 'h'},
    Option{"version", nullptr, "Show the version and those of the libraries.", 'V'},
};

constexpr std::array groups = {
    OptionGroup{"Stamps", stampOptions},
    OptionGroup{"Pages and numbers", pageOptions},
    OptionGroup{"Pages, sizes and passwords beyond these", jobFlags},
    OptionGroup{"Files and profiles", fileOptions},
    OptionGroup{"Copies", copyOptions},
    OptionGroup{"The program", programOptions},
};

QString describe(std::span<const Option> options)
{
    constexpr qsizetype column = 24;
    constexpr qsizetype width = 78;
    QString text;
    for (const Option& option : options) {
        QString line = QStringLiteral("  ");
        if (option.letter) line += QStringLiteral("-%1, ").arg(QLatin1Char(option.letter));
        line += QStringLiteral("--") + QString::fromLatin1(option.name);
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

std::span<const OptionGroup> optionGroups()
{
    return groups;
}

const Option* findOption(const QString& name)
{
    for (const OptionGroup& group : groups)
        for (const Option& option : group.options)
            if (name == QLatin1String(option.name) ||
                (option.letter && name == QString(QLatin1Char(option.letter))))
                return &option;
    return nullptr;
}

QString runnerHelp()
{
    QString text = QStringLiteral(
        "quillfern-run [options] --output DIR FILE|FOLDER...\n"
        "quillfern-run [options] --preview PAGE.png [FILE]\n"
        "quillfern-run [options] --save-profile FILE\n\n"
        "Stamps page numbers, text and pictures onto every page of PDF and raster files and writes a\n"
        "stamped copy of each into a folder: a PDF of a PDF, a multi-page TIFF of any other. Needs no\n"
        "display. Names of options are given in full, and each option once, but for --text, --image and\n"
        "--list; an option of a stamp applies to the stamp last begun.\n");
    for (const OptionGroup& group : groups)
        text += QStringLiteral("\n%1:\n").arg(QLatin1String(group.title)) + describe(group.options);
    return text +
           QStringLiteral(
               "\nExit status: 0 when every file has its copy, 1 when some have none, one was replaced "
               "by the\n"
               "copy of another file of the same name or lacks parts of a damaged file, or when --check, "
               "--strict\n"
               "or a stamp that is empty keeps the job from beginning, 2 for a command line that cannot be\n"
               "followed (no file is stamped then).\n");
}

} // namespace quillfern
