#include "platform/pdf/FileRepair.h"

#include "platform/pdf/BoundedStream.h"
#include "platform/pdf/ContentTokens.h"
#include "platform/pdf/ObjectText.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

namespace quillfern::pdf {

namespace {

/// Ends an object, or the stream of one, in whose middle a file may end. Nobody minds the words elsewhere.
const std::string endOfCutObject = "\nendstream\nendobj\n";

/// No object is larger than this that people's programs write, apart from streams that need no mending.
constexpr qpdf_offset_t largestObject = qpdf_offset_t{64} << 20;
/// Streams aside, the objects of a document of a million pages are smaller.
constexpr std::size_t mostMended = std::size_t{512} << 20;

std::string readBytes(FileInput& input, qpdf_offset_t offset, qpdf_offset_t size)
{
    std::string bytes(static_cast<std::size_t>(std::max<qpdf_offset_t>(size, 0)), '\0');
    input.seek(offset, SEEK_SET);
    bytes.resize(input.read(bytes.data(), bytes.size()));
    return bytes;
}

long long numberOf(std::string_view text)
{
    long long value = -1;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The offset that the last "startxref" of the file states; -1 for none.
long long statedStart(FileInput& input)
{
    constexpr qpdf_offset_t searched = 1054; // where qpdf looks for the word
    const qpdf_offset_t from = std::max<qpdf_offset_t>(0, input.fileSize() - searched);
    const std::string end = readBytes(input, from, input.fileSize() - from);
    const std::size_t word = end.rfind("startxref");
    if (word == std::string::npos) return -1;
    ContentTokens tokens(end.data() + word, end.data() + end.size());
    tokens.next();
    const auto number = tokens.next();
    return number ? numberOf(*number) : -1;
}

} // namespace

FileRepair::FileRepair(QPDF& document, FileInput& input, bool rebuilt)
    : document_(document), input_(input), rebuilt_(rebuilt)
{
    constexpr qpdf_offset_t searched = 1024; // where qpdf looks for the header
    const std::size_t header = readBytes(input, 0, searched).find("%PDF-");
    if (header != std::string::npos) headerAt_ = static_cast<qpdf_offset_t>(header);

    const auto table = document.getXRefTable();
    std::set<qpdf_offset_t> starts{input.fileSize() - headerAt_};
    for (const auto& [id, entry] : table)
        if (entry.getType() == 1) starts.insert(entry.getOffset());
    std::map<int, std::vector<int>> packed; // by object stream, so that each is unpacked once
    for (const auto& [id, entry] : table) {
        if (!document.getObject(id).isNull()) continue;
        if (entry.getType() == 1 && entry.getOffset() > 0) {
            const auto next = starts.upper_bound(entry.getOffset());
            if (next != starts.end()) examine(id, textAt(entry.getOffset(), *next));
        } else if (entry.getType() == 2) {
            packed[entry.getObjStreamNumber()].push_back(id.getObj());
        }
    }
    for (const auto& [stream, numbers] : packed) {
        const auto& objects = objectsIn(stream);
        for (const int number : numbers) {
            const auto found = objects.find(number);
            if (found != objects.end()) examine(QPDFObjGen(number, 0), found->second);
        }
    }
    if (rebuilt_) unpackStreams(table);
}

void FileRepair::examine(QPDFObjGen id, std::string_view text)
{
    std::string mended = mendedObjectText(text);
    if (mended.empty()) return;
    unreadable_.insert(id);
    add(id, std::move(mended));
}

void FileRepair::add(QPDFObjGen id, std::string text)
{
    mendedSize_ += text.size();
    if (mendedSize_ > mostMended)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document is damaged beyond repair."));
    mended_[id] = std::move(text);
}

/// The text behind the "obj" that stands at `offset`; empty when none does.
std::string FileRepair::textAt(qpdf_offset_t offset, qpdf_offset_t end)
{
    const std::string text = readBytes(input_, offset + headerAt_, std::min(end - offset, largestObject));
    ContentTokens tokens(text.data(), text.data() + text.size());
    tokens.next();
    tokens.next();
    const auto word = tokens.next();
    // The object itself may follow without white space.
    if (!word || word->substr(0, 3) != "obj") return {};
    return text.substr(static_cast<std::size_t>(word->data() - text.data()) + 3);
}

/// The objects of an object stream (ISO 32000-1, 7.5.7); they last until those of another one are asked for.
const std::map<int, std::string_view>& FileRepair::objectsIn(int streamNumber)
{
    if (unpackedNumber_ == streamNumber) return unpacked_;
    unpackedNumber_ = streamNumber;
    unpacked_.clear();
    // The strings in such a stream are not encrypted each by itself; in an update they would have to be.
    QPDFObjectHandle stream = document_.getObject(streamNumber, 0);
    if (document_.isEncrypted() || !stream.isStream() || !stream.getDict().getKey("/First").isInteger())
        return unpacked_;
    const long long first = stream.getDict().getKey("/First").getIntValue();
    BoundedStream decoded = decodeBounded(stream, static_cast<std::size_t>(largestObject));
    decoded_ = decoded.data ? std::move(*decoded.data)
                            : inflatedPart(stream, static_cast<std::size_t>(largestObject));
    if (first < 0 || first > static_cast<long long>(decoded_.size())) return unpacked_;
    std::map<long long, int> starts; // the numbers of the objects by their places
    ContentTokens tokens(decoded_.data(), decoded_.data() + first);
    while (const auto number = tokens.next()) {
        const auto offset = tokens.next();
        if (!offset) break;
        const long long start = first + numberOf(*offset);
        if (start >= first && start < static_cast<long long>(decoded_.size()))
            starts[start] = static_cast<int>(numberOf(*number));
    }
    for (auto at = starts.begin(); at != starts.end(); ++at) {
        const auto next = std::next(at);
        const auto end = next == starts.end() ? decoded_.size() : static_cast<std::size_t>(next->first);
        const auto start = static_cast<std::size_t>(at->first);
        unpacked_[at->second] = std::string_view(decoded_).substr(start, end - start);
    }
    return unpacked_;
}

/// A table that is made anew does not lead into the object streams.
void FileRepair::unpackStreams(const std::map<QPDFObjGen, QPDFXRefEntry>& table)
{
    std::map<qpdf_offset_t, int> streams; // in the file's order: the last of several updates counts
    for (const auto& [id, entry] : table)
        if (entry.getType() == 1 && document_.getObject(id).isStreamOfType("/ObjStm"))
            streams[entry.getOffset()] = id.getObj();
    for (const auto& [offset, stream] : streams)
        for (const auto& [number, text] : objectsIn(stream))
            if (number > 0 && table.count(QPDFObjGen(number, 0)) == 0)
                add(QPDFObjGen(number, 0), ' ' + std::string(text));
}

std::string FileRepair::update()
{
    std::string text = endOfCutObject;
    std::map<QPDFObjGen, std::size_t> places;
    for (const auto& [id, object] : mended_) {
        places[id] = text.size();
        text += id.unparse(' ') + " obj\n" + object + endOfCutObject;
    }
    // A table that is made anew has the last object of each number, so these.
    if (!rebuilt_ && !places.empty()) text += crossReferences(places, text.size());
    return text;
}

std::string FileRepair::crossReferences(const std::map<QPDFObjGen, std::size_t>& places, std::size_t at)
{
    const auto fileOffset = [this](std::size_t place) {
        return input_.fileSize() - headerAt_ + static_cast<qpdf_offset_t>(place);
    };
    const auto digits = [](long long value, int count) {
        std::string text = std::to_string(value);
        return std::string(static_cast<std::size_t>(std::max(0, count - static_cast<int>(text.size()))),
                           '0') +
               text;
    };
    std::string text = "xref\n";
    for (const auto& [id, place] : places)
        text += std::to_string(id.getObj()) + " 1\n" + digits(fileOffset(place), 10) + ' ' +
                digits(id.getGen(), 5) + " n \n";
    text += "trailer\n<<";
    QPDFObjectHandle trailer = document_.getTrailer();
    static const std::set<std::string> ofTheStream = {"/Prev",  "/XRefStm", "/Type",        "/W",
                                                      "/Index", "/Filter",  "/DecodeParms", "/Length"};
    for (const auto& [key, value] : trailer.getDictAsMap()) // with those that read as null so far
        if (ofTheStream.count(key) == 0) text += key + ' ' + QPDFObjectHandle(value).unparse() + '\n';
    return text + "/Prev " + std::to_string(statedStart(input_)) + ">>\nstartxref\n" +
           std::to_string(fileOffset(at)) + "\n%%EOF\n";
}

} // namespace quillfern::pdf
