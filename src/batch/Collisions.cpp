#include "batch/Collisions.h"

#include "batch/DocumentTarget.h"
#include "platform/system/FileAccess.h"

namespace quillfern {

namespace {

/// By its name alone, which stays when another job replaces the file there.
FilePlace placeByName(const FilePlace& place, const FilePath& path)
{
    return {place.folder, path.bytes().mid(path.bytes().lastIndexOf('/') + 1), 0};
}

} // namespace

InputPlaces::InputPlaces(const std::vector<OutputFile>& outputs, const std::function<bool()>& goOn)
{
    for (const OutputFile& output : outputs) {
        if (!goOn()) break; // a cancel does not wait until thousands of files have been examined
        for (const FileItem& item : output.fileItems()) {
            const FilePath& path = item.filePath();
            for (const FilePath& name : {path, resolvedPath(path)})
                if (const auto place = filePlace(name)) {
                    places_.emplace(*place, path);
                    places_.emplace(placeByName(*place, name), path);
                }
            if (const auto file = fileIdentity(path)) files_.emplace(*file, path);
        }
    }
}

const FilePath* InputPlaces::inputAt(const FilePath& target) const
{
    const auto place = filePlace(target);
    if (!place) return nullptr;
    auto input = places_.find(*place);
    if (input == places_.end()) input = places_.find(placeByName(*place, target));
    return input == places_.end() ? nullptr : &input->second;
}

const FilePath* InputPlaces::inputBehind(const FilePath& target) const
{
    const auto file = fileIdentity(target);
    const auto input = file ? files_.find(*file) : files_.end();
    return input == files_.end() ? nullptr : &input->second;
}

std::vector<Collision> findCollisions(const std::vector<OutputFile>& outputs,
                                      const std::function<bool()>& goOn)
{
    std::vector<Collision> collisions(outputs.size());
    const InputPlaces inputs(outputs, goOn);
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
        if (const FilePath* const input = inputs.inputAt(target)) collision.overwritesInput = *input;
    }
    return collisions;
}

} // namespace quillfern
