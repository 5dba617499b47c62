#pragma once

#include <QString>

namespace quillfern {

/// A library that the program runs with, as --version and reports of faults name it.
struct LibraryVersion
{
    const char* name;
    QString version; ///< of the library that is loaded, where the library tells
};

} // namespace quillfern
