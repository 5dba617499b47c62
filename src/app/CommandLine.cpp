#include "app/CommandLine.h"

#include "platform/system/NativePath.h"

#include <QCommandLineParser>

namespace quillfern {

CommandLine readCommandLine(int argc, char** argv)
{
    QStringList arguments; // QCoreApplication::arguments() would lose names that are not UTF-8
    for (int i = 0; i < argc; ++i)
        arguments.append(pathText(QByteArray(argv[i])));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions); // as Qt's own are written
    parser.addOptions({help, version});
    CommandLine line;
    if (!parser.parse(arguments)) line.problem = parser.errorText();
    for (const QString& file : parser.positionalArguments())
        line.files.append(FilePath::fromText(file));
    line.showHelp = parser.isSet(help);
    line.showVersion = parser.isSet(version);
    return line;
}

QString commandLineHelp()
{
    return QStringLiteral(
        "quillfern [options] [--] [FILE|FOLDER...]\n\n"
        "Stamps page numbers, text and pictures onto PDF and raster files. Files, and those in\n"
        "folders, are added to the list of the window; where the program runs already, to the\n"
        "list of its window.\n\n"
        "  -h, --help             Show this text.\n"
        "  -v, --version          Show the version.\n"
        "  --                     What follows names files, even with a dash in front.\n\n"
        "The options of Qt, such as -platform and -style, are understood as well.\n"
        "quillfern-run does a job without a window.\n\n"
        "Exit status: 2 for a command line that cannot be followed.\n");
}

} // namespace quillfern
