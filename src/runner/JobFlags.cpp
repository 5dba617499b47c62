#include "runner/JobFlags.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FilePath.h"
#include "platform/system/NativePath.h"
#include "runner/OptionValues.h"

#include <QIODevice>
#include <array>
#include <iostream>
#include <string>

namespace quillfern {

namespace {

constexpr std::array<std::pair<const char*, bool JobOptions::*>, 4> pageSwitches = {{
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
        const auto found = std::find_if(pageSwitches.begin(), pageSwitches.end(),
                                        [&](const auto& each) { return plain == QLatin1String(each.first); });
        if (found == pageSwitches.end()) return false;
        options.*found->second = on;
    }
    number.setOptions(options);
    return true;
}

} // namespace quillfern
