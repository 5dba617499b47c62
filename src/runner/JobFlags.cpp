#include "runner/JobFlags.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FilePath.h"
#include "platform/system/NativePath.h"

#include <QIODevice>
#include <array>
#include <iostream>
#include <string>

namespace quillfern {

namespace {

constexpr std::array flags = {
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

constexpr std::array<std::pair<const char*, bool JobOptions::*>, 4> switches = {{
    {"keep-other-pages", &JobOptions::keepOtherPages},
    {"real-size", &JobOptions::realSize},
    {"visible-page", &JobOptions::visiblePage},
    {"unlock", &JobOptions::unlock},
}};

PageList pageList(const QString& option, const QString& text)
{
    try {
        PageList list = PageList::parse(text);
        if (list.isEmpty()) wrong(option, text, QStringLiteral("pages and ranges as 1,3-5,10-"));
        return list;
    } catch (const PageListFault& fault) {
        throw WrongUse(QStringLiteral("--%1: %2").arg(option, fault.reason()));
    }
}

QString firstLine(const QByteArray& bytes)
{
    QString line = QString::fromUtf8(bytes.left(bytes.indexOf('\n')));
    if (line.startsWith(QChar::ByteOrderMark)) line.remove(0, 1);
    if (line.endsWith(u'\r')) line.chop(1);
    return line;
}

QString passwordFrom(const QString& file)
{
    constexpr qint64 longest = 1 << 16;
    if (file == QLatin1String("-")) {
        std::string line;
        std::getline(std::cin, line);
        return firstLine(QByteArray::fromStdString(line) + '\n');
    }
    try {
        return firstLine(readRegularFile(FilePath::fromText(file))->read(longest) + '\n');
    } catch (const Failure& failure) {
        throw WrongUse(QStringLiteral("--password-file: %1").arg(failure.reason()));
    }
}

} // namespace

std::span<const Option> jobFlags()
{
    return flags;
}

bool applyJobFlag(Numbering& number, const QString& name, const QString& value)
{
    JobOptions options = number.options();
    if (name == QLatin1String("page-list")) {
        options.pageList = pageList(name, value);
    } else if (name == QLatin1String("no-page-list")) {
        options.pageList = PageList();
    } else if (name == QLatin1String("password") || name == QLatin1String("password-file")) {
        const bool isInFile = name == QLatin1String("password-file");
        options.usePasswords = true;
        options.password = isInFile ? passwordFrom(value) : value;
        if (options.password.isEmpty())
            throw WrongUse(QStringLiteral("--%1 gives no password: it is empty").arg(name));
    } else {
        const bool on = !name.startsWith(QLatin1String("no-"));
        const QString plain = on ? name : name.mid(3);
        const auto found = std::find_if(switches.begin(), switches.end(),
                                        [&](const auto& each) { return plain == QLatin1String(each.first); });
        if (found == switches.end()) return false;
        options.*found->second = on;
    }
    number.setOptions(options);
    return true;
}

} // namespace quillfern
