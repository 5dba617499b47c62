#pragma once

namespace quillfern::pdf {

/// How much of a file is read before the work on the document begins.
enum class ReadAhead {
    Pages,      ///< of a sound file the page tree and what the pages refer to first; of any other everything
    Everything, ///< for a document that is going to be written anew, so that nothing of it is lost unnoticed
};

} // namespace quillfern::pdf
