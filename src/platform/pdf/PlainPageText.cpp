#include "platform/pdf/PlainPageText.h"

#include "platform/pdf/PlainDocument.h"
#include "platform/pdf/PlainParser.h"

#include <string_view>

namespace quillfern::pdf {

std::string editedPage(const PlainPage& page, const PlainPageEdits& edits)
{
    std::string text;
    text.reserve(page.text.size() + edits.contents.size() + edits.resources.size());
    text += "<<";
    const auto put = [&text](std::string_view key, std::string_view value) {
        if (value.empty()) return;
        text += key;
        if (value.front() != '/' && value.front() != '[' && value.front() != '<' && value.front() != '(')
            text += ' ';
        text += value;
    };
    const auto dictionary = PlainDictionary::read(page.text);
    for (const PlainDictionary::Entry& entry : dictionary->entries()) {
        const bool isReplaced = (entry.key == "/Contents" && !edits.contents.empty()) ||
                                (entry.key == "/Resources" && !edits.resources.empty()) ||
                                entry.key == "/CropBox";
        if (!isReplaced) put(entry.key, entry.value);
    }
    put("/Contents", edits.contents);
    put("/Resources", edits.resources);
    // An ancestor's crop box would come back; only the page's own overrules it.
    if (page.inheritsCropBox) {
        const QRectF& box = page.box.mediaBox();
        put("/CropBox", QPDFObjectHandle::newFromRectangle(
                            QPDFObjectHandle::Rectangle(box.left(), box.top(), box.right(), box.bottom()))
                            .unparse());
    }
    return text + ">>";
}

} // namespace quillfern::pdf
