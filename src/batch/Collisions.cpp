#include "batch/Collisions.h"

#include "batch/DocumentTarget.h"
#include "platform/system/FileAccess.h"

#include <unordered_map>

namespace quillfern {

namespace {

using Places = std::unordered_map<FilePlace, FilePath>;

/// The places of all inputs and, for links, of the files that they lead to.
Places placesOfInputs(const std::vector<OutputFile>& outputs, const std::function<bool()>& goOn)
{
    Places places;
    for (const OutputFile& output : outputs) {
        if (!goOn()) break; // a cancel does not wait until thousands of files have been examined
        for (const FileItem& item : output.fileItems()) {
            const FilePath& path = item.filePath();
            for (const FilePath& name : {path, resolvedPath(path)})
                if (const auto place = filePlace(name)) places.emplace(*place, path);
        }
    }
    return places;
}

} // namespace

std::vector<Collision> findCollisions(const std::vector<OutputFile>& outputs,
                                      const std::function<bool()>& goOn)
{
    std::vector<Collision> collisions(outputs.size());
    const Places inputs = placesOfInputs(outputs, goOn);
    std::unordered_map<FileIdentity, FilePath> inPlace;
    std::unordered_map<FilePlace, FilePath> stamped; // the files themselves behind all links
    for (std::size_t i = 0; i < outputs.size() && goOn(); ++i) {
        if (outputs[i].fileItems().empty()) continue;
        const FilePath& target = outputs[i].filename();
        const FilePath own = outputs[i].fileItems().back().filePath();
        Collision& collision = collisions[i];
        if (isInPlace(own, target)) {
            collision.version = fileVersion(own);
            if (!collision.version) continue; // is not there any more
            const auto [first, isNew] = inPlace.emplace(collision.version->identity, own);
            if (!isNew)
                collision.stampedAs = first->second;
            else if (const auto at = filePlace(resolvedPath(own)))
                stamped.emplace(*at, own);
            continue;
        }
        // A file that was stamped through a link is not the file that the list meant any more.
        if (const auto at = filePlace(resolvedPath(own)))
            if (const auto found = stamped.find(*at); found != stamped.end()) {
                collision.stampedAs = found->second;
                continue;
            }
        const auto place = filePlace(target);
        const auto input = place ? inputs.find(*place) : inputs.end();
        if (input != inputs.end()) collision.overwritesInput = input->second;
    }
    return collisions;
}

} // namespace quillfern
