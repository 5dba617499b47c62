#include "platform/pdf/PlainCompletion.h"

#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/PlainDocument.h"

#include <map>
#include <memory>
#include <qpdf/Pipeline.hh>
#include <set>

namespace quillfern::pdf {

namespace {

class FileStream final : public QPDFObjectHandle::StreamDataProvider
{
  public:
    FileStream(PlainStreams& streams, const PlainStreams::Place& place) : streams_(streams), place_(place) {}

    void provideStreamData(const QPDFObjGen&, Pipeline* pipeline) override
    {
        std::string bytes;
        static_cast<void>(streams_.append(place_, bytes));
        pipeline->write(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
        pipeline->finish();
    }

  private:
    PlainStreams& streams_;
    PlainStreams::Place place_;
};

void addStream(QPDF& document, int number, PlainStreams& streams, const PlainStreams::Place& place)
{
    const QPDFObjGen id(number, 0);
    document.replaceObject(id, QPDFObjectHandle::newDictionary());
    QPDFObjectHandle stream = document.newStream();
    const QPDFObjectHandle filter =
        place.isDeflated ? QPDFObjectHandle::newName("/FlateDecode") : QPDFObjectHandle::newNull();
    stream.replaceStreamData(std::make_shared<FileStream>(streams, place), filter,
                             QPDFObjectHandle::newNull());
    document.swapObjects(stream.getObjGen(), id); // the library chooses its own number
}

} // namespace

std::vector<QPDFObjectHandle> completeDocument(QPDF& document, const PlainDocument& plain,
                                               PlainStreams& streams, DocumentChanges& changes)
{
    const std::map<int, std::string> texts = changes.takeTexts();
    std::set<int> added;
    std::vector<QPDFObjectHandle> pages;
    for (const PlainPage& page : plain.pages()) {
        const QPDFObjGen id(page.number, 0);
        const auto changed = texts.find(page.number);
        // A page that is an object already was made one because its content is damaged.
        if (changes.objects().count(id) == 0)
            document.replaceObject(
                id, QPDFObjectHandle::parse(&document, changed == texts.end() ? page.text : changed->second,
                                            "page"));
        pages.push_back(document.getObject(id));
        const auto numbers = plain.contentOf(page);
        const auto places = plain.placesOf(page);
        for (std::size_t i = 0; i < numbers.size(); ++i)
            if (added.insert(numbers[i]).second) addStream(document, numbers[i], streams, places[i]);
    }
    for (const auto& [number, text] : texts)
        changes.noteChanged(document.getObject(number, 0));
    return pages;
}

} // namespace quillfern::pdf
